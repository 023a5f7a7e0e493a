#include "RestoreMerge.h"

#include <gtest/gtest.h>

#include "Refusal.h"
#include "SampleLedger.h"
#include "SyncRecords.h"

namespace KestryCore {
namespace {

using namespace Sample;

/// A current ledger and a backup of it to which it goes back.
class RestoreMerge : public testing::Test {
protected:
    RestoreMerge() { restored.active.reset(); }
    void leavePending(const SyncRecord& record)
    {
        current.replication.edit().outbox[record.recordID] = record;
        restored.replication = current.replication;
    }
    void merge() { mergePendingIntoRestored(current, restored); }

    LedgerData current = connectedLedger();
    LedgerData restored = connectedLedger();
};

TEST_F(RestoreMerge, WithoutReplicationNothingIsBroughtOver)
{
    current.replication = {};
    restored = LedgerData{};
    merge();
    EXPECT_EQ(restored, LedgerData{});
}

TEST_F(RestoreMerge, WhatTheBackupLacksIsAppendedInItsOrder)
{
    current.clients.append(client(3));
    current.clients.append(client(2));
    current.projects.append(project(2));
    current.entries.append(entry(2));
    merge();
    EXPECT_EQ(restored.clients, current.clients);
    EXPECT_EQ(restored.projects, current.projects);
    EXPECT_EQ(restored.entries, current.entries);
}

TEST_F(RestoreMerge, WhatTheBackupHasStaysAsItWas)
{
    current.clients.modify(clientID(), [](Client& client) { client.name = "Lighthouse"; });
    merge();
    EXPECT_EQ(restored.clients.front().name, "Harbour Books");
}

TEST_F(RestoreMerge, TheCurrentActiveSessionReplacesThatOfTheBackup)
{
    restored.active = pausedSession();
    restored.active->id = sessionID(8);
    merge();
    EXPECT_EQ(restored.active, current.active);
}

TEST_F(RestoreMerge, TheActiveSessionOfTheBackupStaysWhenThereIsNoneNow)
{
    restored.active = pausedSession();
    current.active.reset();
    merge();
    EXPECT_EQ(restored.active, pausedSession());
}

TEST_F(RestoreMerge, AnActiveSessionThatIsSavedByNowIsCleared)
{
    current.active.reset();
    current.entries.append(entry(9));
    restored.active = pausedSession();
    merge();
    EXPECT_FALSE(restored.active);
    EXPECT_EQ(restored.entries.back(), entry(9));
}

TEST_F(RestoreMerge, TheCurrentActiveSessionIsClearedWhenTheBackupHasItSaved)
{
    restored.entries.append(entry(9));
    merge();
    EXPECT_FALSE(restored.active);
    EXPECT_EQ(restored.entries.back(), entry(9));
}

TEST_F(RestoreMerge, PendingRecordsThatNeitherLedgerHasAreAppended)
{
    leavePending(record(client(2)));
    leavePending(record(project(2)));
    leavePending(record(synced(entry(2))));
    merge();
    EXPECT_EQ(restored.clients.back(), client(2));
    EXPECT_EQ(restored.projects.back(), project(2));
    EXPECT_EQ(restored.entries.back(), entry(2));
}

TEST_F(RestoreMerge, PendingRecordsThatAreThereAlreadyChangeNothing)
{
    Client renamed = client();
    renamed.name = "Lighthouse";
    leavePending(record(renamed));
    leavePending(record(synced(pausedSession())));
    merge();
    EXPECT_EQ(restored.clients.front(), client());
    EXPECT_EQ(restored.active, runningSession());
}

TEST_F(RestoreMerge, APendingVersionOfASavedSessionChangesNothing)
{
    TimeEntry changed = entry();
    changed.title = "Changed";
    leavePending(record(synced(changed)));
    ActiveSession timer = pausedSession();
    timer.id = sessionID(2);
    restored.entries.append(entry(2));
    leavePending(record(synced(timer)));
    merge();
    EXPECT_EQ(restored.entries, (RecordList<TimeEntry>{entry(), entry(2)}));
    EXPECT_TRUE(restored.replication->remoteSessions.empty());
}

TEST_F(RestoreMerge, OfTwoPendingActiveSessionsTheFirstInOrderBecomesActive)
{
    current.active.reset();
    ActiveSession later = pausedSession();
    later.id = sessionID(10);
    leavePending(record(synced(later)));
    leavePending(record(synced(pausedSession())));
    merge();
    EXPECT_EQ(restored.active, pausedSession());
    EXPECT_EQ(
        restored.replication->remoteSessions.at(record(synced(later)).recordID).active, later);
}

TEST_F(RestoreMerge, PendingDeletionsDeleteNothing)
{
    current = LedgerData{};
    current.replication = state();
    restored = connectedLedger();
    const LedgerData before = restored;
    for (const std::string& key : {record(client()).recordID, record(project()).recordID,
             record(synced(entry())).recordID, record(synced(runningSession())).recordID}) {
        leavePending(deletion(key));
    }
    merge();
    restored.replication = before.replication;
    EXPECT_EQ(restored, before);
}

TEST_F(RestoreMerge, APendingActiveSessionOfThisDeviceBecomesActiveWhenNoneIs)
{
    current.active.reset();
    leavePending(record(synced(pausedSession())));
    merge();
    EXPECT_EQ(restored.active, pausedSession());
}

TEST_F(RestoreMerge, APendingActiveSessionBesideAnotherBecomesARemoteOne)
{
    ActiveSession other = pausedSession();
    other.id = sessionID(8);
    leavePending(record(synced(other)));
    merge();
    EXPECT_EQ(restored.active, runningSession());
    EXPECT_EQ(
        restored.replication->remoteSessions.at(record(synced(other)).recordID).active, other);
}

TEST_F(RestoreMerge, APendingActiveSessionOfAnotherDeviceBecomesARemoteOne)
{
    current.active.reset();
    SyncedSession foreign = synced(pausedSession());
    foreign.ownerDeviceID = "device-b";
    leavePending(record(foreign));
    merge();
    EXPECT_FALSE(restored.active);
    EXPECT_EQ(restored.replication->remoteSessions.at(record(foreign).recordID), foreign);
}

TEST_F(RestoreMerge, AnInvalidPendingRecordIsRefused)
{
    SyncRecord broken = record(client(2));
    broken.payload.reset();
    leavePending(broken);
    EXPECT_EQ(refusalOf([&] { merge(); }), "Missing or oversized sync record payload.");
}

TEST_F(RestoreMerge, AnInvalidPendingRecordIsRefusedAlthoughTheBackupHasThatClient)
{
    SyncRecord broken = record(client());
    broken.deviceID.clear();
    leavePending(broken);
    EXPECT_EQ(refusalOf([&] { merge(); }), "Invalid sync record identity.");
}

} // namespace
} // namespace KestryCore
