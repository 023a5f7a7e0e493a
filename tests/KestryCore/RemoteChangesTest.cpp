#include "RemoteChanges.h"

#include <algorithm>
#include <optional>

#include "LedgerCoding.h"
#include "OutboxDelivery.h"
#include "Refusal.h"
#include "SyncFixture.h"

namespace KestryCore {
namespace {

using namespace Sample;

const std::string clientKey = recordID(SyncRecordKind::client, clientID());
const std::string projectKey = recordID(SyncRecordKind::project, projectID());
const std::string entryKey = recordID(SyncRecordKind::session, sessionID());
const std::string activeKey = recordID(SyncRecordKind::session, sessionID(9));

SyncedSession ofLaptop(SyncedSession session)
{
    session.ownerDeviceID = "device-b";
    session.ownerName = "laptop";
    return session;
}

Client renamed(Client client, const std::string& name = "Lighthouse")
{
    client.name = name;
    return client;
}

/// The client's record in each of the states that what is known here can be in.
class RemoteChanges : public SyncFixture {
protected:
    /// Whether the record is finished with.
    bool apply(const SyncRecord& record)
    {
        LedgerSyncState known = *ledger.replication;
        const bool isDone = applyRemoteRecord(record, ledger, known, newUuid());
        ledger.replication = known;
        return isDone;
    }
    /// Applies a record that changes nothing at all.
    void expectIgnored(const SyncRecord& record)
    {
        const LedgerData before = ledger;
        EXPECT_TRUE(apply(record));
        EXPECT_EQ(ledger, before);
    }
    void dropActive() { ledger.active.reset(); }
    void dropEverything()
    {
        ledger = LedgerData{};
        ledger.replication = Sample::state();
    }
};

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

// Whole fetches

TEST_F(RemoteChanges, ChildrenMayComeBeforeTheirParents)
{
    dropEverything();
    fetch({remote(ofLaptop(synced(entry()))), remote(project()), remote(client())});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(ledger.clients.size(), 1U);
    EXPECT_EQ(ledger.projects.size(), 1U);
    EXPECT_EQ(ledger.entries, RecordList<TimeEntry>{entry()});
    EXPECT_EQ(state().baseRevisions.size(), 3U);
}

TEST_F(RemoteChanges, AProjectWaitsOverFetchesForItsClientWhileTheCursorMoves)
{
    dropEverything();
    fetch({remote(project())});
    EXPECT_EQ(keysOf(state().staged), Keys{projectKey});
    EXPECT_EQ(state().changeToken, "cursor");
    fetch({remote(client())});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(ledger.projects, RecordList<Project>{project()});
}

TEST_F(RemoteChanges, AWaitingSessionThatMovesToAProjectWhichIsHereWaitsNoMore)
{
    TimeEntry waiting = entry(2);
    waiting.projectID = projectID(8);
    fetch({remote(ofLaptop(synced(waiting)), 1)});
    EXPECT_EQ(state().staged.size(), 1U);
    fetch({remote(ofLaptop(synced(entry(2))), 2)});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(ledger.entries.back(), entry(2));
}

TEST_F(RemoteChanges, AWaitingRecordMeetsWhatIsChangedHereMeanwhile)
{
    fetch({remoteDeletion(clientKey)});
    leavePending(record(renamed(client())));
    fetch({});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(conflictKeys(), Keys{clientKey});
}

TEST_F(RemoteChanges, AnEmptyFetchTriesAgainWhatIsWaiting)
{
    dropEverything();
    fetch({remote(project())});
    ledger.clients.append(client());
    fetch({});
    EXPECT_EQ(ledger.projects, RecordList<Project>{project()});
}

TEST_F(RemoteChanges, ANewerVersionTakesThePlaceOfAWaitingOne)
{
    dropEverything();
    Project newer = project();
    newer.name = "Index";
    fetch({remote(project(), 1)});
    fetch({remote(newer, 2)});
    EXPECT_EQ(state().staged.at(projectKey), remote(newer, 2));
    fetch({remote(client())});
    EXPECT_EQ(ledger.projects.front().name, "Index");
}

TEST_F(RemoteChanges, OfTwoVersionsInOneFetchTheLaterCounts)
{
    fetch({remote(renamed(client(), "Pier"), 1), remote(renamed(client(), "Lighthouse"), 2)});
    EXPECT_EQ(ledger.clients.front().name, "Lighthouse");
    EXPECT_EQ(state().baseRevisions.at(clientKey), id(2).text());
}

TEST_F(RemoteChanges, DeletionsOfAWholeTreeMayComeInAnyOrder)
{
    dropActive();
    fetch({remoteDeletion(clientKey), remoteDeletion(projectKey), remoteDeletion(entryKey)});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_TRUE(ledger.clients.empty() && ledger.projects.empty() && ledger.entries.empty());
    EXPECT_EQ(state().tombstones.size(), 3U);
}

TEST_F(RemoteChanges, AClientAndItsOnlyProjectGoInOneFetch)
{
    dropActive();
    ledger.entries = {};
    fetch({remoteDeletion(clientKey), remoteDeletion(projectKey)});
    EXPECT_TRUE(ledger.clients.empty() && ledger.projects.empty());
}

TEST_F(RemoteChanges, ADeletionOfAClientThatHasProjectsStaysStaged)
{
    fetch({remoteDeletion(clientKey)});
    EXPECT_EQ(keysOf(state().staged), Keys{clientKey});
    EXPECT_EQ(ledger.clients, connectedLedger().clients);
    EXPECT_TRUE(state().tombstones.empty());
}

TEST_F(RemoteChanges, AProjectDeletedElsewhereGoesWhenTheLastTimerOnItHasEnded)
{
    dropActive();
    ledger.entries = {};
    state().remoteSessions[activeKey] = ofLaptop(synced(runningSession()));
    fetch({remoteDeletion(projectKey)});
    EXPECT_EQ(keysOf(state().staged), Keys{projectKey});
    fetch({remoteDeletion(activeKey)});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_TRUE(ledger.projects.empty());
}

TEST_F(RemoteChanges, ASessionMovedToAnotherProjectLetsTheFormerOneGo)
{
    dropActive();
    TimeEntry moved = entry();
    moved.projectID = projectID(2);
    fetch({remote(project(2)), remoteDeletion(projectKey), remote(ofLaptop(synced(moved)))});
    EXPECT_EQ(ledger.projects, RecordList<Project>{project(2)});
    EXPECT_EQ(ledger.entries, RecordList<TimeEntry>{moved});
}

TEST_F(RemoteChanges, TheCursorIsSetEvenToNone)
{
    state().changeToken = "old";
    applyRemoteSync(ledger, {}, {}, std::nullopt, newUuid());
    EXPECT_EQ(state().changeToken, std::nullopt);
}

TEST_F(RemoteChanges, TheCloudsMetadataIsMergedAndTheNewerWins)
{
    state().systemFields = {{"a", "old"}, {"b", "old"}};
    applyRemoteSync(ledger, {}, {{"b", "new"}, {"c", "new"}}, "cursor", newUuid());
    EXPECT_EQ(
        state().systemFields, (SharedMap<std::string>{{"a", "old"}, {"b", "new"}, {"c", "new"}}));
}

TEST_F(RemoteChanges, TheEchoOfADeliveryBringsTheMetadataThatTheAcknowledgementWouldHave)
{
    const SyncRecord mine = record(client());
    leavePending(mine);
    applyRemoteSync(ledger, {mine}, {{clientKey, "etag"}}, "cursor", newUuid());
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(base(mine), mine.revision);
    EXPECT_EQ(state().systemFields.at(clientKey), "etag");
}

TEST_F(RemoteChanges, TheEchoAfterTheAcknowledgementIsIgnored)
{
    const SyncRecord mine = record(client());
    leavePending(mine);
    acknowledgeDelivery(ledger, mine, "etag");
    const LedgerData acknowledged = ledger;
    EXPECT_TRUE(apply(mine));
    EXPECT_EQ(ledger, acknowledged);
}

TEST_F(RemoteChanges, NothingCanBeAppliedToALedgerThatWasNeverConnected)
{
    ledger.replication = {};
    EXPECT_EQ(refusalOf([&] { fetch({}); }), "Sync is not connected.");
}

TEST_F(RemoteChanges, TheFirstInvalidRecordIsNamed)
{
    SyncRecord noIdentity = remote(client());
    noIdentity.recordID = "Client:7";
    SyncRecord noPayload = remote(client());
    noPayload.payload.reset();
    EXPECT_EQ(refusalOf([&] {
        fetch({remote(client()), noIdentity, noPayload});
    }),
        "Invalid sync record identity.");
    EXPECT_EQ(refusalOf([&] {
        fetch({noPayload, noIdentity});
    }),
        "Missing or oversized sync record payload.");
}

TEST_F(RemoteChanges, APayloadThatIsNotReadableFailsAsItsReading)
{
    SyncRecord broken = remote(client());
    broken.payload = "{";
    EXPECT_EQ(refusalOf([&] { fetch({broken}); }), "The file isn't valid JSON.");
}

// Many sessions at once: they are gathered on their way into the ledger.

TEST_F(RemoteChanges, ManySessionsReplaceTheirFormerVersionsInTheOrderOfTheirIdentities)
{
    ledger.entries = {};
    std::vector<SyncRecord> records;
    RecordList<TimeEntry> expected;
    for (unsigned number = 1000; number < 2000; ++number) {
        ledger.entries.append(entry(number));
        if (number % 3 == 0) {
            TimeEntry changed = entry(number);
            changed.title = "Changed elsewhere";
            records.insert(records.begin(), remote(ofLaptop(synced(changed))));
        } else {
            expected.append(entry(number));
        }
    }
    fetch(records);
    for (auto record = records.rbegin(); record != records.rend(); ++record) {
        expected.append(*decodeRecord<SyncedSession>(*record->payload).entry);
    }
    EXPECT_EQ(ledger.entries, expected);
}

} // namespace
} // namespace KestryCore
