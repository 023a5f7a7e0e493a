#include "PanelWindow.h"

#include <QGuiApplication>
#include <QQmlComponent>

namespace Kestry {

PanelWindow::PanelWindow(const QString& title)
{
    // Only a window that the window manager leaves alone keeps its place above full-screen
    // windows and never takes the keyboard by being shown or clicked, whatever the desktop.
    setFlags(floatingFlags());
    setProperty("_q_showWithoutActivating", true);
    setColor(Qt::transparent);
    setTitle(title);
}

PanelWindow::~PanelWindow() = default;

Qt::WindowFlags PanelWindow::floatingFlags()
{
    return Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint
        | Qt::X11BypassWindowManagerHint;
}

void PanelWindow::setView(QQmlEngine& engine, const QUrl& view, const QVariantMap& properties)
{
    makeContent_ = [&engine, view, properties] {
        QQmlComponent component(&engine, view);
        std::unique_ptr<QQuickItem> content(
            qobject_cast<QQuickItem*>(component.createWithInitialProperties(properties)));
        if (!content) {
            qFatal("%s", qPrintable(component.errorString()));
        }
        return content;
    };
}

QQuickItem& PanelWindow::content()
{
    if (!content_) {
        content_ = makeContent_();
        content_->setParentItem(contentItem());
        content_->setSize(frame_.size());
    }
    return *content_;
}

void PanelWindow::place(const QRect& frame)
{
    if (QScreen* target = QGuiApplication::screenAt(frame.center())) {
        setScreen(target); // else its scale would hold only after the server has answered
    }
    frame_ = frame;
    const QSize needed = frame.size().expandedTo(room_);
    windowSize_ = isVisible() ? needed.expandedTo(windowSize_) : needed;
    setGeometry(windowFrame());
    if (content_) {
        content_->setSize(frame.size());
    }
}

void PanelWindow::reportHover(bool inside)
{
    isEntered_ = inside;
    if (hover_) {
        hover_(inside);
    }
}

bool PanelWindow::event(QEvent* event)
{
    const bool handled = QQuickWindow::event(event);
    switch (event->type()) {
    case QEvent::Enter:
    case QEvent::Leave:
        reportHover(event->type() == QEvent::Enter);
        break;
    case QEvent::Hide:
    case QEvent::PlatformSurface:
        isEntered_ = false; // a window that goes gets no leave event
        break;
    default:
        break;
    }
    return handled;
}

} // namespace Kestry
