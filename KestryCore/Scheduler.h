#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace KestryCore {

/// One action that is to run later. Letting it go, or assigning another, cancels the action; so
/// whoever owns the timer is alive whenever its action runs.
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

/// The event loop as the logic sees it: everything runs on the one thread that owns the
/// scheduler, one action after the other, never from inside the call that asked for it.
class Scheduler {
public:
    using Action = std::function<void()>;

    Scheduler() = default;
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;
    virtual ~Scheduler() = default;

    /// Seconds on a steady clock: it never jumps when the time of day is set, and is good for
    /// differences only. Dates come from a `Clock`.
    [[nodiscard]] virtual double now() const = 0;

    /// Runs an action on a coming turn of the loop. Actions run in the order of posting, and
    /// cannot be taken back.
    virtual void post(Action action) = 0;

    /// Runs an action once, `seconds` from now at the earliest and never early; 0 means the next
    /// turn. The action may let go or replace its own timer.
    [[nodiscard]] virtual Timer after(double seconds, Action action) = 0;
};

} // namespace KestryCore
