#include "FrameNow.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QQuickWindow>
#include <qpa/qplatformnativeinterface.h>

#include <wayland-client-core.h>
#include <xcb/xcb.h>

namespace Kestry {
namespace {

/// What has been drawn waits in the connection until the event loop would have sent it.
void flushDisplay()
{
    QPlatformNativeInterface* platform = QGuiApplication::platformNativeInterface();
    if (platform == nullptr) {
        return;
    }
    if (QGuiApplication::platformName() == "xcb") {
        auto* connection =
            static_cast<xcb_connection_t*>(platform->nativeResourceForIntegration("connection"));
        if (connection != nullptr) {
            xcb_flush(connection);
        }
    } else if (QGuiApplication::platformName().startsWith("wayland")) {
        auto* display =
            static_cast<wl_display*>(platform->nativeResourceForIntegration("wl_display"));
        if (display != nullptr) {
            wl_display_flush(display);
        }
    }
}

} // namespace

void showFrameNow(QQuickWindow& window)
{
    if (window.isExposed()) {
        // What the event loop would do on its next turn.
        QEvent update(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(&window, &update);
        flushDisplay();
    }
}

} // namespace Kestry
