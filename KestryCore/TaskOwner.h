#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <list>

#include "Scheduler.h"
#include "Task.h"

namespace KestryCore {

/// Runs tasks that nobody awaits. It has their frames: what still waits when the owner is destroyed
/// is cancelled, and never goes on.
///
/// An exception in a task goes to the failure handler, never into the event loop.
///
/// Must not be destroyed by one of its own tasks. Not thread-safe.
class TaskOwner {
public:
    using FailureHandler = std::function<void(std::exception_ptr)>;

    /// The scheduler must outlive the owner. The handler is called at the end of each task that
    /// fails; what it throws itself is dropped.
    TaskOwner(Scheduler& scheduler, FailureHandler failed);

    /// Begins a task; it runs up to its first wait in this call.
    void start(Task<void> task);

    /// Tasks that have not ended.
    [[nodiscard]] std::size_t size() const;

private:
    struct Running {
        Task<void> task;
        Timer removal; // once it has ended, in a later turn
    };

    [[nodiscard]] Task<void> run(Task<void> task, std::list<Running>::iterator place);

    Scheduler& scheduler_;
    FailureHandler failed_;
    std::list<Running> running_;
};

} // namespace KestryCore
