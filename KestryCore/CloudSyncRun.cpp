#include "CloudSyncRun.h"

#include <utility>

#include "SyncCloudRecord.h"
#include "SyncDeliveryError.h"

namespace KestryCore {

bool hasSynced(const LedgerData& ledger)
{
    const auto& state = ledger.replication;
    return state && (state->changeToken || !state->baseRevisions.empty());
}

CloudSyncRun::CloudSyncRun(const Parts& parts)
    : parts_(parts), generation_(parts.permission.generation())
{
}

Task<void> CloudSyncRun::carryOut()
{
    Task<void> steps = takeSteps();
    try {
        co_await steps;
    } catch (const ForeignAccount&) {
        throw; // It was this run that turned replication off.
    } catch (const std::exception&) {
        requireCurrent();
        throw;
    }
    requireCurrent();
}

Task<void> CloudSyncRun::takeSteps()
{
    Task<void> check = checkAccount();
    co_await check;
    Task<void> finding = findZone();
    co_await finding;
    Task<void> pulling = pull();
    co_await pulling;
    Task<void> pushing = push();
    co_await pushing;
}

bool CloudSyncRun::hasNewerChanges() const
{
    return pending_ && pending_->isBehind(*parts_.store.data());
}

void CloudSyncRun::requireCurrent() const
{
    if (parts_.permission.generation() != generation_ || !parts_.permission.isEnabled()) {
        throw SyncCancelled();
    }
}

Task<void> CloudSyncRun::checkAccount()
{
    requireCurrent();
    Task<bool> asking = parts_.container.isAccountAvailable();
    const bool isAvailable = co_await asking;
    if (!isAvailable) {
        throw SyncDeliveryError(
            "iCloud is unavailable. Your local changes are saved and will retry.");
    }
    Task<std::string> naming = parts_.container.userRecordName();
    const std::string name = co_await naming;
    requireCurrent();
    requireAccount(name);
}

void CloudSyncRun::requireAccount(const std::string& name)
{
    // Current, so there is a state.
    const bool isOurs = name == parts_.store.data()->replication->accountID;
    if (!isOurs || name != account_.value_or(name)) {
        parts_.permission.turnOff();
        throw ForeignAccount("This ledger belongs to a different iCloud account. Sign in to the "
                             "original account to sync; local records have been preserved.");
    }
    account_ = name;
}

Task<void> CloudSyncRun::findZone()
{
    bool isMissing = false;
    Task<void> finding = parts_.container.privateDatabase().fetchZone(workspaceZone());
    try {
        co_await finding;
    } catch (const CloudError& failure) {
        if (failure.code() != CloudErrorCode::zoneNotFound) {
            throw;
        }
        isMissing = true;
    }
    if (!isMissing) {
        co_return;
    }
    if (hasSynced(*parts_.store.data())) {
        throw WorkspaceMissing("The iCloud workspace is missing. Local records are safe; restore "
                               "the cloud workspace before syncing.");
    }
    Task<void> check = checkAccount();
    co_await check;
    Task<void> creating = parts_.container.privateDatabase().createZone(workspaceZone());
    co_await creating;
}

} // namespace KestryCore
