#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace KestryCore {

/// One action that runs later. Destroying or replacing this object cancels the action, so the owner
/// of a timer exists whenever its action runs.
class Timer {
public:
    Timer() = default;
    explicit Timer(std::shared_ptr<void> pending) : pending_(std::move(pending)) { }
    Timer(Timer&&) noexcept = default;
    Timer& operator=(Timer&&) noexcept = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() = default;

    void cancel() { pending_.reset(); }

private:
    std::shared_ptr<void> pending_;
};

/// The event loop: all actions run on the one thread that owns the scheduler, one after the other,
/// and never during the call that scheduled them.
class Scheduler {
public:
    using Action = std::function<void()>;

    Scheduler() = default;
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;
    virtual ~Scheduler() = default;

    /// Seconds on a steady clock, which does not jump when the time of day is set. Only differences
    /// have a meaning. Dates come from a `Clock`.
    [[nodiscard]] virtual double now() const = 0;

    /// Runs an action on a later turn of the loop. Actions run in the order of posting and cannot
    /// be cancelled.
    virtual void post(Action action) = 0;

    /// Runs an action once, in `seconds` seconds or later, never earlier; 0 means the next turn.
    /// The action may destroy or replace its own timer.
    [[nodiscard]] virtual Timer after(double seconds, Action action) = 0;
};

} // namespace KestryCore
