#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "AppState.h"
#include "CloudSyncController.h"
#include "Commander.h"
#include "NotchController.h"
#include "Scheduler.h"
#include "SoftwareUpdater.h"
#include "TimeStore.h"

namespace Kestry {

enum class TerminateReply { terminateNow, cancel };

/// The life of the application: the order of its start, the regular checkpoint, what a quit and the
/// machine's sleep do to a running session, and the replacement by a newer program. There is one
/// for the whole run.
class AppDelegate {
public:
    /// What replication goes by. Without more words this build has no cloud store.
    struct Cloud {
        KestryCore::CloudConfiguration configuration{};
        /// See `CloudPlatform`.
        std::function<std::unique_ptr<KestryCore::CloudContainer>(const std::string&)> open{};
        std::function<std::string()> hostName{};
        std::function<KestryCore::Subscription(std::function<void()>)> observeAccount{};
    };

    /// What updates go by. Without more words this build has none.
    struct Updates {
        UpdateConfiguration configuration{};
        UpdateFrameworkFactory makeFramework{};
    };

    /// The platform; all of it must outlive the delegate.
    struct Platform {
        KestryCore::StorePlatform store;
        KestryCore::Scheduler& scheduler;
        UserDefaults& defaults;
        /// Ends the process's event loop.
        std::function<void()> quit{};
        std::string bundlePath{}; ///< The file that an update replaces.
        Cloud cloud{};
        Updates updates{};
    };

    /// Opens the store, which recovers a crashed session or takes over the session of an update.
    /// Never throws: a failure is published as the store's `errorMessage`.
    AppDelegate(Platform platform, KestryCore::StoreOptions options);

    /// Configures the updater, shows the strip, starts the checkpoints and tells an update agent
    /// that the program is running. The panels must outlive the call of `willTerminate`.
    void didFinishLaunching(NotchPanels& panels);
    /// Says what has been begun and is to be done before a quit. It returns false when that failed,
    /// once it has put why into the store's `errorMessage`. An empty function takes it back.
    void installLastWork(std::function<bool()> work) { lastWork_ = std::move(work); }
    /// Answers a request to quit. One for an update is cancelled while anything could be lost by
    /// it. A running session is paused first, with the title that is typed.
    /// When that cannot be saved, or the last work failed, the quit is cancelled and the window
    /// says why. When the data directory has been exchanged for
    /// another one, saving can never succeed: then a second request quits all the same, and the
    /// session stays in the ledger as last saved. A program that is being replaced leaves the
    /// session running for its successor.
    [[nodiscard]] TerminateReply shouldTerminate();
    /// Ends with the display: pauses like `shouldTerminate`, but cannot be cancelled and opens no
    /// window. Returns false when the session could not be paused; the store's `errorMessage` says
    /// why, and the next start recovers the session.
    [[nodiscard]] bool leaveWithDisplay();
    /// Stops the timers and releases the panels. Saves nothing: every change was saved when it was
    /// made.
    void willTerminate();

    /// Quits, unless `shouldTerminate` cancels. Returns whether the application now ends.
    bool terminate();
    /// The user has started the program again: opens the window.
    void reopen();
    /// Takes URLs from the desktop. Acts only on a request for an update whose token the agent has
    /// also written into the data directory; ignores all others.
    void open(const std::vector<std::string>& urls);
    /// The machine is about to sleep: pauses a running session. It stays paused afterwards.
    void willSleep();
    /// The machine has woken up: exchanges records with the cloud when that fell due meanwhile.
    void didWake() { cloudSync_.machineWoke(); }
    /// The user has come to the program: exchanges records with the cloud.
    void didBecomeActive() { cloudSync_.syncNow(); }

    [[nodiscard]] KestryCore::TimeStore& store() { return store_; }
    [[nodiscard]] KestryCore::CloudSyncController& cloudSync() { return cloudSync_; }
    [[nodiscard]] AppState& state() { return state_; }
    [[nodiscard]] SoftwareUpdater& updater() { return updater_; }
    [[nodiscard]] Commander& commander() { return commander_; }
    [[nodiscard]] KestryCore::Date now() const { return platform_.store.now(); }
    [[nodiscard]] const std::optional<KestryCore::Uuid>& pendingUpdateToken() const
    {
        return pendingUpdateToken_;
    }

private:
    [[nodiscard]] KestryCore::CloudPlatform cloudPlatform();
    [[nodiscard]] bool concernsAccount() const;
    void startCloudSync();
    void startCheckpointTimer();
    void stopCheckpointTimer();
    void armCheckpoint();
    void scheduleCheckpoint(double seconds);
    void checkpoint();
    void openAgainAfter(double seconds);
    void installNotchActions();
    void acknowledgeUpdate();
    [[nodiscard]] bool doLastWork() const { return !lastWork_ || lastWork_(); }
    [[nodiscard]] TerminateReply leaveToUpdate();
    [[nodiscard]] TerminateReply pauseAndLeave();

    Platform platform_;
    AppState state_;
    const std::optional<KestryCore::Uuid> launchUpdateToken_;
    std::optional<KestryCore::Uuid> pendingUpdateToken_;
    KestryCore::TimeStore store_;
    KestryCore::CloudSyncController cloudSync_;
    Commander commander_;
    SoftwareUpdater updater_;
    std::function<bool()> lastWork_;
    std::unique_ptr<NotchController> notch_;
    KestryCore::Timer opening_;
    KestryCore::Timer checkpoint_;
    bool isCheckpointArmed_ = false;
    bool mayLeaveUnsaved_ = false; // the user has been told what that means
    KestryCore::Subscription checkpointSubscription_;
};

} // namespace Kestry
