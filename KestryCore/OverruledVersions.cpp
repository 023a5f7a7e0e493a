#include "OverruledVersions.h"

#include <utility>

#include "LedgerError.h"
#include "RemoteChanges.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

/// Puts the version where the other writer's has been applied already. False when it cannot be.
bool applyAgain(LedgerData& ledger, LedgerSyncState& state, const SyncRecord& version,
    const UuidSource& newUuid)
{
    state.tombstones.erase(version.recordID);
    return applyRemoteRecord(version, ledger, state, newUuid)
        && state.conflicts.find(version.recordID) == nullptr;
}

} // namespace

bool takeBack(LedgerData& ledger, const SyncRecord& version, const UuidSource& newUuid)
{
    if (!ledger.replication) {
        throw LedgerError("Sync is not connected.");
    }
    validateRecord(version);
    const std::string& key = version.recordID;
    LedgerSyncState state = *ledger.replication;
    const auto base = state.baseRevisions.find(key);
    const bool isBase = base != state.baseRevisions.end() && base->second == version.revision;
    const auto pending = state.outbox.find(key);
    if (pending != state.outbox.end()) {
        return isBase || pending->second.revision == version.revision;
    }
    if (const SyncConflict* const conflict = state.conflicts.find(key)) {
        return conflict->local.revision == version.revision;
    }
    LedgerData working = ledger;
    if (!isBase && !applyAgain(working, state, version, newUuid)) {
        return false;
    }
    state.outbox[key] = version;
    working.replication = std::move(state);
    ledger = std::move(working);
    return true;
}

} // namespace KestryCore
