#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QString>

#include <functional>

namespace Kestry {

/// What the machine is about to do, from systemd-logind. It is asked to wait until the application
/// has seen to it that the session is paused and saved; without a system bus or a logind on it
/// nothing is heard, and nothing is said of that.
class LoginManager final : public QObject {
    Q_OBJECT

public:
    /// Each is called before the machine goes on, which waits for a few seconds at most.
    struct Events {
        std::function<void()> willSleep;
        std::function<void()> willShutDown;
    };

    LoginManager(QDBusConnection bus, Events events);

private:
    Q_SLOT void prepareForSleep(bool begins);
    Q_SLOT void prepareForShutdown(bool begins);

    /// One of the things that the machine is asked to wait with.
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
