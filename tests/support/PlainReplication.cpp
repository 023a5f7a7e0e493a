#include "PlainReplication.h"

#include <set>

#include "LedgerCoding.h"
#include "LedgerError.h"
#include "SyncRecords.h"

namespace KestryCore::Plain {

namespace {

using Records = std::map<std::string, SyncRecord>;
using Payloads = std::map<std::string, std::string>;

/// A ledger and its state in containers that everybody knows.
struct World {
    std::vector<Client> clients;
    std::vector<Project> projects;
    std::vector<TimeEntry> entries;
    std::optional<ActiveSession> active;
    LedgerSyncState rest; ///< What of the state is not below.
    Payloads bases;
    Records outbox;
    Records staged;
    Records tombstones;
    std::vector<SyncConflict> conflicts;
    std::map<std::string, SyncedSession> remoteSessions;

    explicit World(const LedgerData& ledger)
        : clients(ledger.clients.begin(), ledger.clients.end()),
          projects(ledger.projects.begin(), ledger.projects.end()),
          entries(ledger.entries.begin(), ledger.entries.end()), active(ledger.active),
          rest(*ledger.replication), bases(rest.baseRevisions.begin(), rest.baseRevisions.end()),
          outbox(rest.outbox.begin(), rest.outbox.end()),
          staged(rest.staged.begin(), rest.staged.end()),
          tombstones(rest.tombstones.begin(), rest.tombstones.end()),
          conflicts(rest.conflicts.begin(), rest.conflicts.end()),
          remoteSessions(rest.remoteSessions.begin(), rest.remoteSessions.end())
    {
    }

    [[nodiscard]] LedgerData ledger() const
    {
        LedgerData ledger;
        for (const Client& client : clients) {
            ledger.clients.append(client);
        }
        for (const Project& project : projects) {
            ledger.projects.append(project);
        }
        for (const TimeEntry& entry : entries) {
            ledger.entries.append(entry);
        }
        ledger.active = active;
        LedgerSyncState state = rest;
        state.baseRevisions = bases;
        state.outbox = outbox;
        state.staged = staged;
        state.tombstones = tombstones;
        state.conflicts = {};
        for (const SyncConflict& conflict : conflicts) {
            state.conflicts.append(conflict);
        }
        state.remoteSessions = remoteSessions;
        ledger.replication = state;
        return ledger;
    }

