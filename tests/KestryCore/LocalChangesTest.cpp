#include "LocalChanges.h"

#include <gtest/gtest.h>

#include "LedgerCoding.h"
#include "Refusal.h"
#include "SampleLedger.h"
#include "SyncRecords.h"

namespace KestryCore {
namespace {

using namespace Sample;

const std::string clientKey = recordID(SyncRecordKind::client, clientID());
const std::string entryKey = recordID(SyncRecordKind::session, sessionID());
const std::string activeKey = recordID(SyncRecordKind::session, sessionID(9));

/// A connected ledger with nothing to deliver; revisions are counted from 1.
class LocalChanges : public testing::Test {
protected:
    template <class Change>
    void edit(Change change, ChangeTracking tracking = {})
    {
        const LedgerData before = ledger;
        change(ledger);
        recordLedgerChange(before, ledger, tracking, [this] { return id(++revisions); });
    }
    void renameClient(const std::string& name)
    {
        edit([&](LedgerData& data) {
            data.clients.modify(clientID(), [&](Client& client) { client.name = name; });
        });
    }
    void removeClient()
    {
        edit([](LedgerData& data) { data.clients.remove(clientID()); });
    }
    void keepConflictOn(const SyncRecord& local)
    {
        ledger.replication.edit().conflicts = {{local.recordID, local, local}};
    }
    [[nodiscard]] const LedgerSyncState& state() const { return *ledger.replication; }
    [[nodiscard]] std::vector<std::string> pendingKeys() const
    {
        std::vector<std::string> keys;
        for (const auto& [key, record] : state().outbox) {
            keys.push_back(key);
        }
        return keys;
    }

