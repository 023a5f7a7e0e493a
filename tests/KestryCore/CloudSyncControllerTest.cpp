#include "CloudSyncController.h"

#include "ControllerFixture.h"

namespace KestryCore {
namespace {

const char* const noEnvironment =
    "This build has no valid iCloud environment configuration. Install a correctly signed Kestry "
    "build; your local data is preserved.";
const char* const wrongEnvironment =
    "iCloud sync is paused because this ledger uses the Development environment. Your sessions and "
    "sync history are preserved. Use the previous Kestry build to sync, or contact support to "
    "migrate to Production.";

class CloudSyncControllerTest : public ControllerFixture { };

// Creation

TEST_F(CloudSyncControllerTest, BeginsOffWithNothingToTell)
{
    EXPECT_EQ(status(), "iCloud sync is off");
    EXPECT_EQ(failure(), "");
    EXPECT_FALSE(isSyncing());
    EXPECT_EQ(*controller->fields().lastSync, std::nullopt);
    EXPECT_TRUE(controller->isConfigured());
}

TEST_F(CloudSyncControllerTest, ABuildThatMayUseNoStoreSaysSo)
{
    configure(false, std::nullopt);
    EXPECT_EQ(status(), "iCloud requires a signed, provisioned build");
    EXPECT_EQ(failure(), "");
    syncWhole();
    EXPECT_EQ(cloud.opened, 0);
}

TEST_F(CloudSyncControllerTest, ABuildWithoutAnEnvironmentSaysSo)
{
    configure(true, std::nullopt);
    expectFailure(noEnvironment);
    EXPECT_FALSE(controller->isEnabled());
    syncWhole();
    enableWhole();
    expectFailure(noEnvironment);
    EXPECT_EQ(cloud.opened, 0);
}

TEST_F(CloudSyncControllerTest, ABuildOfTheOtherEnvironmentRefusesAndTouchesNothing)
{
    const auto before = files.contents();
    configure(true, production);
    expectFailure(wrongEnvironment);
    EXPECT_FALSE(controller->isEnabled());
    syncWhole();
    enableWhole();
    pass(120);
    expectFailure(wrongEnvironment);
    EXPECT_EQ(files.contents(), before);
    EXPECT_EQ(cloud.opened, 0);
}

TEST_F(CloudSyncControllerTest, AlsoABuildThatMayUseNoStoreTellsOfTheOtherEnvironment)
{
    configure(false, production);
    expectFailure(wrongEnvironment);
}

// One cycle

TEST_F(CloudSyncControllerTest, ACycleShowsThatItRunsAndWhenItEnded)
{
    sync();
    EXPECT_TRUE(isSyncing());
    EXPECT_EQ(status(), "Syncing");
    EXPECT_EQ(*controller->fields().lastSync, std::nullopt);
    answerAll();
    expectSuccess();
    EXPECT_EQ(status(), "Up to date");
}

TEST_F(CloudSyncControllerTest, OpensTheContainerOnce)
{
    EXPECT_EQ(cloud.opened, 0);
    syncWhole();
    syncWhole();
    EXPECT_EQ(cloud.container, "sqlite:/cloud");
    EXPECT_EQ(cloud.opened, 1);
}

TEST_F(CloudSyncControllerTest, AskingAgainDuringACycleReturnsAtOnceAndLosesNothing)
{
    startWhole();
    controller->syncNow();
    scheduler.turn();
    answerUntil("changes");
    answer();
    answerUntil("status");
    rename("Ours");
    bool isDone = false;
    controller->syncNow([&] { isDone = true; });
    EXPECT_TRUE(isDone);
    EXPECT_EQ(cycles(), 2);
    answerAll();
    pass(60);
    EXPECT_TRUE(state().outbox.empty());
}

TEST_F(CloudSyncControllerTest, TellsWhoAskedWhenItIsOver)
{
    bool isDone = false;
    controller->syncNow([&] { isDone = true; });
    EXPECT_FALSE(isDone);
    cloud.isAvailable = false;
    answerAll();
    EXPECT_TRUE(isDone);
}

TEST_F(CloudSyncControllerTest, ALedgerThatIsOffIsNotExchanged)
{
    store().setSyncEnabled(false);
    syncWhole();
    EXPECT_TRUE(cloud.asked().empty());
    EXPECT_EQ(status(), "iCloud sync is off");
}

TEST_F(CloudSyncControllerTest, ASuccessClearsAFailure)
{
    cloud.failures.emplace("zone", CloudError("Busy."));
    syncWhole();
    expectFailure("Busy.");
    EXPECT_EQ(*controller->fields().lastSync, std::nullopt);
    syncWhole();
    expectSuccess();
}

TEST_F(CloudSyncControllerTest, AFailureKeepsTheTimeOfTheLastSuccess)
{
    syncWhole();
    const Date before = now;
    now = clockTime(13);
    cloud.failures.emplace("zone", CloudError("Busy."));
    syncWhole();
    EXPECT_EQ(*controller->fields().lastSync, before);
}

TEST_F(CloudSyncControllerTest, AStoreThatCannotBeOpenedIsAFailure)
{
    controller.reset();
    CloudPlatform platform{scheduler,
        [](const std::string&) -> std::unique_ptr<CloudContainer> {
            throw CloudError("The store cannot be opened.");
        },
        [] { return "Desk"; }};
    controller.emplace(store(), configuration, platform);
    controller->syncNow();
    expectFailure("The store cannot be opened.");
    controller->enable();
    expectFailure("The store cannot be opened.");
}

// A failure that stays

TEST_F(CloudSyncControllerTest, AFailureThatRepeatsTurnsNothingOff)
{
    startWhole();
    cloud.hasZone = false;
    pass(300);
    EXPECT_EQ(cycles(), 6);
    EXPECT_TRUE(controller->isEnabled());
    EXPECT_EQ(status(), "Sync needs attention");
    cloud.hasZone = true;
    pass(60);
    expectSuccess();
}

TEST_F(CloudSyncControllerTest, AConflictThatWasDecidedIsNoLongerAskedAbout)
{
    for (const auto& [choice, then] : {std::pair(ConflictChoice::useCloud, "Up to date"),
             std::pair(ConflictChoice::keepLocal, "Changes pending (1)")}) {
        control(connected(sampleLedger()));
        startWhole();
        rename("Ours");
        bring({stored(remote(renamedAcme("Theirs")))}, "c2");
        syncWhole();
        EXPECT_EQ(status(), "Review sync conflicts");
        store().resolveSyncConflict(clientKey(acme), choice);
        EXPECT_EQ(status(), then);
    }
}

} // namespace
} // namespace KestryCore
