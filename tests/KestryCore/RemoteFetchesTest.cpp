// Whole fetches: many versions at once, in any order, together with the cursor.

#include "LedgerCoding.h"
#include "OutboxDelivery.h"
#include "Refusal.h"
#include "RemoteChangesFixture.h"

namespace KestryCore {
namespace {

using namespace Sample;

class RemoteFetches : public RemoteChangesFixture { };

TEST_F(RemoteFetches, ChildrenMayComeBeforeTheirParents)
{
    dropEverything();
    fetch({remote(ofLaptop(synced(entry()))), remote(project()), remote(client())});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(ledger.clients.size(), 1U);
    EXPECT_EQ(ledger.projects.size(), 1U);
    EXPECT_EQ(ledger.entries, RecordList<TimeEntry>{entry()});
    EXPECT_EQ(state().baseRevisions.size(), 3U);
}

TEST_F(RemoteFetches, AProjectWaitsOverFetchesForItsClientWhileTheCursorMoves)
{
    dropEverything();
    fetch({remote(project())});
    EXPECT_EQ(keysOf(state().staged), Keys{projectKey});
    EXPECT_EQ(state().changeToken, "cursor");
    fetch({remote(client())});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(ledger.projects, RecordList<Project>{project()});
}

TEST_F(RemoteFetches, AWaitingSessionThatMovesToAProjectWhichIsHereWaitsNoMore)
{
    TimeEntry waiting = entry(2);
    waiting.projectID = projectID(8);
    fetch({remote(ofLaptop(synced(waiting)), 1)});
    EXPECT_EQ(state().staged.size(), 1U);
    fetch({remote(ofLaptop(synced(entry(2))), 2)});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(ledger.entries.back(), entry(2));
}

TEST_F(RemoteFetches, AWaitingRecordMeetsWhatIsChangedHereMeanwhile)
{
    fetch({remoteDeletion(clientKey)});
    leavePending(record(renamed(client())));
    fetch({});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_EQ(conflictKeys(), Keys{clientKey});
}

TEST_F(RemoteFetches, AnEmptyFetchTriesAgainWhatIsWaiting)
{
    dropEverything();
    fetch({remote(project())});
    ledger.clients.append(client());
    fetch({});
    EXPECT_EQ(ledger.projects, RecordList<Project>{project()});
}

TEST_F(RemoteFetches, ANewerVersionTakesThePlaceOfAWaitingOne)
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

TEST_F(RemoteFetches, OfTwoVersionsInOneFetchTheLaterCounts)
{
    fetch({remote(renamed(client(), "Pier"), 1), remote(renamed(client(), "Lighthouse"), 2)});
    EXPECT_EQ(ledger.clients.front().name, "Lighthouse");
    EXPECT_EQ(state().baseRevisions.at(clientKey), id(2).text());
}

TEST_F(RemoteFetches, DeletionsOfAWholeTreeMayComeInAnyOrder)
{
    dropActive();
    fetch({remoteDeletion(clientKey), remoteDeletion(projectKey), remoteDeletion(entryKey)});
    EXPECT_TRUE(state().staged.empty());
    EXPECT_TRUE(ledger.clients.empty() && ledger.projects.empty() && ledger.entries.empty());
    EXPECT_EQ(state().tombstones.size(), 3U);
}

TEST_F(RemoteFetches, AClientAndItsOnlyProjectGoInOneFetch)
{
    dropActive();
    ledger.entries = {};
    fetch({remoteDeletion(clientKey), remoteDeletion(projectKey)});
    EXPECT_TRUE(ledger.clients.empty() && ledger.projects.empty());
}

TEST_F(RemoteFetches, ADeletionOfAClientThatHasProjectsStaysStaged)
{
    fetch({remoteDeletion(clientKey)});
    EXPECT_EQ(keysOf(state().staged), Keys{clientKey});
    EXPECT_EQ(ledger.clients, connectedLedger().clients);
    EXPECT_TRUE(state().tombstones.empty());
}

TEST_F(RemoteFetches, AProjectDeletedElsewhereGoesWhenTheLastTimerOnItHasEnded)
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

TEST_F(RemoteFetches, ASessionMovedToAnotherProjectLetsTheFormerOneGo)
{
    dropActive();
    TimeEntry moved = entry();
    moved.projectID = projectID(2);
    fetch({remote(project(2)), remoteDeletion(projectKey), remote(ofLaptop(synced(moved)))});
    EXPECT_EQ(ledger.projects, RecordList<Project>{project(2)});
    EXPECT_EQ(ledger.entries, RecordList<TimeEntry>{moved});
}

TEST_F(RemoteFetches, TheCursorIsSetEvenToNone)
{
    state().changeToken = "old";
    applyRemoteSync(ledger, {}, {}, std::nullopt, newUuid());
    EXPECT_EQ(state().changeToken, std::nullopt);
}

TEST_F(RemoteFetches, TheCloudsMetadataIsMergedAndTheNewerWins)
{
    state().systemFields = {{"a", "old"}, {"b", "old"}};
    applyRemoteSync(ledger, {}, {{"b", "new"}, {"c", "new"}}, "cursor", newUuid());
    EXPECT_EQ(
        state().systemFields, (SharedMap<std::string>{{"a", "old"}, {"b", "new"}, {"c", "new"}}));
}

TEST_F(RemoteFetches, TheEchoOfADeliveryBringsTheMetadataThatTheAcknowledgementWouldHave)
{
    const SyncRecord mine = record(client());
    leavePending(mine);
    applyRemoteSync(ledger, {mine}, {{clientKey, "etag"}}, "cursor", newUuid());
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(base(mine), mine.revision);
    EXPECT_EQ(state().systemFields.at(clientKey), "etag");
}

TEST_F(RemoteFetches, TheEchoAfterTheAcknowledgementIsIgnored)
{
    const SyncRecord mine = record(client());
    leavePending(mine);
    acknowledgeDelivery(ledger, mine, "etag");
    const LedgerData acknowledged = ledger;
    EXPECT_TRUE(apply(mine));
    EXPECT_EQ(ledger, acknowledged);
}

TEST_F(RemoteFetches, NothingCanBeAppliedToALedgerThatWasNeverConnected)
{
    ledger.replication = {};
    EXPECT_EQ(refusalOf([&] { fetch({}); }), "Sync is not connected.");
}

TEST_F(RemoteFetches, TheFirstInvalidRecordIsNamed)
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

TEST_F(RemoteFetches, APayloadThatIsNotReadableFailsAsItsReading)
{
    SyncRecord broken = remote(client());
    broken.payload = "{";
    EXPECT_EQ(refusalOf([&] { fetch({broken}); }), "The file isn't valid JSON.");
}

// Many sessions at once: they are gathered on their way into the ledger.

TEST_F(RemoteFetches, ManySessionsReplaceTheirFormerVersionsInTheOrderOfTheirIdentities)
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
