#include "RemoteChanges.h"

#include <utility>

#include "LedgerError.h"
#include "RemoteApplication.h"
#include "SyncRecords.h"

namespace KestryCore {

void applyRemoteSync(LedgerData& ledger, const std::vector<SyncRecord>& records,
    const std::map<std::string, std::string>& systemFields,
    const std::optional<std::string>& changeToken, const UuidSource& newUuid)
{
    applyRemoteSync(ledger, FetchedRecords(records, systemFields), changeToken, newUuid);
}

void applyRemoteSync(LedgerData& ledger, const FetchedRecords& fetched,
    const std::optional<std::string>& changeToken, const UuidSource& newUuid)
{
    if (!ledger.replication) {
        throw LedgerError("Sync is not connected.");
    }
    LedgerSyncState state = *ledger.replication;
    for (const auto& [record, isSound] : fetched.items()) {
        if (!isSound) {
            validateRecord(record);
        }
        state.staged[record.recordID] = record;
    }
    for (const auto& [key, fields] : fetched.systemFields()) {
        state.systemFields[key] = fields;
    }
    drainStaged(ledger, state, newUuid);
    state.changeToken = changeToken;
    ledger.replication = std::move(state);
}

namespace {

/// One pass over all that is staged; whether anything was done with.
bool tryStaged(RemoteApplication& application, LedgerSyncState& state)
{
    bool makesProgress = false;
    // A copy, because applied records are removed during the loop.
    const SharedMap<SyncRecord> waiting = state.staged;
    for (std::size_t index = 0; index < waiting.blockCount(); ++index) {
        for (const auto& entry : waiting.block(index).entries) {
            const auto& [key, record] = entry->content;
            if (application.apply({record, entry->parent})) {
                state.staged.erase(key);
                makesProgress = true;
            }
        }
    }
    return makesProgress;
}

} // namespace

void drainStaged(LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid)
{
    RemoteApplication application(ledger, state, newUuid);
    while (tryStaged(application, state)) {
        // Whatever was done may be what another record was waiting for.
    }
    application.finish();
}

bool applyRemoteRecord(
    const SyncRecord& record, LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid)
{
    RemoteApplication application(ledger, state, newUuid);
    std::optional<Uuid> parent;
    const bool isDone = application.apply({record, parent});
    application.finish();
    return isDone;
}

} // namespace KestryCore
