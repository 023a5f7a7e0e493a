#include "AppDelegate.h"

#include <algorithm>
#include <utility>

#include "UpdateRequest.h"

namespace Kestry {
namespace {

constexpr double checkpointSeconds = 15.0;
constexpr double firstOpeningPause = 2.0;
constexpr double longestOpeningPause = 60.0;

} // namespace

AppDelegate::AppDelegate(Platform platform, KestryCore::StoreOptions options)
    : platform_(std::move(platform)), state_(platform_.defaults),
      launchUpdateToken_(options.updateToken), store_(platform_.store, std::move(options)),
      cloudSync_(store_, platform_.cloud.configuration, cloudPlatform()),
      commander_(store_, state_, platform_.store.now, [this] { terminate(); }),
      updater_({store_, state_, platform_.updates.configuration, platform_.updates.makeFramework,
          [this] { return terminate(); }})
{
}

KestryCore::CloudPlatform AppDelegate::cloudPlatform()
{
    KestryCore::CloudPlatform platform{.scheduler = platform_.scheduler,
        .open = platform_.cloud.open,
        .hostName = platform_.cloud.hostName,
        .now = platform_.store.now,
        .steady = platform_.store.steady};
    if (platform_.cloud.observeAccount) {
        platform.observeAccount = [this](const std::function<void()>& observer) {
            return platform_.cloud.observeAccount([this, observer] {
                if (concernsAccount()) {
                    observer();
                } else {
                    cloudSync_.leaveAccount();
                }
            });
        };
    }
    return platform;
}

// Whoever signs in for the first time has no other account that the ledger could belong to.
bool AppDelegate::concernsAccount() const
{
    return store_.data()->replication || *cloudSync_.fields().isSyncing;
}

// In this order: the updater, replication, the strip and what others can ask of it, the
// checkpoints, and at the very end the word to an update agent that all of this is up.
void AppDelegate::didFinishLaunching(NotchPanels& panels)
{
    updater_.configure();
    startCloudSync();
    notch_ = std::make_unique<NotchController>(
        panels, platform_.scheduler, store_, [this] { state_.openDashboard(); });
    installNotchActions();
    if (*state_.notchEnabled()) {
        notch_->makeVisible();
    }
    startCheckpointTimer();
    openAgainAfter(firstOpeningPause);
    acknowledgeUpdate();
}

void AppDelegate::startCloudSync()
{
    if (!store_.isDemo()) {
        cloudSync_.start();
    }
}

void AppDelegate::installNotchActions()
{
    const auto toggle = [this] {
        state_.setNotchEnabled(true);
        notch_->toggleOpen();
    };
    const auto setVisible = [this](bool visible) {
        if (visible) {
            notch_->makeVisible();
        } else {
            notch_->hide();
        }
    };
    state_.installNotch(toggle, setVisible);
}

// A ledger that could not be read for want of something that may be back soon. The pauses grow:
// reading a large one takes its time.
void AppDelegate::openAgainAfter(double seconds)
{
    if (!store_.canOpenAgain()) {
        return;
    }
    opening_ = platform_.scheduler.after(seconds, [this, seconds] {
        store_.openAgain();
        openAgainAfter(std::min(2.0 * seconds, longestOpeningPause));
    });
}

// The checkpoints.

// The ticks count from the start of the session and not of the program: while nothing runs, there
// is nothing that wakes it.
void AppDelegate::startCheckpointTimer()
{
    stopCheckpointTimer();
    checkpointSubscription_ = store_.data().observe([this](const auto&) { armCheckpoint(); });
    armCheckpoint();
}

void AppDelegate::stopCheckpointTimer()
{
    checkpointSubscription_ = {};
    checkpoint_.cancel();
    isCheckpointArmed_ = false;
}

void AppDelegate::armCheckpoint()
{
    const auto& active = store_.data()->active;
    const bool isWanted = active && !active->isPaused();
    if (isWanted == isCheckpointArmed_) {
        return;
    }
    isCheckpointArmed_ = isWanted;
    checkpoint_.cancel();
    if (isWanted) {
        // One that comes to this process with an older checkpoint has waited already.
        const double waited = std::clamp(now() - active->checkpointAt, 0.0, checkpointSeconds);
        scheduleCheckpoint(checkpointSeconds - waited);
    }
}

void AppDelegate::scheduleCheckpoint(double seconds)
{
    checkpoint_ = platform_.scheduler.after(seconds, [this] {
        scheduleCheckpoint(checkpointSeconds);
        checkpoint();
    });
}

void AppDelegate::checkpoint()
{
    try {
        store_.checkpoint(now());
        mayLeaveUnsaved_ = false;
    } catch (const std::exception& failure) {
        store_.reportFailure(KestryCore::failureText(failure)); // the next tick tries again
    }
}

// Sleep and quit.

void AppDelegate::willSleep()
{
    const auto& active = store_.data()->active;
    if (!active || active->isPaused()) {
        return;
    }
    commander_.writeTitle();
    try {
        store_.pause(now());
    } catch (const std::exception& failure) {
        store_.reportFailure(KestryCore::failureText(failure));
    }
}

bool AppDelegate::terminate()
{
    if (shouldTerminate() == TerminateReply::cancel) {
        return false;
    }
    if (platform_.quit) {
        platform_.quit();
    }
    return true;
}

TerminateReply AppDelegate::shouldTerminate()
{
    if (updater_.refusesQuit()) {
        return TerminateReply::cancel;
    }
    commander_.writeTitle(); // where that is refused, so is the pause, in the same words
    if (!doLastWork()) {
        pendingUpdateToken_.reset();
        state_.openDashboard();
        return TerminateReply::cancel;
    }
    return pendingUpdateToken_ ? leaveToUpdate() : pauseAndLeave();
}

TerminateReply AppDelegate::leaveToUpdate()
{
    stopCheckpointTimer();
    cloudSync_.stop();
    try {
        store_.prepareForUpdate(*pendingUpdateToken_, now());
        return TerminateReply::terminateNow;
    } catch (const std::exception&) {
        pendingUpdateToken_.reset();
        startCheckpointTimer();
        startCloudSync();
        state_.openDashboard();
        return TerminateReply::cancel;
    }
}

TerminateReply AppDelegate::pauseAndLeave()
{
    const auto& active = store_.data()->active;
    if (!active || active->isPaused()) {
        return TerminateReply::terminateNow;
    }
    try {
        store_.pause(now());
        return TerminateReply::terminateNow;
    } catch (const std::exception& failure) {
        // A directory that is gone for good would keep the program running for good, and the way
        // on is to start it again.
        if (mayLeaveUnsaved_ && store_.isAstray()) {
            return TerminateReply::terminateNow;
        }
        mayLeaveUnsaved_ = store_.isAstray();
        if (mayLeaveUnsaved_) {
            store_.reportFailure(std::string(failure.what())
                + " To quit all the same, and lose "
                  "the time since the last save, quit once more.");
        }
        state_.openDashboard();
        return TerminateReply::cancel;
    }
}

bool AppDelegate::leaveWithDisplay()
{
    state_.installOpenDashboard(nullptr);
    updater_.withdrawInstallation();
    (void)doLastWork(); // if it fails, the pause comes all the same
    // With a token still there the session has been handed over, and is the successor's.
    return pendingUpdateToken_ || shouldTerminate() == TerminateReply::terminateNow;
}

void AppDelegate::willTerminate()
{
    cloudSync_.stop();
    stopCheckpointTimer();
    notch_.reset();
}

// What comes from outside.

void AppDelegate::reopen()
{
    state_.openDashboard();
}

void AppDelegate::open(const std::vector<std::string>& urls)
{
    if (store_.isDemo() || pendingUpdateToken_) {
        return;
    }
    const auto token = updateToken(urls);
    auto& files = platform_.store.files;
    if (!token || !UpdateRequest(files, store_.directory()).holds(*token)) {
        return;
    }
    try {
        store_.claimDirectory();
        UpdateRequest(files, store_.place()).remove();
    } catch (const std::exception& failure) {
        store_.reportFailure(
            std::string("The update could not start. Your session is still running: ")
            + KestryCore::failureText(failure));
        return;
    }
    pendingUpdateToken_ = token;
    terminate();
}

void AppDelegate::acknowledgeUpdate()
{
    // A store that opened with a message leaves the update unconfirmed.
    if (!launchUpdateToken_ || store_.isDemo() || *store_.errorMessage()) {
        return;
    }
    try {
        store_.claimDirectory();
        Kestry::acknowledgeUpdate(
            platform_.store.files, store_.place(), *launchUpdateToken_, platform_.bundlePath);
    } catch (const std::exception& failure) {
        store_.reportFailure(std::string("The app opened, but could not acknowledge the update: ")
            + KestryCore::failureText(failure));
    }
}

} // namespace Kestry
