#include "LocalChanges.h"

#include <set>

#include "SyncRecords.h"

namespace KestryCore {

namespace {

using Payloads = std::map<std::string, std::string>;

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
    const Payloads older = recordPayloads(before, deviceID, deviceName);
    const Payloads newer = recordPayloads(after, deviceID, deviceName);
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
