#pragma once

#include <QObject>
#include <QThreadPool>

#include <functional>

namespace Kestry {

/// Work that would stop the event loop for too long, done on another thread, one piece after the
/// other.
class BackgroundWork final {
public:
    BackgroundWork();
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;
    /// Waits for the piece that is being done, and drops the others. No `done` runs any more.
    ~BackgroundWork();

    /// Calls `work` on the other thread, and `done` afterwards on the one that made this object.
    /// `work` must not throw.
    void run(std::function<void()> work, std::function<void()> done);

private:
    QObject context_;
    QThreadPool pool_;
};

} // namespace Kestry
