#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "AppState.h"
#include "NotchController.h"
#include "Scheduler.h"
#include "TimeStore.h"

namespace Kestry {

enum class TerminateReply { terminateNow, cancel };

/// The life of the application: what is made at the start and in which order, the regular
/// checkpoint, and what a quit does to a running session. One for the whole run.
class AppDelegate {
public:
    /// What the application needs of the world; all of it must outlive the delegate.
    struct Platform {
        KestryCore::StorePlatform store;
        KestryCore::Scheduler& scheduler;
        UserDefaults& defaults;
    };

    /// Opens the store, the recovery of a crashed session included. Never fails: what goes wrong
    /// stands in the store's `errorMessage`.
    AppDelegate(Platform platform, KestryCore::StoreOptions options);

    /// Brings up the strip and starts the checkpoints. The panels must live until
    /// `willTerminate`.
    void didFinishLaunching(NotchPanels& panels);
    /// Answers a quit. A running session is paused first; when that cannot be saved the quit is
    /// cancelled, so that the user sees why and decides.
    [[nodiscard]] TerminateReply shouldTerminate();
    /// Stops the timers and lets go of the panels. Nothing is saved: every change was, when it
    /// was made.
    void willTerminate();

    [[nodiscard]] KestryCore::TimeStore& store() { return store_; }
    [[nodiscard]] AppState& state() { return state_; }
    [[nodiscard]] KestryCore::Date now() const { return platform_.store.now(); }

private:
    void startCheckpointTimer();
    void checkpoint();
    void installNotchActions();

    Platform platform_;
    AppState state_;
    KestryCore::TimeStore store_;
    std::unique_ptr<NotchController> notch_;
    KestryCore::Timer checkpoint_;
};

} // namespace Kestry