    LedgerData ledger = connectedLedger();
    unsigned revisions = 0;
};

using Keys = std::vector<std::string>;

TEST_F(LocalChanges, WithoutReplicationNothingHappensAndNothingCanFail)
{
    ledger = runningLedger();
    edit([](LedgerData& data) { data.active->title = "\xFF"; }, {true, true});
    EXPECT_FALSE(ledger.replication);
    EXPECT_EQ(revisions, 0U);
}

TEST_F(LocalChanges, AChangeThatChangesNothingMakesNoRevision)
{
    edit([](LedgerData&) {});
    EXPECT_EQ(pendingKeys(), Keys{});
    EXPECT_EQ(ledger, connectedLedger());
}

TEST_F(LocalChanges, AnEditEntersItsRecordAlone)
{
    renameClient("Lighthouse");
    ASSERT_EQ(pendingKeys(), Keys{clientKey});
    const SyncRecord& record = state().outbox.at(clientKey);
    EXPECT_EQ(record.revision, id(1).text());
    EXPECT_EQ(record.deviceID, "device-a");
    EXPECT_EQ(record.payload, canonicalJson(ledger.clients.front()));
    EXPECT_FALSE(record.isDeleted);
}

TEST_F(LocalChanges, OfALongLedgerOnlyWhatWasTouchedIsEntered)
{
    for (unsigned number = 10; number < 1000; ++number) {
        ledger.entries.append(entry(number));
    }
    edit([](LedgerData& data) {
        data.entries.modify(sessionID(300), [](TimeEntry& entry) { entry.title = "New"; });
        data.entries.remove(sessionID(12));
        data.entries.append(entry(1000));
    });
    EXPECT_EQ(pendingKeys(),
        (Keys{recordID(SyncRecordKind::session, sessionID(12)),
            recordID(SyncRecordKind::session, sessionID(300)),
            recordID(SyncRecordKind::session, sessionID(1000))}));
    EXPECT_EQ(state().tombstones.size(), 1U);
}

TEST_F(LocalChanges, EditingTwiceLeavesTheSecondRevisionAlone)
{
    renameClient("Lighthouse");
    renameClient("Pier");
    ASSERT_EQ(pendingKeys(), Keys{clientKey});
    EXPECT_EQ(state().outbox.at(clientKey).revision, id(2).text());
    EXPECT_EQ(state().outbox.at(clientKey).payload, canonicalJson(ledger.clients.front()));
}

TEST_F(LocalChanges, GoingBackToTheFormerBytesIsAChangeToo)
{
    renameClient("Lighthouse");
    renameClient("Harbour Books");
    EXPECT_EQ(state().outbox.at(clientKey).revision, id(2).text());
}

TEST_F(LocalChanges, RevisionsAreGivenInTheOrderOfTheIdentities)
{
    edit([](LedgerData&) {}, {false, true});
    EXPECT_EQ(state().outbox.at(clientKey).revision, id(1).text());
    EXPECT_EQ(state().outbox.at(entryKey).revision, id(3).text());
    EXPECT_EQ(state().outbox.at(activeKey).revision, id(4).text());
}

TEST_F(LocalChanges, EditsAreTrackedWhileReplicationIsOff)
{
    ledger.replication.edit().enabled = false;
    renameClient("Lighthouse");
    EXPECT_EQ(pendingKeys(), Keys{clientKey});
}

TEST_F(LocalChanges, DeletingARecordNeverDeliveredLeavesADeletionAndATombstone)
{
    removeClient();
    const SyncRecord expected{clientKey, id(1).text(), "device-a", std::nullopt, true};
    EXPECT_EQ(state().outbox.at(clientKey), expected);
    EXPECT_EQ(state().tombstones.at(clientKey), expected);
}

TEST_F(LocalChanges, ARecordAddedAgainEndsItsTombstone)
{
    removeClient();
    edit([](LedgerData& data) { data.clients.append(client()); });
    EXPECT_FALSE(state().outbox.at(clientKey).isDeleted);
    EXPECT_TRUE(state().tombstones.empty());
}

TEST_F(LocalChanges, ARecordDeletedAndAddedAgainInOneChangeIsLiveWithoutTombstone)
{
    edit([](LedgerData& data) {
        Client again = client();
        again.name = "Lighthouse";
        data.clients.remove(clientID());
        data.clients.append(again);
    });
    EXPECT_FALSE(state().outbox.at(clientKey).isDeleted);
    EXPECT_TRUE(state().tombstones.empty());
}

TEST_F(LocalChanges, WithoutTrackingDeletionsAMissingRecordIsLeftAlone)
{
    const auto removeTheClient = [](LedgerData& data) { data.clients.remove(clientID()); };
    edit(removeTheClient, {.trackDeletions = false, .forceAll = false});
    EXPECT_EQ(pendingKeys(), Keys{});
    ledger = connectedLedger();
    edit(removeTheClient, {.trackDeletions = false, .forceAll = true});
    EXPECT_FALSE(state().outbox.contains(clientKey));
    EXPECT_TRUE(state().tombstones.empty());
}

TEST_F(LocalChanges, ForcingEntersEveryRecordThatIsThereWithAFreshRevision)
{
    edit([](LedgerData&) {}, {.trackDeletions = false, .forceAll = true});
    EXPECT_EQ(state().outbox.size(), 4U);
    EXPECT_EQ(revisions, 4U);
}

TEST_F(LocalChanges, ForcingFromABlankLedgerEntersTheActiveSessionToo)
{
    recordLedgerChange(LedgerData{}, ledger, {true, true}, [this] { return id(++revisions); });
    EXPECT_EQ(state().outbox.size(), 4U);
    EXPECT_TRUE(state().outbox.contains(activeKey));
}

TEST_F(LocalChanges, ACheckpointIsANewRevisionOfTheActiveSession)
{
    edit([](LedgerData& data) { data.active->checkpointAt = data.active->checkpointAt + 15; });
    EXPECT_EQ(pendingKeys(), Keys{activeKey});
}

TEST_F(LocalChanges, StoppingTurnsTheSameRecordIntoASavedSession)
{
    edit([](LedgerData& data) {
        TimeEntry saved = entry();
        saved.id = data.active->id;
        data.active.reset();
        data.entries.append(saved);
    });
    ASSERT_EQ(pendingKeys(), Keys{activeKey});
    const auto session = decodeRecord<SyncedSession>(*state().outbox.at(activeKey).payload);
    EXPECT_EQ(session, synced(ledger.entries.back()));
}

TEST_F(LocalChanges, StoppingWithNothingToSaveIsADeletion)
{
    edit([](LedgerData& data) { data.active.reset(); });
    EXPECT_TRUE(state().outbox.at(activeKey).isDeleted);
    EXPECT_TRUE(state().tombstones.contains(activeKey));
}

TEST_F(LocalChanges, AnOpenConflictFollowsTheNewestLocalVersion)
{
    const SyncRecord former = record(client());
    keepConflictOn(former);
    renameClient("Lighthouse");
    EXPECT_EQ(state().conflicts.front().local, state().outbox.at(clientKey));
    EXPECT_EQ(state().conflicts.front().remote, former);
}

TEST_F(LocalChanges, AnOpenConflictFollowsADeletion)
{
    keepConflictOn(record(client()));
    removeClient();
    EXPECT_TRUE(state().conflicts.front().local.isDeleted);
}

TEST_F(LocalChanges, AConflictOnAnotherRecordStaysAsItIs)
{
    keepConflictOn(record(project()));
    renameClient("Lighthouse");
    EXPECT_EQ(state().conflicts.front().local, record(project()));
}

TEST_F(LocalChanges, WhatTheCloudHoldsIsNotTouched)
{
    ledger.replication = fullState();
    renameClient("Lighthouse");
    LedgerSyncState expected = fullState();
    expected.outbox[clientKey] = state().outbox.at(clientKey);
    EXPECT_EQ(state(), expected);
}

TEST_F(LocalChanges, TheOwnerIsTheDeviceOfTheNewLedger)
{
    const LedgerData before = ledger;
    ledger.replication.edit().deviceID = "device-b";
    ledger.replication.edit().deviceName = "attic";
    ledger.active->title = "New";
    recordLedgerChange(before, ledger, {}, [this] { return id(++revisions); });
    ASSERT_EQ(pendingKeys(), Keys{activeKey});
    EXPECT_EQ(state().outbox.at(activeKey).deviceID, "device-b");
    EXPECT_EQ(
        decodeRecord<SyncedSession>(*state().outbox.at(activeKey).payload).ownerName, "attic");
}

TEST_F(LocalChanges, ALedgerThatCannotBeEncodedIsRefused)
{
    EXPECT_EQ(refusalOf([&] { edit([](LedgerData& data) { data.active->title = "\xFF"; }); }),
        "A text in the data is not valid UTF-8 and can't be saved.");
}

} // namespace
} // namespace KestryCore
