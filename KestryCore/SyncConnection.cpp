#include "SyncConnection.h"

#include "LedgerError.h"
#include "LocalChanges.h"
#include "Text.h"

namespace KestryCore {

namespace {

LedgerSyncState newState(const std::string& accountID, const std::string& deviceName,
    CloudSyncEnvironment environment, const UuidSource& newUuid)
{
    LedgerSyncState state;
    state.deviceID = newUuid().text();
    state.deviceName = deviceName;
    state.accountID = accountID;
    state.environment = environment;
    return state;
}

} // namespace

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
    if (accountID.empty() || trimmed(deviceName).empty()) {
        throw LedgerError("Sync needs an account and device name.");
    }
    if (!ledger.replication) {
        ledger.replication = newState(accountID, deviceName, environment, newUuid);
        recordLedgerChange(
            LedgerData{}, ledger, {.trackDeletions = true, .forceAll = true}, newUuid);
        return;
    }
    if (ledger.replication->accountID != accountID) {
        throw LedgerError("This ledger belongs to another iCloud account. Switch back before "
                          "syncing; your local data has been preserved.");
    }
    // What was changed while replication was off is in the outbox already.
    ledger.replication.edit().enabled = true;
}

void setSyncEnabled(LedgerData& ledger, bool isEnabled)
{
    if (!ledger.replication) {
        throw LedgerError("Connect your iCloud account before enabling sync.");
    }
    ledger.replication.edit().enabled = isEnabled;
}

} // namespace KestryCore
