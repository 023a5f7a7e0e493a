#include "CloudSyncRun.h"

#include "CloudFixture.h"

namespace KestryCore {
namespace {

const char* const unavailable =
    "iCloud is unavailable. Your local changes are saved and will retry.";
const char* const foreign =
    "This ledger belongs to a different iCloud account. Sign in to the original account to sync; "
    "local records have been preserved.";
const char* const missing = "The iCloud workspace is missing. Local records are safe; restore the "
                            "cloud workspace before syncing.";

/// The account and the zone: what comes before records, and around them.
class CloudSyncRunTest : public CloudFixture {
protected:
    using Questions = std::vector<std::string>;

    /// The ledger has synced before.
    void knowTheCloud()
    {
        LedgerData synced = ledger();
        synced.replication.edit().changeToken = archiveCursor(workspaceZone(), {"start"});
        control(synced);
    }
};

TEST_F(CloudSyncRunTest, AnIdleCycleAsksForTheAccountTheZoneTheChangesAndTheAccount)
{
    syncWhole();
    EXPECT_EQ(cloud.asked(), (Questions{"status", "name", "zone", "changes", "status", "name"}));
    expectSuccess();
    EXPECT_EQ(status(), "Up to date");
}

TEST_F(CloudSyncRunTest, ADeliveryIsBetweenTwoLooksAtTheAccount)
{
    rename("Ours");
    sync();
    answerUntil("changes");
    answer();
    answerAll();
    EXPECT_EQ(cloud.asked(),
        (Questions{"status", "name", "zone", "changes", "status", "name", "status", "name", "save",
            "status", "name"}));
    expectSuccess();
}

// The account

TEST_F(CloudSyncRunTest, WithoutAnAccountTheCycleFailsAndNothingElseIsAsked)
{
    cloud.isAvailable = false;
    syncWhole();
    expectFailure(unavailable);
    EXPECT_EQ(cloud.asked(), Questions{"status"});
    EXPECT_TRUE(controller->isEnabled());
}

TEST_F(CloudSyncRunTest, AnotherAccountTurnsReplicationOff)
{
    cloud.userName = "stranger";
    syncWhole();
    expectFailure(foreign);
    EXPECT_FALSE(controller->isEnabled());
    EXPECT_FALSE(state().enabled);
    EXPECT_FALSE(readPrimary().replication->enabled);
    EXPECT_EQ(cloud.asked(), (Questions{"status", "name"}));
}

TEST_F(CloudSyncRunTest, AnAccountThatChangesUnderAnAnswerAppliesNothingOfIt)
{
    bring({stored(remote(renamedAcme("Theirs")))}, "c1");
    sync();
    answerUntil("changes");
    answer();
    cloud.userName = "stranger";
    answerAll();
    expectFailure(foreign);
    EXPECT_EQ(ledger().clients.front().name, "Acme");
    EXPECT_EQ(cursor(), "none");
    EXPECT_FALSE(state().enabled);
}

TEST_F(CloudSyncRunTest, AnAccountThatChangesUnderADeliveryAcknowledgesNothing)
{
    rename("Ours");
    sync();
    answerUntil("save");
    cloud.userName = "stranger";
    answerAll();
    expectFailure(foreign);
    EXPECT_EQ(state().outbox.size(), 1U);
    EXPECT_TRUE(state().baseRevisions.empty());
}

TEST_F(CloudSyncRunTest, TheAccountIsLookedAtBeforeADelivery)
{
    rename("Ours");
    sync();
    answerUntil("changes");
    answer(); // the changes
    answer(); // the status of the check after them
    answer(); // the name
    cloud.isAvailable = false;
    answerAll();
    expectFailure(unavailable);
    EXPECT_TRUE(cloud.deliveries.empty());
}

TEST_F(CloudSyncRunTest, AFailureToTellTheAccountIsShownInTheStoresWords)
{
    cloud.failures.emplace("status", CloudError("The server cannot be reached."));
    syncWhole();
    expectFailure("The server cannot be reached.");
    cloud.failures.emplace("name", CloudError("The server went away."));
    syncWhole();
    expectFailure("The server went away.");
}

// The zone

TEST_F(CloudSyncRunTest, TheFirstSyncOfAnEmptyAccountCreatesTheZone)
{
    cloud.hasZone = false;
    syncWhole();
    EXPECT_EQ(cloud.asked(),
        (Questions{
            "status", "name", "zone", "status", "name", "create", "changes", "status", "name"}));
    expectSuccess();
}

TEST_F(CloudSyncRunTest, AZoneThatIsMissingLaterIsNeverCreated)
{
    knowTheCloud();
    cloud.hasZone = false;
    syncWhole();
    expectFailure(missing);
    EXPECT_EQ(cloud.times("create"), 0);
    EXPECT_TRUE(controller->isEnabled());
}

TEST_F(CloudSyncRunTest, ADeliveryThatIsKnownIsEnoughToHaveSyncedBefore)
{
    LedgerData delivered = ledger();
    delivered.replication.edit().baseRevisions[clientKey(acme)] = uuid(1).text();
    control(delivered);
    cloud.hasZone = false;
    syncWhole();
    expectFailure(missing);
    EXPECT_EQ(cloud.times("create"), 0);
}

TEST_F(CloudSyncRunTest, TheZoneIsNotCreatedUnderAnotherAccount)
{
    cloud.hasZone = false;
    sync();
    answerUntil("zone");
    answer();
    cloud.userName = "stranger";
    answerAll();
    expectFailure(foreign);
    EXPECT_EQ(cloud.times("create"), 0);
}

TEST_F(CloudSyncRunTest, OtherFailuresOfTheZoneAreShown)
{
    cloud.failures.emplace("zone", CloudError("The server is busy.").retryingAfter(2.1));
    syncWhole();
    expectFailure("The server is busy. Retry in 3 seconds.");
    cloud.hasZone = false;
    cloud.failures.emplace("create", CloudError("There is no more room."));
    syncWhole();
    expectFailure("There is no more room.");
}

TEST_F(CloudSyncRunTest, AZoneThatWasMissingAndIsBackIsTakenUpAgain)
{
    knowTheCloud();
    cloud.hasZone = false;
    syncWhole();
    cloud.hasZone = true;
    syncWhole();
    expectSuccess();
}

// A stale run

TEST_F(CloudSyncRunTest, AFailureThatComesAfterTurningOffIsNotShown)
{
    cloud.failures.emplace("zone", CloudError("The server went away."));
    sync();
    answerUntil("zone");
    controller->disable();
    answerAll();
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(status(), "iCloud sync is off");
    EXPECT_FALSE(isSyncing());
}

TEST_F(CloudSyncRunTest, NorIsAnAccountThatIsMissingByThen)
{
    sync();
    controller->disable();
    cloud.isAvailable = false;
    answerAll();
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(status(), "iCloud sync is off");
}

} // namespace
} // namespace KestryCore
