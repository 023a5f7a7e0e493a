#include "SleepProofTimer.h"

#include <algorithm>
#include <utility>

namespace KestryCore {

SleepProofTimer::SleepProofTimer(Scheduler& scheduler, SteadyClock steady)
    : scheduler_(scheduler), steady_(std::move(steady))
{
}

void SleepProofTimer::start(double seconds, Scheduler::Action action)
{
    action_ = std::move(action);
    due_ = steady_() + seconds;
    wait();
}

void SleepProofTimer::machineWoke()
{
    if (action_) {
        wait();
    }
}

void SleepProofTimer::wait()
{
    timer_ = scheduler_.after(std::max(0.0, due_ - steady_()), [this] { look(); });
}

void SleepProofTimer::look()
{
    // The two clocks may differ by their rounding.
    constexpr double rounding = 0.001;
    if (steady_() + rounding < due_) {
        return wait();
    }
    // A local, because the action may start or destroy this timer.
    const Scheduler::Action action = std::exchange(action_, nullptr);
    action();
}

} // namespace KestryCore
