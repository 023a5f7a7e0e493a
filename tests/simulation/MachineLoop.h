#pragma once

#include <map>
#include <memory>
#include <optional>

#include "Scheduler.h"

namespace KestryCore {

/// The event loop of a program on a machine of a simulated world. Its clock and its timers stand
/// still while the machine sleeps; what is posted meanwhile waits.
///
/// The world runs the actions, one at a time, when time has come to them. Actions due at one moment
/// run in the order of asking.
class MachineLoop final : public Scheduler {
public:
    /// The seconds of the world, which must outlive the loop.
    explicit MachineLoop(const double& worldSeconds) : worldSeconds_(worldSeconds) { }

    [[nodiscard]] double now() const override;
    void post(Action action) override { later(0.0, std::move(action)); }
    [[nodiscard]] Timer after(double seconds, Action action) override;
    /// The same as `after`, for what nobody cancels.
    void later(double seconds, Action action);

    void sleep();
    /// Returns for how many seconds the machine has slept.
    double wake();
    [[nodiscard]] bool isAsleep() const { return asleepSince_.has_value(); }
    /// The program has ended: nothing of what waits happens any more.
    void clear() { due_.clear(); }

    /// When the next action is due, in seconds of the world; none while there is none.
    [[nodiscard]] std::optional<double> nextDue();
    /// Runs the next action; there must be one.
    void runNext();

private:
    // A posted action is kept alive by the queue, a timed one by its timer.
    struct Pending {
        [[nodiscard]] std::shared_ptr<Action> action() const
        {
            return posted ? posted : timed.lock();
        }
        std::shared_ptr<Action> posted;
        std::weak_ptr<Action> timed;
    };

    const double& worldSeconds_;
    double slept_ = 0.0; // seconds, all sleeps but one that lasts
    std::optional<double> asleepSince_;
    std::multimap<double, Pending> due_; // by the time of this loop
};

} // namespace KestryCore
