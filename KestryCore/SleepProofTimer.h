#pragma once

#include "Date.h"
#include "Scheduler.h"

namespace KestryCore {

/// Runs an action after some seconds, of which those count that the machine has slept.
///
/// The timers of a scheduler stand still while the machine sleeps. So whoever learns that it has
/// woken calls `machineWoke`, and what fell due meanwhile runs in the next turn. Without that call
/// it runs late by up to its own length, never lost.
class SleepProofTimer {
public:
    /// `steady` counts sleep. The scheduler must outlive the timer.
    SleepProofTimer(Scheduler& scheduler, SteadyClock steady);

    /// Replaces an action that is waiting. Destroying the timer cancels it.
    void start(double seconds, Scheduler::Action action);
    void machineWoke();

private:
    void wait();
    void look();

    Scheduler& scheduler_;
    SteadyClock steady_;
    Scheduler::Action action_; // empty while none waits
    double due_ = 0.0;
    Timer timer_;
};

} // namespace KestryCore
