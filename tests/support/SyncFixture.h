#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Ledger.h"
#include "RemoteApplication.h"
#include "RemoteChanges.h"
#include "SampleLedger.h"
#include "SyncConflicts.h"
#include "SyncRecords.h"
#include "SyncState.h"

namespace KestryCore {

/// A connected ledger to which the cloud and the user do things; new revisions count from 1.
class SyncFixture : public testing::Test {
protected:
    using Keys = std::vector<std::string>;

    [[nodiscard]] UuidSource newUuid()
    {
        return [this] { return Sample::id(++revisions); };
    }
    [[nodiscard]] LedgerSyncState& state() { return ledger.replication.edit(); }

    /// A version of a record that another device has written.
    [[nodiscard]] static SyncRecord remote(SyncRecord record, unsigned revision = 0xFB)
    {
        record.revision = Sample::id(revision).text();
        record.deviceID = "device-b";
        return record;
    }
    template <class Record>
    [[nodiscard]] static SyncRecord remote(const Record& thing, unsigned revision = 0xFB)
    {
        return remote(Sample::record(thing), revision);
    }
    [[nodiscard]] static SyncRecord remoteDeletion(
        const std::string& recordID, unsigned revision = 0xFB)
    {
        return remote(Sample::deletion(recordID), revision);
    }

    /// Takes in what a fetch brought.
    void fetch(const std::vector<SyncRecord>& records)
    {
        applyRemoteSync(ledger, records, {}, "cursor", newUuid());
    }
    void leavePending(const SyncRecord& record) { state().outbox[record.recordID] = record; }
    void knowInCloud(const SyncRecord& record)
    {
        state().baseRevisions[record.recordID] = record.revision;
    }
    void openConflict(const SyncRecord& local, const SyncRecord& remote)
    {
        addConflict(local, remote, state());
    }

    [[nodiscard]] std::string base(const SyncRecord& record)
    {
        const auto found = state().baseRevisions.find(record.recordID);
        return found != state().baseRevisions.end() ? found->second : "none";
    }
    template <class Value>
    [[nodiscard]] static Keys keysOf(const SharedMap<Value>& map)
    {
        Keys keys;
        for (const auto& [key, value] : map) {
            keys.push_back(key);
        }
        return keys;
    }
    [[nodiscard]] Keys conflictKeys()
    {
        Keys keys;
        for (const SyncConflict& conflict : state().conflicts) {
            keys.push_back(conflict.id);
        }
        return keys;
    }

    LedgerData ledger = Sample::connectedLedger();
    unsigned revisions = 0;
};

} // namespace KestryCore
