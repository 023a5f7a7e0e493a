// What happens to a record of the cloud, in the order in which it is decided:
//
// 1. A version that waits in the outbox meets it: the echo of a delivery, the version that was
//    changed here, or a collision.
// 2. A conflict is open: its remote side is brought up to date.
// 3. The cloud was known to hold this version already.
// 4. It was deleted here, and lives there: a collision.
// 5. Its session is in progress here: a collision, whatever became of it there.
// 6. It is applied, or waits in `staged` for its parents, or for its children to go.
//
// Only revisions are compared. Nothing in the ledger is touched before the last point.

#include "RemoteChanges.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "LedgerCoding.h"
#include "LedgerError.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

/// Saved sessions to take out of a ledger and to put at its end. They are gathered, because every
/// one by itself would take a walk through all sessions.
class SessionChanges {
public:
    explicit SessionChanges(RecordList<TimeEntry>& entries) : entries_(entries) { }

    void remove(const Uuid& id)
    {
        if (!removed_.insert(id).second) {
            carryOut();
            removed_.insert(id);
        }
    }
    void moveToEnd(TimeEntry entry)
    {
        remove(entry.id);
        appended_.push_back(std::move(entry));
    }

    /// Needed before the ledger's sessions are looked at.
    void carryOut()
    {
        if (!removed_.empty()) {
            entries_.removeIf(
                [this](const TimeEntry& entry) { return removed_.contains(entry.id); });
        }
        for (TimeEntry& entry : appended_) {
            entries_.append(std::move(entry));
        }
        removed_.clear();
        appended_.clear();
    }

private:
    RecordList<TimeEntry>& entries_;
    std::unordered_set<Uuid> removed_;
    std::vector<TimeEntry> appended_;
};

template <class Record>
void putInPlace(RecordList<Record>& list, const Record& record)
{
    if (!list.modify(record.id, [&](Record& former) { former = record; })) {
        list.append(record);
    }
}

/// Applies records one after another to a ledger and its state.
class RemoteApplication {
public:
    RemoteApplication(LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid)
        : ledger_(ledger), state_(state), newUuid_(newUuid), sessions_(ledger.entries)
    {
    }

    /// False when the record has to wait.
    bool apply(const SyncRecord& record)
    {
        if (isSettledByRevision(record)) {
            return true;
        }
        const SyncRecordIdentity identity = parseRecordIdentity(record);
        if (identity.kind == SyncRecordKind::session && ledger_.active
            && ledger_.active->id == identity.id) {
            addConflict(
                localVersion(record.recordID, {{}, {}, ledger_.active, {}}), record, state_);
            return true;
        }
        return record.isDeleted ? applyDeletion(record, identity) : applyVersion(record, identity);
    }

    /// The ledger is complete only after this.
    void finish() { sessions_.carryOut(); }

private:
    /// Whether what is known of the record's revisions decides on it; if so it has been done.
    bool isSettledByRevision(const SyncRecord& record)
    {
        const std::string& key = record.recordID;
        const auto base = state_.baseRevisions.find(key);
        const bool isBase = base != state_.baseRevisions.end() && base->second == record.revision;
        if (const auto pending = state_.outbox.find(key); pending != state_.outbox.end()) {
            if (pending->second.revision == record.revision) {
                state_.outbox.erase(key);
                state_.baseRevisions[key] = record.revision;
            } else if (!isBase) {
                addConflict(pending->second, record, state_);
            }
            return true;
        }
        if (const SyncConflict* const open = state_.conflicts.find(key)) {
            addConflict(SyncRecord(open->local), record, state_);
            return true;
        }
        if (isBase) {
            return true;
        }
        const auto tombstone = state_.tombstones.find(key);
        if (tombstone != state_.tombstones.end() && !record.isDeleted) {
            addConflict(tombstone->second, record, state_);
            return true;
        }
        return false;
    }

    /// A session of this ledger as a record of this device.
    [[nodiscard]] SyncRecord localVersion(const std::string& key, SyncedSession session) const
    {
        session.ownerDeviceID = state_.deviceID;
        session.ownerName = state_.deviceName;
        const auto base = state_.baseRevisions.find(key);
        SyncRecord record;
        record.recordID = key;
        record.revision = base != state_.baseRevisions.end() ? base->second : newUuid_().text();
        record.deviceID = state_.deviceID;
        record.payload = canonicalJson(session);
        return record;
    }

