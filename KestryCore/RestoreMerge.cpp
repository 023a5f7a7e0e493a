#include "RestoreMerge.h"

#include <unordered_set>

#include "LedgerCoding.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

template <class Record>
void appendMissing(const RecordList<Record>& current, RecordList<Record>& restored)
{
    std::unordered_set<Uuid> present;
    for (const Record& record : restored) {
        present.insert(record.id);
    }
    for (const Record& record : current) {
        if (!present.contains(record.id)) {
            restored.append(record);
        }
    }
}

template <class Record>
void appendPending(const SyncRecord& pending, const Uuid& id, RecordList<Record>& restored)
{
    if (restored.find(id) == nullptr) {
        restored.append(decodeRecord<Record>(*pending.payload));
    }
}

void mergePendingSession(const SyncRecord& pending, const Uuid& id, LedgerData& restored)
{
    const bool isActive = restored.active && restored.active->id == id;
    if (isActive || restored.entries.find(id) != nullptr) {
        return;
    }
    const SyncedSession session = decodeRecord<SyncedSession>(*pending.payload);
    if (session.entry) {
        restored.entries.append(*session.entry);
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
    appendMissing(current.clients, restored.clients);
    appendMissing(current.projects, restored.projects);
    appendMissing(current.entries, restored.entries);
    if (current.active) {
        restored.active = current.active;
    }
    if (restored.active && restored.entries.find(restored.active->id) != nullptr) {
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
            appendPending(pending, identity.id, restored.clients);
            break;
        case SyncRecordKind::project:
            appendPending(pending, identity.id, restored.projects);
            break;
        case SyncRecordKind::session:
            mergePendingSession(pending, identity.id, restored);
            break;
        }
    }
}

} // namespace KestryCore
