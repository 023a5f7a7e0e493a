#include "RevisionClash.h"

#include "LedgerCoding.h"
#include "Refusal.h"
#include "SyncFixture.h"

namespace KestryCore {
namespace {

class RevisionClash : public SyncFixture {
protected:
    RevisionClash()
    {
        mine = Sample::record(ledger.clients.front());
        mine.revision = theirs().revision;
        leavePending(mine);
    }
    [[nodiscard]] SyncRecord theirs() const
    {
        Client client = ledger.clients.front();
        client.name = "Theirs";
        return remote(client);
    }
    [[nodiscard]] bool separate(const SyncRecord& version)
    {
        return separateRevisions(ledger, FetchedRecords({version}, {}), newUuid());
    }

    SyncRecord mine;
};

TEST_F(RevisionClash, TwoContentsUnderOneRevisionMeetAsAConflict)
{
    ASSERT_TRUE(separate(theirs()));
    EXPECT_EQ(state().outbox.at(mine.recordID).revision, Sample::id(1).text());
    fetch({theirs()});
    ASSERT_EQ(conflictKeys(), Keys{mine.recordID});
    EXPECT_EQ(state().conflicts.front().local.payload, mine.payload);
    EXPECT_EQ(state().conflicts.front().remote, theirs());
}

TEST_F(RevisionClash, ItDoesSoAlsoWhereThatRevisionWasTheBase)
{
    knowInCloud(mine);
    ASSERT_TRUE(separate(theirs()));
    EXPECT_EQ(base(mine), "none");
    fetch({theirs()});
    EXPECT_EQ(conflictKeys(), Keys{mine.recordID});
}

TEST_F(RevisionClash, ADeletionThatWaitsIsRetainedInItsNewRevision)
{
    SyncRecord deleted = Sample::deletion(mine.recordID);
    deleted.revision = mine.revision;
    leavePending(deleted);
    state().tombstones[mine.recordID] = deleted;
    ASSERT_TRUE(separate(theirs()));
    EXPECT_EQ(state().tombstones.at(mine.recordID), state().outbox.at(mine.recordID));
}

TEST_F(RevisionClash, TheSameInOtherWordsIsOneContent)
{
    SyncRecord reworded = mine;
    reworded.payload->insert(1, "\"laterMember\":1,");
    EXPECT_FALSE(separate(reworded));
}

TEST_F(RevisionClash, ADeletionAndALiveVersionAreTwoContents)
{
    SyncRecord deleted = remoteDeletion(mine.recordID);
    EXPECT_TRUE(separate(deleted));
}

TEST_F(RevisionClash, AnEchoOfAnOwnDeliveryKeepsItsRevision)
{
    const LedgerData before = ledger;
    SyncRecord echo = mine;
    echo.deviceID = "as told by the cloud";
    EXPECT_FALSE(separate(echo));
    EXPECT_EQ(ledger, before);
}

TEST_F(RevisionClash, ASessionUploadedByAnotherDeviceIsTheSameSession)
{
    const SyncedSession saved = Sample::synced(ledger.entries.front());
    SyncRecord uploaded = Sample::record(saved);
    leavePending(uploaded);
    SyncedSession elsewhere = saved;
    elsewhere.ownerDeviceID = "device-b";
    elsewhere.ownerName = "Laptop";
    SyncRecord theirs = Sample::record(elsewhere);
    theirs.revision = uploaded.revision;
    EXPECT_FALSE(separate(theirs));
    elsewhere.entry->title += ", changed";
    theirs.payload = canonicalJson(elsewhere);
    EXPECT_TRUE(separate(theirs));
}

TEST_F(RevisionClash, AVersionThatCannotBeReadIsRefused)
{
    SyncRecord nonsense = theirs();
    nonsense.payload.reset();
    EXPECT_EQ(
        refusalOf([&] { (void)separate(nonsense); }), "Missing or oversized sync record payload.");
}

TEST_F(RevisionClash, AnotherRevisionAndAnotherRecordAreLeftAlone)
{
    const LedgerData before = ledger;
    SyncRecord newer = theirs();
    newer.revision = Sample::id(0xC1).text();
    EXPECT_FALSE(separate(newer));
    EXPECT_FALSE(separate(remoteDeletion(recordID(SyncRecordKind::client, Sample::id(0xC2)))));
    EXPECT_EQ(ledger, before);
}

TEST(RevisionClashOfAPlainLedger, ThereIsNone)
{
    LedgerData ledger = Sample::ledger();
    EXPECT_FALSE(separateRevisions(ledger, FetchedRecords({Sample::deletion("Client:x")}, {}), {}));
}

} // namespace
} // namespace KestryCore
