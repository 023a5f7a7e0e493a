#include "SyncConnection.h"

#include "LedgerError.h"
#include "LocalChanges.h"

namespace KestryCore {

void validateSyncEnvironment(const LedgerData& ledger, CloudSyncEnvironment environment)
{
    if (!ledger.replication || ledger.replication->environment == environment) {
        return;
    }
    throw LedgerError("iCloud sync is paused because this ledger uses the "
        + std::string(environmentName(ledger.replication->environment))
        + " environment. Your sessions and sync history are preserved. Use the previous Kestry "
          "build to sync, or contact support to migrate to "
        + std::string(environmentName(environment)) + ".");
}

void beginSync(LedgerData& ledger, const std::string& accountID, const std::string& deviceName,
    CloudSyncEnvironment environment, const UuidSource& newUuid)
{
    validateSyncEnvironment(ledger, environment);
    requireSyncNames(accountID, deviceName);
    if (!ledger.replication) {
        SyncBeginning beginning(ledger, accountID, deviceName, environment, newUuid);
        while (!beginning.isComplete()) {
            beginning.goOn();
        }
        ledger.replication = beginning.state();
        return;
    }
    if (ledger.replication->accountID != accountID) {
        throw LedgerError("This ledger belongs to another iCloud account. Switch back before "
                          "syncing; your local data has been preserved.");
    }
    // What was changed while replication was off is in the outbox already.
    ledger.replication.edit().enabled = true;
}

void beginSync(LedgerData& ledger, const SyncBeginning& beginning, const UuidSource& newUuid)
{
    if (beginning.isOf(ledger)) {
        ledger.replication = beginning.state();
        return;
    }
    const LedgerSyncState& made = *beginning.state();
    beginSync(ledger, made.accountID, made.deviceName, made.environment, newUuid);
}

void deliverAllAgain(LedgerData& ledger, const UuidSource& newUuid)
{
    if (!ledger.replication) {
        throw LedgerError("Connect your iCloud account before enabling sync.");
    }
    if (!ledger.replication->conflicts.empty()) {
        throw LedgerError("Decide on the open sync conflicts first. Then upload this device's "
                          "records again.");
    }
    const LedgerSyncState before = *ledger.replication;
    recordLedgerChange(LedgerData{}, ledger, {.trackDeletions = false, .forceAll = true}, newUuid);
    LedgerSyncState& state = ledger.replication.edit();
    // Copies, because the loops change what they read.
    const SharedMap<SyncRecord> entered = state.outbox;
    for (const auto& [key, record] : entered) {
        const auto waiting = before.outbox.find(key);
        const auto base = before.baseRevisions.find(key);
        if (waiting != before.outbox.end()) {
            state.outbox[key] = waiting->second;
        } else if (base != before.baseRevisions.end()) {
            state.outbox[key].revision = base->second;
        }
    }
    for (const auto& [key, deletion] : before.tombstones) {
        if (!state.outbox.contains(key)) {
            state.outbox[key] = deletion;
        }
    }
    // Versions that wait for others come again with the first answer, where the cloud still has
    // them. One of a record that is here would become a conflict with a version that is nowhere.
    for (const auto& [key, version] : before.staged) {
        if (state.outbox.contains(key)) {
            state.staged.erase(key);
        }
    }
    state.tombstones = before.tombstones;
    state.changeToken.reset();
    state.systemFields.clear();
    state.baseRevisions.clear();
}

void setSyncEnabled(LedgerData& ledger, bool isEnabled)
{
    if (!ledger.replication) {
        throw LedgerError("Connect your iCloud account before enabling sync.");
    }
    ledger.replication.edit().enabled = isEnabled;
}

} // namespace KestryCore
