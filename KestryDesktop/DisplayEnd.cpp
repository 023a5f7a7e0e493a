#include "DisplayEnd.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QThread>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>
#include <utility>

#include <qpa/qplatformnativeinterface.h>
#include <wayland-client-core.h>
#include <xcb/xcb.h>

namespace Kestry {
namespace {

// What is saved takes milliseconds; a main thread that never answers must not keep the process.
constexpr std::chrono::seconds longestWait(10);

struct Hook {
    std::function<int()> leave; ///< Empty once it has been called, and while there is none.
    std::function<bool()> isGone;
    QtMessageHandler previous = nullptr;
    bool isRegistered = false; ///< With `exit`, which keeps it for good.
};

Hook& hook()
{
    static Hook hook;
    return hook;
}

bool isGone()
{
    return hook().isGone && hook().isGone();
}

void leaveNow()
{
    if (const auto leave = std::exchange(hook().leave, nullptr)) {
        // Not `exit`: what it would take down belongs to the windows, and those are gone.
        std::_Exit(leave());
    }
}

void leave()
{
    QCoreApplication* application = QCoreApplication::instance();
    if (QThread::currentThread() == application->thread()) {
        leaveNow();
        return;
    }
    QMetaObject::invokeMethod(application, &leaveNow, Qt::QueuedConnection);
    std::this_thread::sleep_for(longestWait); // the process ends meanwhile
}

void hearMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    hook().previous(type, context, text);
    if (type != QtDebugMsg && type != QtInfoMsg && isGone()) {
        leave();
    }
}

/// The way out of the X11 libraries, which say nothing to the toolkit.
void hearExit()
{
    if (isGone()) {
        leave();
    }
}

std::function<bool()> connectionCheck()
{
    QPlatformNativeInterface* native = QGuiApplication::platformNativeInterface();
    if (QGuiApplication::platformName().startsWith("wayland")) {
        auto* display = native->nativeResourceForIntegration("wl_display");
        return [display] { return wl_display_get_error(static_cast<wl_display*>(display)) != 0; };
    }
    // Platforms without a display server answer here too, with a connection that is none.
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (QGuiApplication::platformName() == "xcb" && x11 != nullptr) {
        return [display = x11->connection()] { return xcb_connection_has_error(display) != 0; };
    }
    return [] { return false; };
}

} // namespace

DisplayEnd::DisplayEnd(std::function<int()> leave) : DisplayEnd(std::move(leave), connectionCheck())
{
}

DisplayEnd::DisplayEnd(std::function<int()> leave, std::function<bool()> isGone)
{
    // Writing to a server that has gone would end the process before anything notices.
    std::signal(SIGPIPE, SIG_IGN);
    // The warning has to come even to a user who wants to read none.
    QLoggingCategory::defaultCategory()->setEnabled(QtWarningMsg, true);
    hook().leave = std::move(leave);
    hook().isGone = std::move(isGone);
    hook().previous = qInstallMessageHandler(&hearMessage);
    if (!std::exchange(hook().isRegistered, true)) {
        std::atexit(&hearExit);
    }
}

DisplayEnd::~DisplayEnd()
{
    qInstallMessageHandler(hook().previous);
    hook().leave = nullptr;
    hook().isGone = nullptr;
}

} // namespace Kestry
