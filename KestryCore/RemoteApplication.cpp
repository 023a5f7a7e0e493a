// What happens to a record of the cloud, in the order in which it is decided:
//
// 1. A version that waits in the outbox meets it: the echo of a delivery, the version that was
//    changed here, or a collision.
// 2. A conflict is open: its remote side is brought up to date.
// 3. The cloud was known to hold this version already.
// 4. It was deleted here, and lives there: a collision.
// 5. Its session is in progress here: a collision, whatever became of it there.
// 6. It is applied, or waits for its parents to come or for its children to go.
//
// Only revisions are compared. Nothing in the ledger is touched before the last point.

#include "RemoteApplication.h"

#include <algorithm>
#include <utility>

#include "LedgerCoding.h"

namespace KestryCore {

namespace {

template <class Record>
std::unordered_set<Uuid> presentRecords(const RecordList<Record>& records)
{
    std::unordered_set<Uuid> identifiers;
    for (const Record& record : records) {
        identifiers.insert(record.id);
    }
    return identifiers;
}

template <class Record>
void putInPlace(RecordList<Record>& list, const Record& record)
{
    if (!list.modify(record.id, [&](Record& former) { former = record; })) {
        list.append(record);
    }
}

/// Whether a parent is here, or not known yet.
bool mayBeAmong(const std::unordered_set<Uuid>& present, const std::optional<Uuid>& parent)
{
    return !parent || present.contains(*parent);
}

} // namespace

RemoteApplication::RemoteApplication(
    LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid)
    : ledger_(ledger), state_(state), newUuid_(newUuid), sessions_(ledger.entries),
      clients_(presentRecords(ledger.clients)), projects_(presentRecords(ledger.projects))
{
}

bool RemoteApplication::apply(const RemoteVersion& version)
{
    const SyncRecord& record = version.record;
    if (isSettledByRevision(record)) {
        return true;
    }
    const SyncRecordIdentity identity = parseRecordIdentity(record);
    if (collidesWithActive(record, identity)) {
        return true;
    }
    return record.isDeleted ? applyDeletion(record, identity) : applyLive(version, identity);
}

/// Whether what is known of the record's revisions decides on it; if so it has been done.
bool RemoteApplication::isSettledByRevision(const SyncRecord& record)
{
    const std::string& key = record.recordID;
    const auto base = state_.baseRevisions.find(key);
    const bool isBase = base != state_.baseRevisions.end() && base->second == record.revision;
    if (const auto pending = state_.outbox.find(key); pending != state_.outbox.end()) {
        if (pending->second.revision == record.revision) {
            state_.outbox.erase(key);
            noteBase(record);
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

/// No remote version overwrites or stops a session that is in progress here.
bool RemoteApplication::collidesWithActive(
    const SyncRecord& record, const SyncRecordIdentity& identity)
{
    if (identity.kind != SyncRecordKind::session || !ledger_.active
        || ledger_.active->id != identity.id) {
        return false;
    }
    addConflict(localVersion(record.recordID, {{}, {}, ledger_.active, {}}), record, state_);
    return true;
}

bool RemoteApplication::applyDeletion(const SyncRecord& record, const SyncRecordIdentity& identity)
{
    switch (identity.kind) {
    case SyncRecordKind::client:
        if (hasProjects(identity.id)) {
            return false;
        }
        ledger_.clients.remove(identity.id);
        clients_.erase(identity.id);
        break;
    case SyncRecordKind::project:
        if (hasSessions(identity.id)) {
            return false;
        }
        ledger_.projects.remove(identity.id);
        projects_.erase(identity.id);
        break;
    case SyncRecordKind::session:
        sessions_.remove(identity.id);
        state_.remoteSessions.erase(record.recordID);
        break;
    }
    state_.tombstones[record.recordID] = record;
    noteBase(record);
    return true;
}

bool RemoteApplication::applyLive(const RemoteVersion& version, const SyncRecordIdentity& identity)
{
    switch (identity.kind) {
    case SyncRecordKind::client:
        applyClient(version.record);
        return true;
    case SyncRecordKind::project:
        return mayBeAmong(clients_, version.parent) && applyProject(version);
    case SyncRecordKind::session:
        return mayBeAmong(projects_, version.parent) && applySession(version, identity.id);
    }
    return false;
}

void RemoteApplication::applyClient(const SyncRecord& record)
{
    const auto client = decodeRecord<Client>(*record.payload);
    putInPlace(ledger_.clients, client);
    clients_.insert(client.id);
    noteBase(record);
}

bool RemoteApplication::applyProject(const RemoteVersion& version)
{
    const auto project = decodeRecord<Project>(*version.record.payload);
    version.parent = project.clientID;
    if (!clients_.contains(project.clientID)) {
        return false;
    }
    putInPlace(ledger_.projects, project);
    projects_.insert(project.id);
    noteBase(version.record);
    return true;
}

bool RemoteApplication::applySession(const RemoteVersion& version, const Uuid& id)
{
    const SyncRecord& record = version.record;
    auto session = decodeRecord<SyncedSession>(*record.payload);
    version.parent = session.active ? session.active->projectID : session.entry->projectID;
    if (!mayBeAmong(projects_, version.parent)) {
        return false;
    }
    if (session.entry) {
        sessions_.moveToEnd(std::move(*session.entry));
        state_.remoteSessions.erase(record.recordID);
        noteBase(record);
        return true;
    }
    sessions_.carryOut();
    if (const TimeEntry* const saved = ledger_.entries.find(id)) {
        // Nobody's timer reopens a session that is saved here.
        addConflict(localVersion(record.recordID, {{}, {}, {}, *saved}), record, state_);
        return true;
    }
    state_.remoteSessions[record.recordID] = std::move(session);
    noteBase(record);
    return true;
}

bool RemoteApplication::hasProjects(const Uuid& clientID) const
{
    return std::ranges::any_of(
        ledger_.projects, [&](const Project& project) { return project.clientID == clientID; });
}

bool RemoteApplication::hasSessions(const Uuid& projectID)
{
    sessions_.carryOut();
    const auto isOfProject = [&](const auto& session) { return session.projectID == projectID; };
    return std::ranges::any_of(ledger_.entries, isOfProject)
        || (ledger_.active && isOfProject(*ledger_.active))
        || std::ranges::any_of(state_.remoteSessions, [&](const auto& remote) {
               return remote.second.active && isOfProject(*remote.second.active);
           });
}

/// A session of this ledger as a record of this device.
SyncRecord RemoteApplication::localVersion(const std::string& key, SyncedSession session) const
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

void RemoteApplication::noteBase(const SyncRecord& record)
{
    state_.baseRevisions[record.recordID] = record.revision;
}

void addConflict(const SyncRecord& local, const SyncRecord& remote, LedgerSyncState& state)
{
    SyncConflict conflict{remote.recordID, local, remote};
    state.conflicts.remove(remote.recordID);
    state.conflicts.append(std::move(conflict));
}

} // namespace KestryCore
