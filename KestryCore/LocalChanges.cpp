#include "LocalChanges.h"

#include <set>
#include <unordered_set>

#include "SyncRecords.h"

namespace KestryCore {

namespace {

using Payloads = std::map<std::string, std::string>;

/// The records of a list but for those in blocks that the other list holds too.
template <class Record>
RecordList<Record> withoutShared(const RecordList<Record>& list, const RecordList<Record>& other)
{
    std::unordered_set<const void*> shared;
    for (std::size_t index = 0; index < other.blockCount(); ++index) {
        shared.insert(&other.block(index));
    }
    RecordList<Record> own;
    for (std::size_t index = 0; index < list.blockCount(); ++index) {
        if (!shared.contains(&list.block(index))) {
            for (const Record& record : list.block(index).records) {
                own.append(record);
            }
        }
    }
    return own;
}

/// What of a ledger may differ from another: a block that both hold has the same records in both,
/// so only what an edit touched has to be encoded.
LedgerData withoutShared(const LedgerData& ledger, const LedgerData& other)
{
    LedgerData own;
    own.clients = withoutShared(ledger.clients, other.clients);
    own.projects = withoutShared(ledger.projects, other.projects);
    own.entries = withoutShared(ledger.entries, other.entries);
    own.active = ledger.active;
    return own;
}

bool hasChanged(
    const std::string& key, const Payloads& before, const Payloads& after, ChangeTracking tracking)
{
    const auto newer = after.find(key);
    if (newer == after.end()) {
        return tracking.trackDeletions;
    }
    if (tracking.forceAll) {
        return true;
    }
    const auto older = before.find(key);
    return older == before.end() || older->second != newer->second;
}

void enterChange(LedgerSyncState& state, const SyncRecord& record)
{
    state.outbox[record.recordID] = record;
    if (record.isDeleted) {
        state.tombstones[record.recordID] = record;
    } else {
        state.tombstones.erase(record.recordID);
    }
    for (SyncConflict& conflict : state.conflicts) {
        if (conflict.id == record.recordID) {
            conflict.local = record;
        }
    }
}

} // namespace

void recordLedgerChange(
    const LedgerData& before, LedgerData& after, ChangeTracking tracking, const UuidSource& newUuid)
{
    if (!after.replication) {
        return;
    }
    const std::string deviceID = after.replication->deviceID;
    const std::string deviceName = after.replication->deviceName;
    const auto payloadsOf = [&](const LedgerData& ledger, const LedgerData& other) {
        return recordPayloads(
            tracking.forceAll ? ledger : withoutShared(ledger, other), deviceID, deviceName);
    };
    const Payloads older = payloadsOf(before, after);
    const Payloads newer = payloadsOf(after, before);
    std::set<std::string> keys;
    for (const Payloads* payloads : {&older, &newer}) {
        for (const auto& [key, bytes] : *payloads) {
            keys.insert(key);
        }
    }
    for (const std::string& key : keys) {
        if (!hasChanged(key, older, newer, tracking)) {
            continue;
        }
        SyncRecord record;
        record.recordID = key;
        record.revision = newUuid().text();
        record.deviceID = deviceID;
        if (const auto payload = newer.find(key); payload != newer.end()) {
            record.payload = payload->second;
        } else {
            record.isDeleted = true;
        }
        enterChange(after.replication.edit(), record);
    }
}

} // namespace KestryCore
