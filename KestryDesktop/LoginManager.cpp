#include "LoginManager.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace Kestry {

namespace {

constexpr const char* service = "org.freedesktop.login1";
constexpr const char* path = "/org/freedesktop/login1";
constexpr const char* interface = "org.freedesktop.login1.Manager";

} // namespace

LoginManager::LoginManager(QDBusConnection bus, Events events)
    : bus_(std::move(bus)), events_(std::move(events)),
      watcher_(service, bus_, QDBusServiceWatcher::WatchForRegistration)
{
    if (!bus_.isConnected()) {
        return;
    }
    bus_.connect(service, path, interface, "PrepareForSleep", this, SLOT(prepareForSleep(bool)));
    bus_.connect(
        service, path, interface, "PrepareForShutdown", this, SLOT(prepareForShutdown(bool)));
    // One that was started again has forgotten who asked it to wait.
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] { takeAll(); });
    takeAll();
}

void LoginManager::prepareForSleep(bool begins)
{
    if (begins) {
        events_.willSleep();
        release(sleep_);
    } else {
        take(sleep_);
        if (events_.didWake) {
            events_.didWake();
        }
    }
}

void LoginManager::prepareForShutdown(bool begins)
{
    if (begins) {
        events_.willShutDown();
        release(shutdown_);
    } else {
        take(shutdown_);
    }
}

void LoginManager::takeAll()
{
    take(sleep_);
    take(shutdown_);
}

void LoginManager::take(Inhibitor& inhibitor)
{
    inhibitor.isWanted = true;
    auto call = QDBusMessage::createMethodCall(service, path, interface, "Inhibit");
    call.setArguments({inhibitor.what, "Kestry", inhibitor.why, "delay"});
    auto* watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, &inhibitor] {
        const QDBusPendingReply<QDBusUnixFileDescriptor> reply(*watcher);
        // The machine may have begun meanwhile, and would wait for nothing.
        if (!reply.isError() && inhibitor.isWanted) {
            inhibitor.lock = reply.value();
        }
        watcher->deleteLater();
    });
}

void LoginManager::release(Inhibitor& inhibitor)
{
    inhibitor.isWanted = false;
    inhibitor.lock = {};
}

} // namespace Kestry