    void addConflict(const SyncRecord& local, const SyncRecord& remote)
    {
        const SyncConflict conflict{remote.recordID, local, remote};
        std::erase_if(conflicts, [&](const auto& open) { return open.id == conflict.id; });
        conflicts.push_back(conflict);
    }
};

template <class Record>
bool contains(const std::vector<Record>& records, const Uuid& id)
{
    for (const Record& record : records) {
        if (record.id == id) {
            return true;
        }
    }
    return false;
}

template <class Record>
void remove(std::vector<Record>& records, const Uuid& id)
{
    std::erase_if(records, [&](const Record& record) { return record.id == id; });
}

template <class Record>
void replaceOrAppend(std::vector<Record>& records, const Record& record)
{
    for (Record& former : records) {
        if (former.id == record.id) {
            former = record;
            return;
        }
    }
    records.push_back(record);
}

SyncRecord localRecord(
    const World& world, const std::string& key, SyncedSession session, const UuidSource& newUuid)
{
    session.ownerDeviceID = world.rest.deviceID;
    session.ownerName = world.rest.deviceName;
    return {key, world.bases.contains(key) ? world.bases.at(key) : newUuid().text(),
        world.rest.deviceID, canonicalJson(session), false};
}

bool applyDeletion(const SyncRecord& record, const SyncRecordIdentity& identity, World& world)
{
    const Uuid& id = identity.id;
    if (identity.kind == SyncRecordKind::client) {
        for (const Project& project : world.projects) {
            if (project.clientID == id) {
                return false;
            }
        }
        remove(world.clients, id);
    } else if (identity.kind == SyncRecordKind::project) {
        for (const TimeEntry& entry : world.entries) {
            if (entry.projectID == id) {
                return false;
            }
        }
        if (world.active && world.active->projectID == id) {
            return false;
        }
        for (const auto& [key, session] : world.remoteSessions) {
            if (session.active->projectID == id) {
                return false;
            }
        }
        remove(world.projects, id);
    } else {
        remove(world.entries, id);
        world.remoteSessions.erase(record.recordID);
    }
    world.tombstones[record.recordID] = record;
    world.bases[record.recordID] = record.revision;
    return true;
}

bool applySession(const SyncRecord& record, const Uuid& id, World& world, const UuidSource& newUuid)
{
    const auto session = decodeRecord<SyncedSession>(*record.payload);
    if (!contains(world.projects,
            session.active ? session.active->projectID : session.entry->projectID)) {
        return false;
    }
    if (session.entry) {
        remove(world.entries, id);
        world.entries.push_back(*session.entry);
        world.remoteSessions.erase(record.recordID);
    } else {
        for (const TimeEntry& entry : world.entries) {
            if (entry.id == id) {
                const SyncedSession saved{"", "", std::nullopt, entry};
                world.addConflict(localRecord(world, record.recordID, saved, newUuid), record);
                return true;
            }
        }
        world.remoteSessions[record.recordID] = session;
    }
    world.bases[record.recordID] = record.revision;
    return true;
}

bool applyVersion(const SyncRecord& record, const SyncRecordIdentity& identity, World& world,
    const UuidSource& newUuid)
{
    if (identity.kind == SyncRecordKind::session) {
        return applySession(record, identity.id, world, newUuid);
    }
    if (identity.kind == SyncRecordKind::client) {
        replaceOrAppend(world.clients, decodeRecord<Client>(*record.payload));
    } else {
        const auto project = decodeRecord<Project>(*record.payload);
        if (!contains(world.clients, project.clientID)) {
            return false;
        }
        replaceOrAppend(world.projects, project);
    }
    world.bases[record.recordID] = record.revision;
    return true;
}

bool applyRecord(const SyncRecord& record, World& world, const UuidSource& newUuid)
{
    const std::string& key = record.recordID;
    const bool isBase = world.bases.contains(key) && world.bases.at(key) == record.revision;
    if (world.outbox.contains(key)) {
        const SyncRecord pending = world.outbox.at(key);
        if (pending.revision == record.revision) {
            world.outbox.erase(key);
            world.bases[key] = record.revision;
        } else if (!isBase) {
            world.addConflict(pending, record);
        }
        return true;
    }
    for (const SyncConflict& conflict : world.conflicts) {
        if (conflict.id == key) {
            const SyncRecord local = conflict.local;
            world.addConflict(local, record);
            return true;
        }
    }
    if (isBase) {
        return true;
    }
    if (world.tombstones.contains(key) && !record.isDeleted) {
        world.addConflict(world.tombstones.at(key), record);
        return true;
    }
    const SyncRecordIdentity identity = parseRecordIdentity(record);
    if (identity.kind == SyncRecordKind::session && world.active
        && world.active->id == identity.id) {
        const SyncedSession running{"", "", world.active, std::nullopt};
        world.addConflict(localRecord(world, key, running, newUuid), record);
        return true;
    }
    return record.isDeleted ? applyDeletion(record, identity, world)
                            : applyVersion(record, identity, world, newUuid);
}

void drain(World& world, const UuidSource& newUuid)
{
    bool makesProgress = true;
    while (makesProgress) {
        makesProgress = false;
        const Records snapshot = world.staged;
        for (const auto& [key, record] : snapshot) {
            if (world.staged.contains(key) && applyRecord(record, world, newUuid)) {
                world.staged.erase(key);
                makesProgress = true;
            }
        }
    }
}

void keepLocal(World& world, const SyncConflict& conflict, const UuidSource& newUuid)
{
    SyncRecord copy =
        world.outbox.contains(conflict.id) ? world.outbox.at(conflict.id) : conflict.local;
    copy.revision = newUuid().text();
    copy.deviceID = world.rest.deviceID;
    world.outbox[conflict.id] = copy;
    world.tombstones.erase(conflict.id);
    if (copy.isDeleted) {
        world.tombstones[conflict.id] = copy;
    }
}

void useCloud(World& world, const SyncConflict& conflict, const UuidSource& newUuid)
{
    world.outbox.erase(conflict.id);
    world.tombstones.erase(conflict.id);
    if (world.active && "Session:" + world.active->id.text() == conflict.id) {
        world.active.reset();
    }
    world.remoteSessions.erase(conflict.id);
    world.staged[conflict.id] = conflict.remote;
    drain(world, newUuid);
}

} // namespace

void recordLedgerChange(
    const LedgerData& before, LedgerData& after, ChangeTracking tracking, const UuidSource& newUuid)
{
    if (!after.replication) {
        return;
    }
    World world(after);
    const Payloads older = recordPayloads(before, world.rest.deviceID, world.rest.deviceName);
    const Payloads newer = recordPayloads(after, world.rest.deviceID, world.rest.deviceName);
    Payloads all = older;
    all.insert(newer.begin(), newer.end());
    for (const auto& [key, ignored] : all) {
        const bool isThere = newer.contains(key);
        const bool differs =
            isThere != older.contains(key) || (isThere && newer.at(key) != older.at(key));
        if (isThere ? !(tracking.forceAll || differs) : !tracking.trackDeletions) {
            continue;
        }
        SyncRecord record{key, newUuid().text(), world.rest.deviceID, std::nullopt, !isThere};
        world.tombstones.erase(key);
        if (isThere) {
            record.payload = newer.at(key);
        } else {
            world.tombstones[key] = record;
        }
        world.outbox[key] = record;
        for (SyncConflict& conflict : world.conflicts) {
            conflict.local = conflict.id == key ? record : conflict.local;
        }
    }
    after = world.ledger();
}

void applyRemoteSync(LedgerData& ledger, const std::vector<SyncRecord>& records,
    const std::map<std::string, std::string>& systemFields,
    const std::optional<std::string>& changeToken, const UuidSource& newUuid)
{
    if (!ledger.replication) {
        throw LedgerError("Sync is not connected.");
    }
    World world(ledger);
    for (const SyncRecord& record : records) {
        validateRecord(record);
        world.staged[record.recordID] = record;
    }
    for (const auto& [key, fields] : systemFields) {
        world.rest.systemFields[key] = fields;
    }
    drain(world, newUuid);
    world.rest.changeToken = changeToken;
    ledger = world.ledger();
}

void resolveSyncConflict(LedgerData& ledger, const std::string& recordID, ConflictChoice choice,
    const UuidSource& newUuid)
{
    World world(ledger);
    for (const SyncConflict& open : world.conflicts) {
        if (open.id != recordID) {
            continue;
        }
        const SyncConflict conflict = open;
        std::erase_if(world.conflicts, [&](const auto& other) { return other.id == recordID; });
        world.staged.erase(recordID);
        world.bases[recordID] = conflict.remote.revision;
        if (choice == ConflictChoice::keepLocal) {
            keepLocal(world, conflict, newUuid);
        } else {
            useCloud(world, conflict, newUuid);
        }
        ledger = world.ledger();
        return;
    }
    throw LedgerError("This sync conflict no longer exists.");
}

} // namespace KestryCore::Plain
