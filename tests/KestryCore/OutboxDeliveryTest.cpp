#include "OutboxDelivery.h"

#include "LocalChanges.h"
#include "Refusal.h"
#include "SyncFixture.h"

namespace KestryCore {
namespace {

using namespace Sample;

using Records = std::vector<SyncRecord>;

class OutboxDelivery : public SyncFixture {
protected:
    OutboxDelivery()
    {
        for (const SyncRecord& record : {session, project, client}) {
            leavePending(record);
        }
    }

    const SyncRecord client = record(Sample::client());
    const SyncRecord project = record(Sample::project());
    const SyncRecord session = record(synced(entry()));
};

TEST_F(OutboxDelivery, ParentsComeFirst)
{
    EXPECT_EQ(pendingSyncRecords(ledger), (Records{client, project, session}));
}

TEST_F(OutboxDelivery, AsManyAreHandedOutAsAreAskedFor)
{
    openConflict(client, remote(client));
    EXPECT_EQ(pendingSyncRecords(ledger, 1), Records{project});
    EXPECT_EQ(pendingSyncRecords(ledger, 0), Records{});
    EXPECT_EQ(pendingSyncRecords(ledger, 9), (Records{project, session}));
}

TEST_F(OutboxDelivery, ADeliveryIsTakenInPartsAndKnowsNothingOfLaterChanges)
{
    openConflict(project, remote(project));
    PendingDelivery delivery(ledger);
    leavePending(record(Sample::client(2)));
    EXPECT_THAT(delivery.take(1), testing::ElementsAre(testing::Pointee(client)));
    EXPECT_FALSE(delivery.isEmpty());
    EXPECT_THAT(delivery.take(100), testing::ElementsAre(testing::Pointee(session)));
    EXPECT_TRUE(delivery.isEmpty());
    EXPECT_THAT(delivery.take(100), testing::IsEmpty());
}

TEST_F(OutboxDelivery, ADeliveryIsBehindOnceANewerVersionWaitsThatIsNotInConflict)
{
    const PendingDelivery delivery(ledger);
    state().outbox.erase(session.recordID);
    EXPECT_FALSE(delivery.isBehind(ledger));
    SyncRecord newer = client;
    newer.revision = id(0xD1).text();
    leavePending(newer);
    EXPECT_TRUE(delivery.isBehind(ledger));
    openConflict(newer, remote(client));
    EXPECT_FALSE(delivery.isBehind(ledger));
}

TEST_F(OutboxDelivery, TheRevisionsOfTheOutboxAreThoseInConflictToo)
{
    openConflict(client, remote(client));
    state().enabled = false;
    EXPECT_EQ(outboxRevisions(ledger),
        (std::map<std::string, std::string>{{client.recordID, client.revision},
            {project.recordID, project.revision}, {session.recordID, session.revision}}));
    ledger.replication = {};
    EXPECT_TRUE(outboxRevisions(ledger).empty());
}

TEST_F(OutboxDelivery, NothingIsHandedOutWhileReplicationIsOff)
{
    state().enabled = false;
    EXPECT_EQ(pendingSyncRecords(ledger), Records{});
    state().enabled = true;
    EXPECT_EQ(pendingSyncRecords(ledger).size(), 3U);
    ledger.replication = {};
    EXPECT_EQ(pendingSyncRecords(ledger), Records{});
}

TEST_F(OutboxDelivery, ARecordInConflictWaitsAlsoAfterAnEdit)
{
    openConflict(client, remote(client));
    const LedgerData before = ledger;
    ledger.clients.modify(clientID(), [](Client& edited) { edited.name = "Lighthouse"; });
    recordLedgerChange(before, ledger, {}, newUuid());
    EXPECT_EQ(state().conflicts.front().local, state().outbox.at(client.recordID));
    EXPECT_EQ(pendingSyncRecords(ledger), (Records{project, session}));
}

TEST_F(OutboxDelivery, AnAcknowledgedRecordLeavesTheOutboxAndBecomesTheBase)
{
    LedgerSyncState expected = state();
    expected.outbox.erase(client.recordID);
    expected.baseRevisions[client.recordID] = client.revision;
    expected.systemFields[client.recordID] = "etag";
    acknowledgeDelivery(ledger, client, "etag");
    EXPECT_EQ(state(), expected);
}

TEST_F(OutboxDelivery, ANewerEditStaysAfterTheAcknowledgementOfAnOlderOneWhichIsItsBase)
{
    const SyncRecord older = remote(client, 5);
    acknowledgeDelivery(ledger, older, "etag");
    EXPECT_EQ(state().outbox.at(client.recordID), client);
    EXPECT_EQ(state().baseRevisions.at(client.recordID), older.revision);
    EXPECT_EQ(state().systemFields.at(client.recordID), "etag");
}

TEST_F(OutboxDelivery, AnAcknowledgementOfWhatDoesNotWaitMovesTheBase)
{
    state().outbox.clear();
    acknowledgeDelivery(ledger, client, "etag");
    EXPECT_EQ(state().baseRevisions.at(client.recordID), client.revision);
    EXPECT_TRUE(state().outbox.empty());
}

TEST_F(OutboxDelivery, ADeliveredDeletionKeepsItsTombstone)
{
    const SyncRecord gone = deletion(session.recordID);
    leavePending(gone);
    state().tombstones[gone.recordID] = gone;
    acknowledgeDelivery(ledger, gone, "etag");
    EXPECT_EQ(keysOf(state().tombstones), Keys{gone.recordID});
}

TEST_F(OutboxDelivery, AnInvalidRecordIsNotAcknowledged)
{
    const LedgerData before = ledger;
    SyncRecord broken = client;
    broken.revision = "7";
    EXPECT_EQ(refusalOf([&] { acknowledgeDelivery(ledger, broken, "etag"); }),
        "Invalid sync record identity.");
    EXPECT_EQ(ledger, before);
}

TEST_F(OutboxDelivery, WhatWaitsIsCheckedUnlessItWasFoundSoundBefore)
{
    leavePending(deletion("Client:7"));
    const SyncRecord& waiting = state().outbox.at("Client:7");
    EXPECT_EQ(refusalOf([&] { acknowledgeDelivery(ledger, waiting, "etag"); }),
        "Invalid sync record identity.");
    state().outbox.erase("Client:7");
    validateReplicationState(*ledger.replication);
    const LedgerData sound = ledger;
    acknowledgeDelivery(ledger, sound.replication->outbox.at(client.recordID), "etag");
    EXPECT_EQ(keysOf(state().outbox), (Keys{project.recordID, session.recordID}));
}

TEST_F(OutboxDelivery, NothingIsAcknowledgedByALedgerThatWasNeverConnected)
{
    ledger.replication = {};
    EXPECT_EQ(
        refusalOf([&] { acknowledgeDelivery(ledger, client, "etag"); }), "Sync is not connected.");
}

} // namespace
} // namespace KestryCore
