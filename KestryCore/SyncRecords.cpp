#include "SyncRecords.h"

#include <array>
#include <set>
#include <string_view>
#include <utility>

#include "LedgerCoding.h"
#include "LedgerError.h"
#include "RecordValidation.h"

namespace KestryCore {

namespace {

constexpr std::array<std::pair<std::string_view, SyncRecordKind>, 3> kindNames{{
    {"Client", SyncRecordKind::client},
    {"Project", SyncRecordKind::project},
    {"Session", SyncRecordKind::session},
}};

// Stand-ins for the parents of a record that is checked alone. Identifiers are unique only within
// their own kind, so the nil one serves.

Client placeholderClient(const Uuid& id)
{
    Client client;
    client.id = id;
    client.name = "Parent";
    return client;
}

Project placeholderProject(const Uuid& id, const Uuid& clientID)
{
    Project project;
    project.id = id;
    project.clientID = clientID;
    project.name = "Parent";
    return project;
}

void validateClientPayload(const std::string& payload, const Uuid& id)
{
    const Client client = decodeRecord<Client>(payload);
    refuseUnless(client.id == id, "Synced client ID did not match its record.");
    LedgerData ledger;
    ledger.clients.append(client);
    validateRecords(ledger);
}

void validateProjectPayload(const std::string& payload, const Uuid& id)
{
    const Project project = decodeRecord<Project>(payload);
    refuseUnless(project.id == id, "Synced project ID did not match its record.");
    LedgerData ledger;
    ledger.clients.append(placeholderClient(project.clientID));
    ledger.projects.append(project);
    validateRecords(ledger);
}

void validateSessionPayload(const std::string& payload, const Uuid& id)
{
    const SyncedSession session = decodeRecord<SyncedSession>(payload);
    const bool exactlyOne = session.active.has_value() != session.entry.has_value();
    refuseUnless(exactlyOne && !session.ownerDeviceID.empty() && !session.ownerName.empty()
            && (session.active ? session.active->id : session.entry->id) == id,
        "Invalid synced session or ownership.");
    const Uuid projectID = session.active ? session.active->projectID : session.entry->projectID;
    LedgerData ledger;
    ledger.clients.append(placeholderClient(Uuid{}));
    ledger.projects.append(placeholderProject(projectID, Uuid{}));
    if (session.entry) {
        ledger.entries.append(*session.entry);
    }
    ledger.active = session.active;
    validateRecords(ledger);
}

/// Runs a check over all entries of a map but for those that were found sound before.
template <class Value, class Check>
void validateEach(const SharedMap<Value>& map, Check check)
{
    for (std::size_t index = 0; index < map.blockCount(); ++index) {
        const auto& block = map.block(index);
        if (block.soundByItself) {
            continue;
        }
        for (const auto& entry : block.entries) {
            if (!entry->soundByItself) {
                check(entry->content.first, entry->content.second);
                entry->soundByItself = true;
            }
        }
        block.soundByItself = true;
    }
}

void validateRecordMap(const SharedMap<SyncRecord>& records)
{
    validateEach(records, [](const std::string& key, const SyncRecord& record) {
        refuseUnless(key == record.recordID, "Sync record key mismatch.");
        validateRecord(record);
    });
}

void validateConflicts(const RecordList<SyncConflict>& conflicts)
{
    for (std::size_t index = 0; index < conflicts.blockCount(); ++index) {
        const auto& block = conflicts.block(index);
        if (block.remembered.soundByItself) {
            continue;
        }
        for (const SyncConflict& conflict : block.records) {
            refuseUnless(
                conflict.id == conflict.local.recordID && conflict.id == conflict.remote.recordID,
                "Sync conflict key mismatch.");
            validateRecord(conflict.local);
            validateRecord(conflict.remote);
        }
        block.remembered.soundByItself = true;
    }
}

void validateRemoteSessions(const SharedMap<SyncedSession>& sessions)
{
    validateEach(sessions, [](const std::string& key, const SyncedSession& session) {
        refuseUnless(
            session.active && !session.entry, "Remote sessions must contain an active timer.");
        SyncRecord record;
        record.recordID = key;
        record.revision = Uuid{}.text();
        record.deviceID = session.ownerDeviceID;
        record.payload = canonicalJson(session);
        validateRecord(record);
    });
}

} // namespace

std::string recordID(SyncRecordKind kind, const Uuid& id)
{
    for (const auto& [name, named] : kindNames) {
        if (named == kind) {
            return std::string(name) + ':' + id.text();
        }
    }
    return {};
}

std::map<std::string, std::string> recordPayloads(
    const LedgerData& ledger, const std::string& ownerDeviceID, const std::string& ownerName)
{
    std::map<std::string, std::string> payloads;
    for (const Client& client : ledger.clients) {
        payloads[recordID(SyncRecordKind::client, client.id)] = canonicalJson(client);
    }
    for (const Project& project : ledger.projects) {
        payloads[recordID(SyncRecordKind::project, project.id)] = canonicalJson(project);
    }
    SyncedSession session{ownerDeviceID, ownerName, std::nullopt, std::nullopt};
    for (const TimeEntry& entry : ledger.entries) {
        session.entry = entry;
        payloads[recordID(SyncRecordKind::session, entry.id)] = canonicalJson(session);
    }
    if (ledger.active) {
        session.entry.reset();
        session.active = ledger.active;
        payloads[recordID(SyncRecordKind::session, ledger.active->id)] = canonicalJson(session);
    }
    return payloads;
}

SyncRecordIdentity parseRecordIdentity(const SyncRecord& record)
{
    constexpr const char* message = "Invalid sync record identity.";
    const std::string_view text = record.recordID;
    const std::size_t colon = text.find(':');
    refuseUnless(colon != std::string_view::npos, message);
    for (const auto& [name, kind] : kindNames) {
        if (text.substr(0, colon) != name) {
            continue;
        }
        const std::optional<Uuid> id = Uuid::parse(text.substr(colon + 1));
        refuseUnless(id && recordID(kind, *id) == text && Uuid::parse(record.revision)
                && !record.deviceID.empty(),
            message);
        return {kind, *id};
    }
    throw LedgerError(message);
}

void validateRecord(const SyncRecord& record)
{
    const SyncRecordIdentity identity = parseRecordIdentity(record);
    if (record.isDeleted) {
        refuseUnless(!record.payload, "Deleted sync records cannot contain live data.");
        return;
    }
    refuseUnless(record.payload && record.payload->size() <= maximumPayloadBytes,
        "Missing or oversized sync record payload.");
    switch (identity.kind) {
    case SyncRecordKind::client:
        return validateClientPayload(*record.payload, identity.id);
    case SyncRecordKind::project:
        return validateProjectPayload(*record.payload, identity.id);
    case SyncRecordKind::session:
        return validateSessionPayload(*record.payload, identity.id);
    }
}

void validateReplicationState(const LedgerSyncState& state)
{
    std::set<std::string_view> conflictIDs;
    for (const SyncConflict& conflict : state.conflicts) {
        conflictIDs.insert(conflict.id);
    }
    refuseUnless(!state.deviceID.empty() && !state.deviceName.empty() && !state.accountID.empty()
            && conflictIDs.size() == state.conflicts.size(),
        "Invalid sync account or conflict metadata.");
    validateRecordMap(state.outbox);
    validateRecordMap(state.staged);
    validateRecordMap(state.tombstones);
    for (const auto& [key, record] : state.tombstones) {
        refuseUnless(record.isDeleted, "Invalid retained sync deletion.");
    }
    validateConflicts(state.conflicts);
    validateRemoteSessions(state.remoteSessions);
}

} // namespace KestryCore
