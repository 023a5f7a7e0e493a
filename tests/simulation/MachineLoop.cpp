#include "MachineLoop.h"

#include <utility>

namespace KestryCore {

double MachineLoop::now() const
{
    return asleepSince_.value_or(worldSeconds_) - slept_;
}

Timer MachineLoop::after(double seconds, Action action)
{
    auto pending = std::make_shared<Action>(std::move(action));
    due_.emplace(now() + seconds, Pending{nullptr, pending});
    return Timer(std::move(pending));
}

void MachineLoop::later(double seconds, Action action)
{
    due_.emplace(now() + seconds, Pending{std::make_shared<Action>(std::move(action)), {}});
}

void MachineLoop::sleep()
{
    if (!isAsleep()) {
        asleepSince_ = worldSeconds_;
    }
}

double MachineLoop::wake()
{
    if (!isAsleep()) {
        return 0.0;
    }
    const double slept = worldSeconds_ - *asleepSince_;
    slept_ += slept;
    asleepSince_.reset();
    return slept;
}

std::optional<double> MachineLoop::nextDue()
{
    while (!due_.empty() && due_.begin()->second.action() == nullptr) {
        due_.erase(due_.begin()); // Cancelled.
    }
    if (due_.empty() || isAsleep()) {
        return std::nullopt;
    }
    return due_.begin()->first + slept_;
}

void MachineLoop::runNext()
{
    const auto first = due_.begin();
    const std::shared_ptr<Action> action = first->second.action();
    due_.erase(first);
    if (action) {
        (*action)();
    }
}

} // namespace KestryCore
