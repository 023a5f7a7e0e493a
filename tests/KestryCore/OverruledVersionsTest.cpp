#include "OverruledVersions.h"

#include "Refusal.h"
#include "SyncFixture.h"

namespace KestryCore {
namespace {

/// This device has delivered a version of the first client, and the cloud shows another's.
class OverruledVersions : public SyncFixture {
protected:
    OverruledVersions()
    {
        mine = Sample::record(named("Mine"));
        mine.revision = Sample::id(0xA1).text();
        theirs = remote(named("Theirs"), 0xB1);
    }
    [[nodiscard]] Client named(const std::string& name) const
    {
        Client client = ledger.clients.front();
        client.name = name;
        return client;
    }
    [[nodiscard]] bool take() { return takeBack(ledger, mine, newUuid()); }
    [[nodiscard]] std::string shownName() const { return ledger.clients.front().name; }
    /// Both versions are there for the user to choose, and the ledger has this device's.
    void expectConflict()
    {
        ASSERT_EQ(conflictKeys(), Keys{mine.recordID});
        EXPECT_EQ(state().conflicts.front().local, mine);
        EXPECT_EQ(state().conflicts.front().remote, theirs);
        EXPECT_EQ(shownName(), "Mine");
        EXPECT_EQ(state().outbox.at(mine.recordID), mine);
    }
    /// The ledger has the version of this device, and the cloud was known to have it.
    void deliverMine()
    {
        ledger.clients.modify(
            ledger.clients.front().id, [](Client& client) { client.name = "Mine"; });
        knowInCloud(mine);
    }

    SyncRecord mine;
    SyncRecord theirs;
};

TEST_F(OverruledVersions, AVersionThatIsTakenBackMeetsTheOtherOneAsAConflict)
{
    deliverMine();
    EXPECT_TRUE(take());
    fetch({theirs});
    expectConflict();
}

TEST_F(OverruledVersions, SoItDoesWhenTheOtherOneHasBeenAppliedAlready)
{
    deliverMine();
    fetch({theirs});
    ASSERT_EQ(shownName(), "Theirs");
    EXPECT_TRUE(take());
    fetch({theirs});
    expectConflict();
}

TEST_F(OverruledVersions, SoItDoesWhenTheOtherOneIsADeletionThatHasBeenApplied)
{
    const Client spare = Sample::client(7);
    mine = Sample::record(spare);
    mine.revision = Sample::id(0xA1).text();
    fetch({mine});
    const SyncRecord deletion = remoteDeletion(mine.recordID, 0xB1);
    fetch({deletion});
    ASSERT_EQ(ledger.clients.find(spare.id), nullptr);
    EXPECT_TRUE(take());
    fetch({deletion});
    EXPECT_NE(ledger.clients.find(spare.id), nullptr);
    EXPECT_EQ(conflictKeys(), Keys{mine.recordID});
}

TEST_F(OverruledVersions, TakenBackOnceMoreItChangesNothing)
{
    deliverMine();
    EXPECT_TRUE(take());
    const LedgerData after = ledger;
    EXPECT_TRUE(take());
    EXPECT_EQ(ledger, after);
    fetch({theirs});
    const LedgerData inConflict = ledger;
    EXPECT_TRUE(take());
    EXPECT_EQ(ledger, inConflict);
}

TEST_F(OverruledVersions, AnUndeliveredVersionThatWasMadeOfItStandsForIt)
{
    deliverMine();
    SyncRecord newer = mine;
    newer.revision = Sample::id(0xA2).text();
    leavePending(newer);
    const LedgerData before = ledger;
    EXPECT_TRUE(take());
    EXPECT_EQ(ledger, before);
}

TEST_F(OverruledVersions, BesideAnUndeliveredVersionOfTheOtherOneItHasToWait)
{
    deliverMine();
    fetch({theirs});
    SyncRecord newer = theirs;
    newer.revision = Sample::id(0xA2).text();
    leavePending(newer);
    const LedgerData before = ledger;
    EXPECT_FALSE(take());
    EXPECT_EQ(ledger, before);
}

TEST_F(OverruledVersions, BesideAnotherConflictItHasToWait)
{
    deliverMine();
    SyncRecord newer = mine;
    newer.revision = Sample::id(0xA2).text();
    openConflict(newer, theirs);
    const LedgerData before = ledger;
    EXPECT_FALSE(take());
    EXPECT_EQ(ledger, before);
}

TEST_F(OverruledVersions, AVersionWhoseParentIsGoneHasToWait)
{
    Project orphan = ledger.projects.front();
    orphan.id = Sample::id(0x78);
    orphan.clientID = Sample::id(0x79);
    mine = Sample::record(orphan);
    const LedgerData before = ledger;
    EXPECT_FALSE(take());
    EXPECT_EQ(ledger, before);
}

TEST_F(OverruledVersions, AnInvalidVersionIsRefused)
{
    mine.recordID = "Client:none";
    const LedgerData before = ledger;
    EXPECT_EQ(refusalOf([&] { (void)take(); }), "Invalid sync record identity.");
    EXPECT_EQ(ledger, before);
}

TEST_F(OverruledVersions, ALedgerThatWasNeverConnectedHasNothingToTakeBack)
{
    ledger.replication = {};
    EXPECT_EQ(refusalOf([&] { (void)take(); }), "Sync is not connected.");
}

} // namespace
} // namespace KestryCore
