#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QString>

#include <functional>

namespace Kestry {

/// Reports that the machine is about to sleep or shut down, from systemd-logind, and delays it
/// until the application has paused and saved the session. Without a system bus or logind it never
/// calls back, and reports nothing.
class LoginManager final : public QObject {
    Q_OBJECT

public:
    /// The first two are called before the machine goes on. It waits a few seconds at most.
    struct Events {
        std::function<void()> willSleep;
        std::function<void()> willShutDown;
        std::function<void()> didWake{};
    };

    LoginManager(QDBusConnection bus, Events events);

private:
    Q_SLOT void prepareForSleep(bool begins);
    Q_SLOT void prepareForShutdown(bool begins);

    /// A delay of one of the machine's actions.
    struct Inhibitor {
        QString what;
        QString why;
        QDBusUnixFileDescriptor lock; ///< The machine waits for as long as this is open.
        bool isWanted = true;
    };

    void takeAll();
    void take(Inhibitor& inhibitor);
    static void release(Inhibitor& inhibitor);

    QDBusConnection bus_;
    Events events_;
    QDBusServiceWatcher watcher_;
    Inhibitor sleep_{"sleep", "A running session is paused first", {}};
    Inhibitor shutdown_{"shutdown", "A running session is paused first", {}};
};

} // namespace Kestry
