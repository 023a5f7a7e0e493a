#pragma once

#include <QSocketNotifier>

#include <functional>

namespace Kestry {

/// Keeps SIGTERM, SIGINT and SIGHUP from ending the process. To be called before any thread is
/// made, because only threads made later inherit it.
void holdQuitSignals();

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the event loop, for as long as it lives. They
/// must be held already. One per process: signals belong to all of it.
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
