#include "PanelWindow.h"

#include <QBitmap>
#include <QPainter>

namespace Kestry {

PanelWindow::PanelWindow(QQmlEngine& engine, const QString& title) : QQuickView(&engine, nullptr)
{
    // Only a window that the window manager leaves alone keeps its place above full-screen
    // windows and never takes the keyboard by being shown or clicked, whatever the desktop.
    setFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint
        | Qt::X11BypassWindowManagerHint);
    setProperty("_q_showWithoutActivating", true);
    setColor(Qt::transparent);
    setResizeMode(QQuickView::SizeRootObjectToView);
    setTitle(title);
}

void PanelWindow::cutCorners(double radius)
{
    QBitmap shape(size());
    shape.clear();
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRectF(QPointF(), QSizeF(size())), radius, radius);
    painter.end();
    setMask(shape);
}

bool PanelWindow::event(QEvent* event)
{
    const bool handled = QQuickView::event(event);
    if (hover_ && (event->type() == QEvent::Enter || event->type() == QEvent::Leave)) {
        hover_(event->type() == QEvent::Enter);
    }
    return handled;
}

} // namespace Kestry
