#pragma once

#include <QSocketNotifier>

#include <functional>

namespace Kestry {

/// Blocks SIGTERM, SIGINT and SIGHUP, so that they do not end the process. Call it before any
/// thread is created, because only later threads inherit it.
void holdQuitSignals();

/// Turns SIGTERM, SIGINT and SIGHUP into a call from the event loop. Call `holdQuitSignals` before.
/// One per process, because signals belong to the whole process.
class QuitSignals {
public:
    explicit QuitSignals(std::function<void()> quitRequested);
    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;
    ~QuitSignals();

private:
    QSocketNotifier notifier_;
};

} // namespace Kestry
