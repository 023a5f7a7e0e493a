#include "LayerPopups.h"

#include <QApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWidget>

#include <algorithm>

namespace Kestry {
namespace {

bool isMenu(Qt::WindowFlags flags)
{
    return (flags & Qt::WindowType_Mask) == Qt::Popup;
}

bool comesUp(Qt::WindowFlags flags)
{
    return isMenu(flags) || (flags & Qt::WindowType_Mask) == Qt::ToolTip;
}

} // namespace

LayerPopups::LayerPopups(
    WaylandLayerShell& layers, std::vector<const PanelWindow*> panels, MenuOwner menuOwner)
    : layers_(layers), panels_(std::move(panels)), menuOwner_(std::move(menuOwner))
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
    if (event->type() == QEvent::Polish) { // comes before a widget has a window
        keepFromWindowManager(*object);
        return false;
    }
    auto* window = qobject_cast<QWindow*>(object);
    if (window && isPressBeside(*window, *event)) {
        closeMenus();
        return true; // it closed the menu, and does nothing else
    }
    if (window && passOnKey(*window, *event)) {
        return true;
    }
    if (!window || !comesUp(window->flags())
        || !window->flags().testFlag(Qt::BypassWindowManagerHint)) {
        return false;
    }
    if (event->type() == QEvent::Show) { // comes before the window is on the screen
        open(*window);
    } else if (event->type() == QEvent::Expose && !window->isExposed()) {
        close(*window); // comes while it still has its surface
    }
    return false;
}

const PanelWindow* LayerPopups::panelInUse() const
{
    const auto found = std::ranges::find_if(panels_, [this](const PanelWindow* panel) {
        return layers_.isShown(*panel) && (panel->isEntered() || panel->isActive());
    });
    return found == panels_.end() ? nullptr : *found;
}

void LayerPopups::keepFromWindowManager(QObject& object) const
{
    auto* widget = qobject_cast<QWidget*>(&object);
    if (widget && comesUp(widget->windowFlags()) && panelInUse()) {
        widget->overrideWindowFlags(widget->windowFlags() | Qt::BypassWindowManagerHint);
    }
}

void LayerPopups::open(QWindow& popup)
{
    const PanelWindow* panel = panelInUse();
    if (!panel) {
        return;
    }
    if (isMenu(popup.flags())) {
        if (menus_.empty()) {
            sheet_.setScreen(popup.screen());
            sheet_.setGeometry(popup.screen()->geometry());
            layers_.showBelowPanels(sheet_, sheet_.screen()->geometry());
            menuOwner_(panel);
        }
        menus_.insert(&popup);
    }
    layers_.attach(popup, *panel, popup.position() - panel->windowFrame().topLeft());
}

void LayerPopups::close(QWindow& popup)
{
    layers_.detach(popup);
    if (menus_.erase(&popup) > 0 && menus_.empty()) {
        layers_.hide(sheet_);
        menuOwner_(nullptr);
    }
}

bool LayerPopups::isPressBeside(QWindow& window, const QEvent& event) const
{
    if (menus_.empty() || event.type() != QEvent::MouseButtonPress) {
        return false;
    }
    const QRectF inside(QPointF(), window.size());
    const QPointF place = dynamic_cast<const QMouseEvent&>(event).position();
    return !menus_.contains(&window) || !inside.contains(place);
}

bool LayerPopups::passOnKey(const QWindow& window, QEvent& event) const
{
    const bool isKey = event.type() == QEvent::KeyPress || event.type() == QEvent::KeyRelease;
    if (!isKey || menus_.empty() || qobject_cast<const PanelWindow*>(&window) == nullptr) {
        return false;
    }
    if (QWidget* menu = QApplication::activePopupWidget()) {
        QCoreApplication::sendEvent(menu, &event);
    }
    return true; // it is not for what the menu was opened from
}

void LayerPopups::closeMenusSoon()
{
    QMetaObject::invokeMethod(this, &LayerPopups::closeMenus, Qt::QueuedConnection);
}

void LayerPopups::closeMenus()
{
    const std::set<QWindow*> menus = menus_;
    for (QWindow* menu : menus) {
        menu->close();
    }
}

} // namespace Kestry
