#pragma once

#include <functional>
#include <memory>

#include "Scheduler.h"
#include "UpdatePrefix.h"

namespace Kestry {

/// Tells the installation that this version has started well, so that the one before can go. For
/// the application to begin once its ledger is open and its panels are up.
class StartConfirmation {
public:
    /// Does a piece of work beside the event loop, then calls the second on it.
    using Work = std::function<void(std::function<void()> work, std::function<void()> done)>;

    /// The scheduler must outlive it.
    StartConfirmation(
        KestryCore::Scheduler& scheduler, Work work, UpdatePrefix prefix, UpdateVersion running);

    /// Confirms, and tries again some times while that fails: somebody else may be at the
    /// installation. What fails for good is left to the next start.
    void begin();

private:
    struct Attempt {
        UpdatePrefix prefix;
        UpdateVersion running;
        bool hasSucceeded = false;
    };
    static void confirm(Attempt& attempt);

    KestryCore::Scheduler& scheduler_;
    Work work_;
    std::shared_ptr<Attempt> attempt_; // also of the work, which may outlive this
    std::shared_ptr<bool> isHere_ = std::make_shared<bool>(true);
    int triesLeft_ = 10;
    KestryCore::Timer pause_;
};

} // namespace Kestry
