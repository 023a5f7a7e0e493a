#include "RemoteChanges.h"

#include "LedgerCoding.h"
#include "OutboxDelivery.h"
#include "RemoteChangesFixture.h"

namespace KestryCore {
namespace {

using namespace Sample;

/// The client's record in each of the states that what is known here can be in.
class RemoteChanges : public RemoteChangesFixture { };

// 1. What waits in the outbox

TEST_F(RemoteChanges, TheEchoOfADeliveryAcknowledgesIt)
{
    const SyncRecord mine = record(client());
    leavePending(mine);
    LedgerData expected = ledger;
    expected.replication.edit().outbox.clear();
    expected.replication.edit().baseRevisions[clientKey] = mine.revision;
    EXPECT_TRUE(apply(mine));
    EXPECT_EQ(ledger, expected);
}

TEST_F(RemoteChanges, TheVersionThatAPendingOneIsBasedOnIsIgnored)
{
    leavePending(record(renamed(client())));
    const SyncRecord former = remote(client());
    knowInCloud(former);
    expectIgnored(former);
}

TEST_F(RemoteChanges, AnyOtherVersionCollidesWithAPendingOne)
{
    const SyncRecord mine = record(renamed(client()));
    leavePending(mine);
    knowInCloud(remote(client(), 7));
    const SyncRecord theirs = remote(renamed(client(), "Pier"));
    EXPECT_TRUE(apply(theirs));
    EXPECT_EQ(state().conflicts, (RecordList<SyncConflict>{{clientKey, mine, theirs}}));
    EXPECT_EQ(keysOf(state().outbox), Keys{clientKey});
    EXPECT_EQ(state().baseRevisions.at(clientKey), id(7).text());
    EXPECT_EQ(ledger.clients, connectedLedger().clients);
}

TEST_F(RemoteChanges, APendingVersionOfWhatTheCloudNeverHadCollidesToo)
{
    leavePending(record(client()));
    EXPECT_TRUE(apply(remote(client())));
    EXPECT_EQ(conflictKeys(), Keys{clientKey});
}

TEST_F(RemoteChanges, ARecordThatCollidedIsHeldBackFromDelivery)
{
    leavePending(record(client()));
    leavePending(record(project()));
    EXPECT_TRUE(apply(remote(client())));
    ASSERT_EQ(pendingSyncRecords(ledger).size(), 1U);
    EXPECT_EQ(pendingSyncRecords(ledger).front(), record(project()));
}

TEST_F(RemoteChanges, ARemoteDeletionCollidesWithAPendingEdit)
{
    leavePending(record(client()));
    EXPECT_TRUE(apply(remoteDeletion(clientKey)));
    ASSERT_FALSE(state().conflicts.empty());
    EXPECT_TRUE(state().conflicts.front().remote.isDeleted);
    EXPECT_TRUE(state().tombstones.empty());
}

// 2. Open conflicts

TEST_F(RemoteChanges, AnOpenConflictTakesTheNewerRemoteSideAndMovesToTheEnd)
{
    const SyncRecord mine = record(renamed(client()));
    openConflict(mine, remote(client(), 1));
    openConflict(record(project()), remote(project(), 2));
    const SyncRecord newer = remote(client(), 3);
    EXPECT_TRUE(apply(newer));
    EXPECT_EQ(conflictKeys(), (Keys{projectKey, clientKey}));
    EXPECT_EQ(state().conflicts.back(), (SyncConflict{clientKey, mine, newer}));
}

TEST_F(RemoteChanges, AnOpenConflictIsLookedAtBeforeWhatWasSeen)
{
    openConflict(record(client()), remote(client(), 1));
    openConflict(record(project()), remote(project(), 2));
    const SyncRecord seen = remote(client(), 1);
    knowInCloud(seen);
    EXPECT_TRUE(apply(seen));
    EXPECT_EQ(conflictKeys(), (Keys{projectKey, clientKey}));
}

TEST_F(RemoteChanges, APendingVersionIsLookedAtBeforeTheOpenConflict)
{
    const SyncRecord mine = record(renamed(client()));
    openConflict(mine, remote(client(), 1));
    leavePending(mine);
    EXPECT_TRUE(apply(mine));
    EXPECT_EQ(conflictKeys(), Keys{clientKey});
    EXPECT_TRUE(state().outbox.empty());
}

TEST_F(RemoteChanges, TwoVersionsInARowMakeOneConflictWithTheLater)
{
    leavePending(record(client()));
    EXPECT_TRUE(apply(remote(client(), 1)));
    EXPECT_TRUE(apply(remote(client(), 2)));
    ASSERT_EQ(conflictKeys(), Keys{clientKey});
    EXPECT_EQ(state().conflicts.front().remote, remote(client(), 2));
}

// 3. What was seen already

TEST_F(RemoteChanges, AVersionSeenAlreadyIsIgnored)
{
    const SyncRecord seen = remote(renamed(client()));
    knowInCloud(seen);
    expectIgnored(seen);
}

TEST_F(RemoteChanges, ADeletionSeenAlreadyIsIgnored)
{
    const SyncRecord seen = remoteDeletion(entryKey);
    knowInCloud(seen);
    expectIgnored(seen);
}

TEST_F(RemoteChanges, FetchingTheSameRecordsAgainChangesNothing)
{
    const std::vector<SyncRecord> records = {remote(client(2)), remote(project(2)),
        remote(ofLaptop(synced(entry(2)))), remoteDeletion(entryKey)};
    fetch(records);
    const LedgerData after = ledger;
    fetch(records);
    EXPECT_EQ(ledger, after);
}

// 4. Retained deletions

TEST_F(RemoteChanges, WhatWasDeletedHereIsNotSilentlyResurrected)
{
    const SyncRecord tombstone = deletion(clientKey);
    state().tombstones[clientKey] = tombstone;
    const SyncRecord live = remote(renamed(client()));
    EXPECT_TRUE(apply(live));
    EXPECT_EQ(state().conflicts, (RecordList<SyncConflict>{{clientKey, tombstone, live}}));
    EXPECT_EQ(ledger.clients, connectedLedger().clients);
    EXPECT_EQ(base(live), "none");
}

TEST_F(RemoteChanges, AnotherDeletionOfWhatWasDeletedIsApplied)
{
    state().tombstones[entryKey] = deletion(entryKey);
    const SyncRecord again = remoteDeletion(entryKey);
    EXPECT_TRUE(apply(again));
    EXPECT_EQ(state().tombstones.at(entryKey), again);
    EXPECT_EQ(base(again), again.revision);
}

TEST_F(RemoteChanges, ALocalDeletionChangedElsewhereIsAConflictWithTheTombstone)
{
    const SyncRecord mine = deletion(entryKey);
    leavePending(mine);
    state().tombstones[entryKey] = mine;
    ledger.entries.remove(sessionID());
    knowInCloud(remote(synced(entry()), 5));
    EXPECT_TRUE(apply(remote(ofLaptop(synced(entry())), 6)));
    ASSERT_EQ(conflictKeys(), Keys{entryKey});
    EXPECT_EQ(state().conflicts.front().local, state().tombstones.at(entryKey));
}

// 6. The session in progress here

TEST_F(RemoteChanges, ARemoteDeletionOfTheRunningSessionIsAConflictThatHoldsIt)
{
    const SyncRecord theirs = remoteDeletion(activeKey);
    state().baseRevisions[activeKey] = id(7).text();
    EXPECT_TRUE(apply(theirs));
    ASSERT_EQ(conflictKeys(), Keys{activeKey});
    const SyncRecord expected{
        activeKey, id(7).text(), "device-a", canonicalJson(synced(runningSession())), false};
    EXPECT_EQ(state().conflicts.front(), (SyncConflict{activeKey, expected, theirs}));
    EXPECT_EQ(ledger.active, runningSession());
    EXPECT_EQ(state().baseRevisions.at(activeKey), id(7).text());
    EXPECT_TRUE(state().tombstones.empty());
}

TEST_F(RemoteChanges, ARemoteVersionOfTheRunningSessionIsAConflictWithAFreshRevision)
{
    const SyncRecord theirs = remote(ofLaptop(synced(pausedSession())));
    EXPECT_TRUE(apply(theirs));
    ASSERT_FALSE(state().conflicts.empty());
    EXPECT_EQ(state().conflicts.front().local.revision, id(1).text());
    EXPECT_EQ(base(theirs), "none");
    EXPECT_EQ(ledger.active, runningSession());
}

TEST_F(RemoteChanges, ASessionSavedElsewhereWhileItRunsHereIsAConflict)
{
    EXPECT_TRUE(apply(remote(ofLaptop(synced(entry(9))))));
    EXPECT_EQ(conflictKeys(), Keys{activeKey});
    EXPECT_EQ(ledger.entries, connectedLedger().entries);
}

TEST_F(RemoteChanges, AConflictOverTheRunningSessionNeedsNoProjectOfTheRemoteOne)
{
    ActiveSession elsewhere = pausedSession();
    elsewhere.projectID = projectID(8);
    EXPECT_TRUE(apply(remote(ofLaptop(synced(elsewhere)))));
    EXPECT_EQ(conflictKeys(), Keys{activeKey});
}

// 7. Deletions

TEST_F(RemoteChanges, AClientIsDeletedWhenItsProjectsAreGone)
{
    const SyncRecord gone = remoteDeletion(clientKey);
    EXPECT_FALSE(apply(gone));
    EXPECT_EQ(ledger, connectedLedger());
    dropActive();
    ledger.entries = {};
    ledger.projects = {};
    EXPECT_TRUE(apply(gone));
    EXPECT_TRUE(ledger.clients.empty());
    EXPECT_EQ(state().tombstones.at(clientKey), gone);
    EXPECT_EQ(base(gone), gone.revision);
}

TEST_F(RemoteChanges, AProjectWaitsForItsSavedSessionsToGo)
{
    dropActive();
    EXPECT_FALSE(apply(remoteDeletion(projectKey)));
    ledger.entries = {};
    EXPECT_TRUE(apply(remoteDeletion(projectKey)));
    EXPECT_TRUE(ledger.projects.empty());
}

TEST_F(RemoteChanges, AProjectWaitsForTheSessionInProgressHere)
{
    ledger.entries = {};
    EXPECT_FALSE(apply(remoteDeletion(projectKey)));
    EXPECT_EQ(ledger.projects, connectedLedger().projects);
}

TEST_F(RemoteChanges, AProjectWaitsForASessionThatRunsElsewhere)
{
    dropActive();
    ledger.entries = {};
    state().remoteSessions[activeKey] = ofLaptop(synced(runningSession()));
    EXPECT_FALSE(apply(remoteDeletion(projectKey)));
    state().remoteSessions.clear();
    EXPECT_TRUE(apply(remoteDeletion(projectKey)));
}

TEST_F(RemoteChanges, ADeletedSessionLeavesTheLedgerAndTheRemoteSessions)
{
    ledger.entries.append(entry(2));
    state().remoteSessions[entryKey] = ofLaptop(synced(runningSession()));
    EXPECT_TRUE(apply(remoteDeletion(entryKey)));
    EXPECT_EQ(ledger.entries, RecordList<TimeEntry>{entry(2)});
    EXPECT_TRUE(state().remoteSessions.empty());
    EXPECT_EQ(keysOf(state().tombstones), Keys{entryKey});
}

TEST_F(RemoteChanges, DeletingWhatIsNotThereLeavesATombstoneAndABase)
{
    for (const std::string& key : {recordID(SyncRecordKind::client, clientID(5)),
             recordID(SyncRecordKind::project, projectID(5)),
             recordID(SyncRecordKind::session, sessionID(5))}) {
        const SyncRecord gone = remoteDeletion(key);
        EXPECT_TRUE(apply(gone));
        EXPECT_EQ(state().tombstones.at(key), gone);
        EXPECT_EQ(base(gone), gone.revision);
    }
    EXPECT_EQ(ledger.entries, connectedLedger().entries);
}

// 8. Live versions

TEST_F(RemoteChanges, AClientIsReplacedInItsPlaceOrAppended)
{
    ledger.clients = {client(), client(2)};
    EXPECT_TRUE(apply(remote(renamed(client()))));
    EXPECT_TRUE(apply(remote(client(3))));
    EXPECT_EQ(ledger.clients, (RecordList<Client>{renamed(client()), client(2), client(3)}));
    EXPECT_EQ(state().baseRevisions.at(clientKey), id(0xFB).text());
}

TEST_F(RemoteChanges, AProjectIsReplacedInItsPlaceOrAppended)
{
    ledger.projects = {project(), project(2)};
    Project changed = project();
    changed.name = "Index";
    EXPECT_TRUE(apply(remote(changed)));
    EXPECT_TRUE(apply(remote(project(3))));
    EXPECT_EQ(ledger.projects, (RecordList<Project>{changed, project(2), project(3)}));
}

TEST_F(RemoteChanges, AProjectWaitsForItsClient)
{
    dropEverything();
    const SyncRecord theirs = remote(project());
    EXPECT_FALSE(apply(theirs));
    EXPECT_EQ(base(theirs), "none");
    EXPECT_TRUE(ledger.projects.empty());
}

TEST_F(RemoteChanges, ASavedSessionMovesToTheEnd)
{
    ledger.entries = {entry(), entry(2)};
    TimeEntry changed = entry();
    changed.title = "Changed elsewhere";
    EXPECT_TRUE(apply(remote(ofLaptop(synced(changed)))));
    EXPECT_EQ(ledger.entries, (RecordList<TimeEntry>{entry(2), changed}));
}

TEST_F(RemoteChanges, ASavedSessionEndsTheRemoteTimerItCameFrom)
{
    const std::string key = recordID(SyncRecordKind::session, sessionID(2));
    ActiveSession timer = runningSession();
    timer.id = sessionID(2);
    EXPECT_TRUE(apply(remote(ofLaptop(synced(timer)), 1)));
    EXPECT_EQ(state().remoteSessions.at(key), ofLaptop(synced(timer)));
    EXPECT_TRUE(apply(remote(ofLaptop(synced(entry(2))), 2)));
    EXPECT_TRUE(state().remoteSessions.empty());
    EXPECT_EQ(ledger.entries.back(), entry(2));
}

TEST_F(RemoteChanges, ASessionWaitsForItsProject)
{
    dropEverything();
    EXPECT_FALSE(apply(remote(ofLaptop(synced(entry())))));
    EXPECT_FALSE(apply(remote(ofLaptop(synced(runningSession())))));
    EXPECT_EQ(*ledger.replication, Sample::state());
}

TEST_F(RemoteChanges, ARemoteTimerIsShownAndEntersNothingElse)
{
    dropActive();
    const SyncedSession timer = ofLaptop(synced(runningSession()));
    EXPECT_TRUE(apply(remote(timer)));
    EXPECT_EQ(state().remoteSessions.at(activeKey), timer);
    EXPECT_FALSE(ledger.active);
    EXPECT_EQ(ledger.entries, connectedLedger().entries);
}

TEST_F(RemoteChanges, ATimerOfASessionSavedHereIsAConflictAndNoSecondTimer)
{
    ActiveSession timer = runningSession();
    timer.id = sessionID();
    const SyncRecord theirs = remote(ofLaptop(synced(timer)));
    EXPECT_TRUE(apply(theirs));
    const SyncRecord mine{
        entryKey, id(1).text(), "device-a", canonicalJson(synced(entry())), false};
    EXPECT_EQ(state().conflicts, (RecordList<SyncConflict>{{entryKey, mine, theirs}}));
    EXPECT_TRUE(state().remoteSessions.empty());
    EXPECT_EQ(base(theirs), "none");
}

TEST_F(RemoteChanges, TheConflictOverASavedSessionTakesTheBaseRevision)
{
    ActiveSession timer = runningSession();
    timer.id = sessionID();
    state().baseRevisions[entryKey] = id(7).text();
    EXPECT_TRUE(apply(remote(ofLaptop(synced(timer)))));
    ASSERT_FALSE(state().conflicts.empty());
    EXPECT_EQ(state().conflicts.front().local.revision, id(7).text());
    EXPECT_EQ(state().baseRevisions.at(entryKey), id(7).text());
}

TEST_F(RemoteChanges, WhoWroteARecordPlaysNoPart)
{
    SyncRecord mine = remote(renamed(client()));
    mine.deviceID = "device-a";
    EXPECT_TRUE(apply(mine));
    EXPECT_EQ(ledger.clients.front().name, "Lighthouse");
}

} // namespace
} // namespace KestryCore
