#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include "Date.h"
#include "Scheduler.h"

namespace KestryCore {

/// Time that passes only when told to: an hour of waiting takes microseconds, and the same run
/// comes out the same each time. Actions due at one moment run in the order of asking.
class VirtualScheduler final : public Scheduler {
public:
    [[nodiscard]] double now() const override { return now_; }

    void post(Action action) override
    {
        due_.emplace(now_, std::make_shared<Action>(std::move(action)));
    }

    [[nodiscard]] Timer after(double seconds, Action action) override
    {
        auto pending = std::make_shared<Action>(std::move(action));
        due_.emplace(now_ + seconds, std::weak_ptr<Action>(pending));
        return Timer(std::move(pending));
    }

    /// Lets time pass, running what falls due on the way, each action at its own moment.
    void advance(double seconds)
    {
        const double end = now_ + seconds;
        while (!due_.empty() && due_.begin()->first <= end) {
            runNext();
        }
        now_ = end;
    }

    /// Runs what is due now, and what that asks for without delay.
    void turn() { advance(0.0); }

    /// Whether anything would still wake the program up.
    [[nodiscard]] bool isIdle() const
    {
        for (const auto& [moment, pending] : due_) {
            if (pending.isLive()) {
                return false;
            }
        }
        return true;
    }

    /// A wall clock that follows this time, from a date on.
    [[nodiscard]] Clock wallClock(Date origin) const
    {
        return [this, origin] { return origin + now_; };
    }

private:
    // A posted action is kept alive by the queue, a timed one by its timer.
    struct Pending {
        Pending(std::shared_ptr<Action> action) : posted(std::move(action)) { }
        Pending(std::weak_ptr<Action> action) : timed(std::move(action)) { }

        [[nodiscard]] std::shared_ptr<Action> action() const
        {
            return posted ? posted : timed.lock();
        }
        [[nodiscard]] bool isLive() const { return action() != nullptr; }

        std::shared_ptr<Action> posted;
        std::weak_ptr<Action> timed;
    };

    void runNext()
    {
        const auto first = due_.begin();
        const std::shared_ptr<Action> action = first->second.action();
        now_ = std::max(now_, first->first);
        due_.erase(first);
        if (action) {
            (*action)();
        }
    }

    double now_ = 0.0;
    std::multimap<double, Pending> due_;
};

} // namespace KestryCore
