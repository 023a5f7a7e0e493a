#include "RestoreMerge.h"

#include <unordered_set>

#include "LedgerCoding.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

using Identifiers = std::unordered_set<Uuid>;

/// Appends the records that the restored list lacks; the identifiers that it has then.
template <class Record>
Identifiers appendMissing(const RecordList<Record>& current, RecordList<Record>& restored)
{
    Identifiers present;
    for (const Record& record : restored) {
        present.insert(record.id);
    }
    for (const Record& record : current) {
        if (present.insert(record.id).second) {
            restored.append(record);
        }
    }
    return present;
}

template <class Record>
void appendPending(
    const SyncRecord& pending, const Uuid& id, RecordList<Record>& restored, Identifiers& present)
{
    if (present.insert(id).second) {
        restored.append(decodeRecord<Record>(*pending.payload));
    }
}

void mergePendingSession(
    const SyncRecord& pending, const Uuid& id, LedgerData& restored, Identifiers& savedSessions)
{
    const bool isActive = restored.active && restored.active->id == id;
    if (isActive || savedSessions.contains(id)) {
        return;
    }
    const SyncedSession session = decodeRecord<SyncedSession>(*pending.payload);
    if (session.entry) {
        restored.entries.append(*session.entry);
        savedSessions.insert(id);
    } else if (!restored.active && session.ownerDeviceID == restored.replication->deviceID) {
        restored.active = session.active;
    } else {
        restored.replication.edit().remoteSessions[pending.recordID] = session;
    }
}

} // namespace

void mergePendingIntoRestored(const LedgerData& current, LedgerData& restored)
{
    if (!current.replication) {
        return;
    }
    // A ledger just connected has every record in its outbox, so each is looked up in a set.
    Identifiers clients = appendMissing(current.clients, restored.clients);
    Identifiers projects = appendMissing(current.projects, restored.projects);
    Identifiers entries = appendMissing(current.entries, restored.entries);
    if (current.active) {
        restored.active = current.active;
    }
    if (restored.active && entries.contains(restored.active->id)) {
        restored.active.reset();
    }
    for (const auto& [key, pending] : current.replication->outbox) {
        if (pending.isDeleted) {
            continue;
        }
        validateRecord(pending);
        const SyncRecordIdentity identity = parseRecordIdentity(pending);
        switch (identity.kind) {
        case SyncRecordKind::client:
            appendPending(pending, identity.id, restored.clients, clients);
            break;
        case SyncRecordKind::project:
            appendPending(pending, identity.id, restored.projects, projects);
            break;
        case SyncRecordKind::session:
            mergePendingSession(pending, identity.id, restored, entries);
            break;
        }
    }
}

} // namespace KestryCore
