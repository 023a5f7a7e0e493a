#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AppState.h"
#include "Commander.h"
#include "NotchController.h"
#include "Scheduler.h"
#include "TimeStore.h"

namespace Kestry {

enum class TerminateReply { terminateNow, cancel };

/// The life of the application: what is made at the start and in which order, the regular
/// checkpoint, what a quit and the machine's sleep do to a running session, and how the program is
/// replaced by a newer one. One for the whole run.
class AppDelegate {
public:
    /// What the application needs of the world; all of it must outlive the delegate.
    struct Platform {
        KestryCore::StorePlatform store;
        KestryCore::Scheduler& scheduler;
        UserDefaults& defaults;
        /// Ends the process's event loop.
        std::function<void()> quit{};
        std::string bundlePath{}; ///< What an update replaces.
    };

    /// Opens the store, with the recovery of a crashed session or the handover of an update. Never
    /// fails: what goes wrong stands in the store's `errorMessage`.
    AppDelegate(Platform platform, KestryCore::StoreOptions options);

    /// Brings up the strip, starts the checkpoints and tells an update agent that the program is
    /// up. The panels must live until `willTerminate`.
    void didFinishLaunching(NotchPanels& panels);
    /// Answers a quit. A running session is paused first; when that cannot be saved the quit is
    /// cancelled, so that the user sees why and decides. Where the data directory is not the one
    /// any more that was opened, the next quit is that decision: it goes through, and the session
    /// stays in the ledger as it was last saved. A program that is being replaced leaves the
    /// session running to its successor.
    [[nodiscard]] TerminateReply shouldTerminate();
    /// The display has gone, and the program goes with it: as `shouldTerminate`, but nothing can
    /// cancel it and no window is opened. Returns false when the session could not be paused; the
    /// store's `errorMessage` says why, and the next start recovers it.
    [[nodiscard]] bool leaveWithDisplay();
    /// Stops the timers and lets go of the panels. Nothing is saved: every change was, when it
    /// was made.
    void willTerminate();

    /// Quits, unless `shouldTerminate` cancels that.
    void terminate();
    /// The user has started the program again.
    void reopen();
    /// The desktop has handed URLs over. All are ignored but a request for an update that its
    /// agent has laid down in the data directory as well.
    void open(const std::vector<std::string>& urls);
    /// The machine is about to sleep: a running session is paused, and stays so.
    void willSleep();

    [[nodiscard]] KestryCore::TimeStore& store() { return store_; }
    [[nodiscard]] AppState& state() { return state_; }
    [[nodiscard]] Commander& commander() { return commander_; }
    [[nodiscard]] KestryCore::Date now() const { return platform_.store.now(); }
    [[nodiscard]] const std::optional<KestryCore::Uuid>& pendingUpdateToken() const
    {
        return pendingUpdateToken_;
    }

private:
    void startCheckpointTimer();
    void stopCheckpointTimer();
    void armCheckpoint();
    void scheduleCheckpoint(double seconds);
    void checkpoint();
    void openAgainAfter(double seconds);
    void installNotchActions();
    void acknowledgeUpdate();
    [[nodiscard]] TerminateReply leaveToUpdate();
    [[nodiscard]] TerminateReply pauseAndLeave();

    Platform platform_;
    AppState state_;
    const std::optional<KestryCore::Uuid> launchUpdateToken_;
    std::optional<KestryCore::Uuid> pendingUpdateToken_;
    KestryCore::TimeStore store_;
    Commander commander_;
    std::unique_ptr<NotchController> notch_;
    KestryCore::Timer opening_;
    KestryCore::Timer checkpoint_;
    bool isCheckpointArmed_ = false;
    bool mayLeaveUnsaved_ = false; // the user has been told what that means
    KestryCore::Subscription checkpointSubscription_;
};

} // namespace Kestry
