#include "LayerPopups.h"

#include <QEvent>
#include <QGuiApplication>
#include <QMouseEvent>

namespace Kestry {
namespace {

bool isPopup(const QWindow& window)
{
    return window.type() == Qt::Popup && window.flags().testFlag(Qt::BypassWindowManagerHint);
}

} // namespace

LayerPopups::LayerPopups(WaylandLayerShell& layers, const PanelWindow& panel)
    : layers_(layers), panel_(panel)
{
    QSurfaceFormat transparent;
    transparent.setAlphaBufferSize(8);
    sheet_.setFormat(transparent);
    sheet_.setFlags(
        Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus);
    qGuiApp->installEventFilter(this);
}

bool LayerPopups::eventFilter(QObject* object, QEvent* event)
{
    auto* window = qobject_cast<QWindow*>(object);
    if (window && isPressBeside(*window, *event)) {
        closeAll();
        return true; // it closed the menu, and does nothing else
    }
    if (!window || !isPopup(*window)) {
        return false;
    }
    if (event->type() == QEvent::Show) { // comes before the window is on the screen
        open(*window);
    } else if (event->type() == QEvent::Expose && !window->isExposed()) {
        close(*window); // comes while it still has its surface
    }
    return false;
}

bool LayerPopups::isPressBeside(QWindow& window, const QEvent& event) const
{
    if (popups_.empty() || event.type() != QEvent::MouseButtonPress) {
        return false;
    }
    const QPointF place = static_cast<const QMouseEvent&>(event).position();
    return !popups_.contains(&window) || !QRectF(QPointF(), window.size()).contains(place);
}

void LayerPopups::closeAll()
{
    const std::set<QWindow*> popups = popups_;
    for (QWindow* popup : popups) {
        popup->close();
    }
}

void LayerPopups::open(QWindow& popup)
{
    if (!layers_.isShown(panel_)) {
        return;
    }
    if (popups_.empty()) {
        sheet_.setScreen(popup.screen());
        sheet_.setGeometry(popup.screen()->geometry());
        layers_.showBelowPanels(sheet_, sheet_.screen()->geometry());
    }
    popups_.insert(&popup);
    layers_.attach(popup, panel_, popup.position() - panel_.windowFrame().topLeft());
}

void LayerPopups::close(QWindow& popup)
{
    if (popups_.erase(&popup) == 0) {
        return;
    }
    layers_.detach(popup);
    if (popups_.empty()) {
        layers_.hide(sheet_);
    }
}

} // namespace Kestry