    bool applyDeletion(const SyncRecord& record, const SyncRecordIdentity& identity)
    {
        switch (identity.kind) {
        case SyncRecordKind::client:
            if (hasProjects(identity.id)) {
                return false;
            }
            ledger_.clients.remove(identity.id);
            break;
        case SyncRecordKind::project:
            if (hasSessions(identity.id)) {
                return false;
            }
            ledger_.projects.remove(identity.id);
            break;
        case SyncRecordKind::session:
            sessions_.remove(identity.id);
            state_.remoteSessions.erase(record.recordID);
            break;
        }
        state_.tombstones[record.recordID] = record;
        return noteBase(record);
    }

    bool applyVersion(const SyncRecord& record, const SyncRecordIdentity& identity)
    {
        switch (identity.kind) {
        case SyncRecordKind::client:
            putInPlace(ledger_.clients, decodeRecord<Client>(*record.payload));
            return noteBase(record);
        case SyncRecordKind::project:
            return applyProject(record);
        case SyncRecordKind::session:
            return applySession(record, identity.id);
        }
        return false;
    }

    bool applyProject(const SyncRecord& record)
    {
        const Project project = decodeRecord<Project>(*record.payload);
        if (ledger_.clients.find(project.clientID) == nullptr) {
            return false;
        }
        putInPlace(ledger_.projects, project);
        return noteBase(record);
    }

    bool applySession(const SyncRecord& record, const Uuid& id)
    {
        SyncedSession session = decodeRecord<SyncedSession>(*record.payload);
        if (ledger_.projects.find(
                session.active ? session.active->projectID : session.entry->projectID)
            == nullptr) {
            return false;
        }
        if (session.entry) {
            sessions_.moveToEnd(std::move(*session.entry));
            state_.remoteSessions.erase(record.recordID);
            return noteBase(record);
        }
        sessions_.carryOut();
        if (const TimeEntry* const saved = ledger_.entries.find(id)) {
            // Nobody's timer reopens a session that is saved here.
            addConflict(localVersion(record.recordID, {{}, {}, {}, *saved}), record, state_);
            return true;
        }
        state_.remoteSessions[record.recordID] = std::move(session);
        return noteBase(record);
    }

    bool noteBase(const SyncRecord& record)
    {
        state_.baseRevisions[record.recordID] = record.revision;
        return true;
    }

    [[nodiscard]] bool hasProjects(const Uuid& clientID) const
    {
        return std::ranges::any_of(
            ledger_.projects, [&](const Project& project) { return project.clientID == clientID; });
    }

    [[nodiscard]] bool hasSessions(const Uuid& projectID)
    {
        sessions_.carryOut();
        const auto isOfProject = [&](const auto& session) {
            return session.projectID == projectID;
        };
        return std::ranges::any_of(ledger_.entries, isOfProject)
            || (ledger_.active && isOfProject(*ledger_.active))
            || std::ranges::any_of(state_.remoteSessions, [&](const auto& remote) {
                   return remote.second.active && isOfProject(*remote.second.active);
               });
    }

    LedgerData& ledger_;
    LedgerSyncState& state_;
    const UuidSource& newUuid_;
    SessionChanges sessions_;
};

} // namespace

void applyRemoteSync(LedgerData& ledger, const std::vector<SyncRecord>& records,
    const std::map<std::string, std::string>& systemFields,
    const std::optional<std::string>& changeToken, const UuidSource& newUuid)
{
    if (!ledger.replication) {
        throw LedgerError("Sync is not connected.");
    }
    LedgerSyncState state = *ledger.replication;
    for (const SyncRecord& record : records) {
        validateRecord(record);
        state.staged[record.recordID] = record;
    }
    for (const auto& [key, fields] : systemFields) {
        state.systemFields[key] = fields;
    }
    drainStaged(ledger, state, newUuid);
    state.changeToken = changeToken;
    ledger.replication = std::move(state);
}

void drainStaged(LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid)
{
    RemoteApplication application(ledger, state, newUuid);
    bool makesProgress = true;
    while (makesProgress) {
        makesProgress = false;
        // A copy, because what has been applied is removed meanwhile.
        const SharedMap<SyncRecord> waiting = state.staged;
        for (const auto& [key, record] : waiting) {
            if (application.apply(record)) {
                state.staged.erase(key);
                makesProgress = true;
            }
        }
    }
    application.finish();
}

bool applyRemoteRecord(
    const SyncRecord& record, LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid)
{
    RemoteApplication application(ledger, state, newUuid);
    const bool isDone = application.apply(record);
    application.finish();
    return isDone;
}

void addConflict(const SyncRecord& local, const SyncRecord& remote, LedgerSyncState& state)
{
    SyncConflict conflict{remote.recordID, local, remote};
    state.conflicts.remove(remote.recordID);
    state.conflicts.append(std::move(conflict));
}

} // namespace KestryCore
