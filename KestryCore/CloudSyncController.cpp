#include "CloudSyncController.h"

#include <utility>

#include "OutboxDelivery.h"
#include "Reply.h"
#include "SyncDeliveryError.h"
#include "SyncFailureText.h"
#include "SyncStatusText.h"

namespace KestryCore {

namespace {

constexpr double quietSeconds = 2.0;
constexpr double pollSeconds = 60.0;

} // namespace

CloudSyncController::CloudSyncController(
    TimeStore& store, CloudConfiguration configuration, CloudPlatform platform)
    : store_(store), configuration_(std::move(configuration)), platform_(std::move(platform)),
      switch_(store_, fields_, configuration_.environment, platform_.newUuid),
      tasks_(platform_.scheduler, [this](const std::exception_ptr& failure) {
          try {
              std::rethrow_exception(failure);
          } catch (const std::exception& known) {
              fail(known);
          }
      })
{
    checkBuild();
}

void CloudSyncController::checkBuild()
{
    if (!configuration_.isConfigured) {
        fields_.status.assign("iCloud requires a signed, provisioned build");
    }
    if (!configuration_.isConfigured && !configuration_.environment) {
        return;
    }
    try {
        requireEnvironment();
    } catch (const std::exception& failure) {
        fail(failure);
    }
}

void CloudSyncController::requireEnvironment() const
{
    if (!configuration_.environment) {
        throw SyncDeliveryError("This build has no valid iCloud environment configuration. Install "
                                "a correctly signed Kestry build; your local data is preserved.");
    }
    store_.validateSyncEnvironment(*configuration_.environment);
}

void CloudSyncController::fail(const std::exception& failure)
{
    fields_.errorMessage.assign(syncFailureText(failure));
    const auto* const ofTheCloud = dynamic_cast<const CloudError*>(&failure);
    const bool isReplaced =
        ofTheCloud != nullptr && ofTheCloud->code() == CloudErrorCode::storeReplaced;
    const bool isMissing = dynamic_cast<const WorkspaceMissing*>(&failure) != nullptr;
    fields_.offersUpload.assign(isReplaced || isMissing);
    fields_.status.assign("Sync needs attention");
}

// When to run.

void CloudSyncController::start()
{
    if (isStarted()) {
        return;
    }
    subscriptions_.push_back(store_.data().observe([this](const LedgerData&) {
        followSwitch(pollSeconds);
        followReview();
        awaitQuiet();
    }));
    if (platform_.observeAccount) {
        subscriptions_.push_back(platform_.observeAccount([this] { awaitAccountChange(); }));
    }
    awaitQuiet();
    followSwitch(0);
}

// A program that does not replicate does not wake up for it.
void CloudSyncController::followSwitch(double secondsToFirstPoll)
{
    if (!isEnabled()) {
        polling_.reset();
    } else if (isStarted() && !polling_) {
        polling_ = std::make_shared<SleepProofTimer>(platform_.scheduler, platform_.steady);
        polling_->start(secondsToFirstPoll, [this] { poll(); });
    }
}

// Nobody is asked to review what is decided. The next cycle may be a minute away.
void CloudSyncController::followReview()
{
    const auto& state = store_.data()->replication;
    if (*fields_.status == reviewText && state && state->conflicts.empty()) {
        fields_.status.assign(syncStatusText(*store_.data()));
    }
}

void CloudSyncController::awaitAccountChange()
{
    // A second change must not put off the first: an answer for the account in between would then
    // be taken before.
    if (!accountChange_) {
        accountChange_ = platform_.scheduler.after(0, [this] {
            accountChange_.reset();
            switch_.suspendAccount();
            fields_.errorMessage.assign(std::nullopt); // It was about the other account.
        });
    }
}

void CloudSyncController::stop()
{
    switch_.endRuns();
    subscriptions_.clear();
    accountChange_.reset();
    quiet_.cancel();
    debounce_.cancel();
    polling_.reset();
}

void CloudSyncController::machineWoke()
{
    if (polling_) {
        polling_->machineWoke();
    }
}

void CloudSyncController::poll()
{
    tasks_.start(pollOnce(polling_));
}

Task<void> CloudSyncController::pollOnce(std::weak_ptr<SleepProofTimer> polling)
{
    if (isEnabled()) {
        Task<void> cycle = runCycle();
        co_await cycle;
    }
    // Unless it was stopped meanwhile, and perhaps started anew.
    if (const auto timer = polling.lock()) {
        timer->start(pollSeconds, [this] { poll(); });
        followSwitch(pollSeconds);
    }
}

void CloudSyncController::awaitQuiet()
{
    if (!isEnabled()) {
        quiet_.cancel();
        return;
    }
    quiet_ = platform_.scheduler.after(quietSeconds, [this] { lookAtOutbox(); });
}

void CloudSyncController::lookAtOutbox()
{
    auto revisions = outboxRevisions(*store_.data());
    if (revisions == observedRevisions_) {
        return;
    }
    observedRevisions_ = std::move(revisions);
    if (isEnabled() && !observedRevisions_.empty()) {
        debounce_ = platform_.scheduler.after(0, [this] { syncNow(); });
    }
}

// One cycle.

CloudContainer& CloudSyncController::container()
{
    if (!container_) {
        container_ = platform_.open(configuration_.containerIdentifier);
    }
    return *container_;
}

void CloudSyncController::syncNow(Done done)
{
    tasks_.start(syncThen(std::move(done)));
}

Task<void> CloudSyncController::syncThen(Done done)
{
    Task<void> cycle = runCycle();
    co_await cycle;
    if (done) {
        done();
    }
}

bool CloudSyncController::mayRun()
{
    if (!configuration_.isConfigured || *fields_.isSyncing) {
        return false;
    }
    try {
        requireEnvironment();
    } catch (const std::exception& failure) {
        fail(failure);
        return false;
    }
    return isEnabled();
}

Task<void> CloudSyncController::runCycle()
{
    if (!mayRun()) {
        co_return;
    }
    fields_.isSyncing.assign(true);
    fields_.status.assign("Syncing");
    Task<void> exchanging = exchange();
    try {
        co_await exchanging;
    } catch (const SyncCancelled&) {
        // It has outlived its permission: what is shown is what came after.
    } catch (const std::exception& failure) {
        fail(failure);
    }
    fields_.isSyncing.assign(false);
}

Task<void> CloudSyncController::exchange()
{
    CloudSyncRun run({store_, switch_, container(), platform_.scheduler, platform_.newUuid,
        hasUnsaved_, overruled_});
    Task<void> working = run.carryOut();
    co_await working;
    fields_.lastSync.assign(platform_.now());
    fields_.errorMessage.assign(std::nullopt);
    fields_.offersUpload.assign(false);
    fields_.status.assign(syncStatusText(*store_.data()));
    if (isStarted() && run.hasNewerChanges()) {
        observedRevisions_.clear(); // They were seen while no cycle could begin.
        awaitQuiet();
    }
}

void CloudSyncController::uploadAgain(Done done)
{
    tasks_.start(uploadThen(std::move(done)));
}

Task<void> CloudSyncController::uploadThen(Done done)
{
    if (mayRun()) {
        bool isEntered = false;
        try {
            store_.deliverAllAgain();
            isEntered = true;
        } catch (const std::exception& failure) {
            const bool isOffered = *fields_.offersUpload;
            fail(failure);
            fields_.offersUpload.assign(isOffered);
        }
        if (isEntered) {
            // They are of the store that was; what this one has of them it tells of anew.
            overruled_.clear();
            fields_.offersUpload.assign(false);
            Task<void> cycle = runCycle();
            co_await cycle;
        }
    }
    if (done) {
        done();
    }
}

// The user's switch.

void CloudSyncController::enable(Done done)
{
    tasks_.start(enableThen(std::move(done)));
}

Task<void> CloudSyncController::enableThen(Done done)
{
    Task<void> enabling = runEnable();
    co_await enabling;
    if (done) {
        done();
    }
}

void CloudSyncController::leaveAccount()
{
    if (isConfigured()) {
        disable();
        fields_.errorMessage.assign(std::nullopt);
    }
}

bool CloudSyncController::mayEnable()
{
    if (*fields_.isSyncing) {
        return false;
    }
    try {
        if (!configuration_.isConfigured) {
            throw SyncDeliveryError(
                "This build needs iCloud signing and provisioning before sync can be enabled.");
        }
        requireEnvironment();
        return true;
    } catch (const std::exception& failure) {
        fail(failure);
        return false;
    }
}

Task<void> CloudSyncController::runEnable()
{
    if (!mayEnable()) {
        co_return;
    }
    fields_.isSyncing.assign(true);
    bool isConnected = false;
    Task<void> connecting = connect(switch_.generation());
    try {
        co_await connecting;
        isConnected = true;
    } catch (const SyncCancelled&) {
        fields_.isSyncing.assign(false);
    } catch (const std::exception& failure) {
        fields_.isSyncing.assign(false);
        fail(failure);
    }
    if (!isConnected) {
        co_return;
    }
    fields_.errorMessage.assign(std::nullopt);
    fields_.offersUpload.assign(false);
    switch_.turnedOn();
    fields_.isSyncing.assign(false);
    start();
    followSwitch(pollSeconds);
    Task<void> cycle = runCycle();
    co_await cycle;
}

Task<void> CloudSyncController::connect(Uuid generation)
{
    std::string account;
    Task<std::string> naming = signedInAccount();
    try {
        std::string name = co_await naming;
        account = std::move(name);
    } catch (const std::exception&) {
        requireGeneration(generation);
        throw;
    }
    requireGeneration(generation);
    const CloudSyncEnvironment environment = *configuration_.environment;
    if (store_.data()->replication) {
        store_.beginSync(account, platform_.hostName(), environment);
        co_return;
    }
    SyncBeginning beginning = store_.prepareSync(account, platform_.hostName(), environment);
    beginning.goOn();
    while (!beginning.isComplete()) {
        Delay turn(platform_.scheduler, 0);
        co_await turn;
        requireGeneration(generation);
        beginning.goOn();
    }
    store_.beginSync(beginning);
}

Task<std::string> CloudSyncController::signedInAccount()
{
    Task<bool> asking = container().isAccountAvailable();
    const bool isAvailable = co_await asking;
    if (!isAvailable) {
        throw SyncDeliveryError("Sign in to iCloud in Settings, then enable sync again.");
    }
    Task<std::string> naming = container().userRecordName();
    std::string name = co_await naming;
    co_return name;
}

void CloudSyncController::requireGeneration(const Uuid& generation) const
{
    if (switch_.generation() != generation) {
        throw SyncCancelled();
    }
}

} // namespace KestryCore
