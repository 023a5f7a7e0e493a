#include "TipWindow.h"

#include <QCursor>
#include <QQuickWindow>

#include <cmath>

#include "PopupPlacement.h"

namespace Kestry {
namespace {

constexpr double tipRadius = 6.0;

QRect frameFor(
    const QQuickItem& content, const QQuickItem& item, ToolTips::Place place, const QRect& bounds)
{
    const QSize size(static_cast<int>(std::ceil(content.implicitWidth())),
        static_cast<int>(std::ceil(content.implicitHeight())));
    if (place == ToolTips::BesideItem) {
        const QRect around = QRectF(item.mapToGlobal(QPointF()), item.size()).toRect();
        return tipFrameBeside(around, size, bounds);
    }
    return tipFrameAtPointer(QCursor::pos(), size, bounds);
}

} // namespace

TipWindow::TipWindow(QQmlEngine& engine, PanelStage& stage, ToolTips& tips, const MenuWindow& menus)
    : engine_(engine), stage_(stage), menus_(menus)
{
    connect(&tips, &ToolTips::showAsked, this, &TipWindow::show);
    connect(&tips, &ToolTips::hideAsked, this, &TipWindow::hide);
    connect(&menus, &MenuWindow::opened, this, &TipWindow::hide);
}

TipWindow::~TipWindow()
{
    hide();
}

void TipWindow::show(QQuickItem* item, const QString& text, ToolTips::Place place, QObject* colors)
{
    hide();
    if (menus_.isOpen()) {
        return;
    }
    window_ = std::make_unique<PanelWindow>("Tip");
    window_->setFlag(Qt::WindowDoesNotAcceptFocus);
    window_->setFlag(Qt::WindowTransparentForInput);
    window_->setView(engine_, QUrl("qrc:/KestryItems/TipView.qml"),
        {{"text", text}, {"colors", QVariant::fromValue(colors)}, {"radius", tipRadius}});
    QWindow& owner = *item->window();
    const QRect bounds = stage_.popupBounds(owner).toRect();
    window_->place(frameFor(window_->content(), *item, place, bounds));
    stage_.popupFrameChanged(*window_, tipRadius);
    stage_.showTip(*window_, owner);
}

void TipWindow::hide()
{
    if (window_) {
        stage_.hideTip(*window_);
        window_.reset();
    }
}

} // namespace Kestry
