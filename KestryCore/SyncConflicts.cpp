#include "SyncConflicts.h"

#include "LedgerError.h"
#include "RemoteChanges.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

void keepLocal(const SyncConflict& conflict, LedgerSyncState& state, const UuidSource& newUuid)
{
    const auto waiting = state.outbox.find(conflict.id);
    SyncRecord kept = waiting != state.outbox.end() ? waiting->second : conflict.local;
    kept.revision = newUuid().text();
    kept.deviceID = state.deviceID;
    state.outbox[conflict.id] = kept;
    if (kept.isDeleted) {
        state.tombstones[conflict.id] = kept;
    } else {
        state.tombstones.erase(conflict.id);
    }
}

void useCloud(const SyncConflict& conflict, LedgerData& ledger, LedgerSyncState& state,
    const UuidSource& newUuid)
{
    state.outbox.erase(conflict.id);
    state.tombstones.erase(conflict.id);
    if (ledger.active && recordID(SyncRecordKind::session, ledger.active->id) == conflict.id) {
        ledger.active.reset();
    }
    state.remoteSessions.erase(conflict.id);
    state.staged[conflict.id] = conflict.remote;
    // The base is the remote version by now, so draining takes it for seen and does not write it
    // to the ledger: only a newer one replaces what is here.
    drainStaged(ledger, state, newUuid);
}

} // namespace

void resolveSyncConflict(LedgerData& ledger, const std::string& recordID, ConflictChoice choice,
    const UuidSource& newUuid)
{
    const SyncConflict* const found =
        ledger.replication ? ledger.replication->conflicts.find(recordID) : nullptr;
    if (found == nullptr) {
        throw LedgerError("This sync conflict no longer exists.");
    }
    const SyncConflict conflict = *found;
    LedgerSyncState state = *ledger.replication;
    state.conflicts.remove(conflict.id);
    state.staged.erase(conflict.id);
    state.baseRevisions[conflict.id] = conflict.remote.revision;
    if (choice == ConflictChoice::keepLocal) {
        keepLocal(conflict, state, newUuid);
    } else {
        useCloud(conflict, ledger, state, newUuid);
    }
    ledger.replication = std::move(state);
}

} // namespace KestryCore
