#include "CloudSyncController.h"

#include "CloudFixture.h"

namespace KestryCore {
namespace {

const char* const noEnvironment =
    "This build has no valid iCloud environment configuration. Install a correctly signed Kestry "
    "build; your local data is preserved.";
const char* const wrongEnvironment =
    "iCloud sync is paused because this ledger uses the Development environment. Your sessions and "
    "sync history are preserved. Use the previous Kestry build to sync, or contact support to "
    "migrate to Production.";
const char* const accountChanged =
    "iCloud account changed. Enable sync to verify your original account.";

class CloudSyncControllerTest : public CloudFixture {
protected:
    void configure(bool isConfigured, std::optional<CloudSyncEnvironment> environment)
    {
        configuration.isConfigured = isConfigured;
        configuration.environment = environment;
        control();
    }
    /// Started, and the first cycle is over.
    void startWhole()
    {
        bring({}, "c1");
        controller->start();
        scheduler.turn();
        answerAll();
    }
    /// Lets time pass while the cloud answers at once.
    void pass(double seconds)
    {
        const double step = 0.5;
        for (double passed = 0.0; passed < seconds; passed += step) {
            scheduler.advance(step);
            answerAll();
        }
    }
    [[nodiscard]] int cycles() const { return cloud.times("zone"); }
    void enable()
    {
        controller->enable();
        scheduler.turn();
    }
    void enableWhole()
    {
        enable();
        answerAll();
    }
    void disconnect() { control(sampleLedger()); }
};

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

// Polling

TEST_F(CloudSyncControllerTest, StartingBeginsACycleAtOnceAndThenEveryMinute)
{
    startWhole();
    EXPECT_EQ(cycles(), 1);
    pass(59.5);
    EXPECT_EQ(cycles(), 1);
    pass(0.5);
    EXPECT_EQ(cycles(), 2);
    pass(600);
    EXPECT_EQ(cycles(), 12);
}

TEST_F(CloudSyncControllerTest, TheMinuteBeginsWhenACycleIsOver)
{
    controller->start();
    scheduler.advance(30);
    answerAll();
    pass(59.5);
    EXPECT_EQ(cycles(), 1);
    pass(0.5);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncControllerTest, StartingTwiceAddsNothing)
{
    startWhole();
    controller->start();
    pass(60);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncControllerTest, WhileItIsOffItNeverWakesTheMachine)
{
    controller->disable();
    startWhole();
    EXPECT_TRUE(scheduler.isIdle());
    rename("Acme Ltd");
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(CloudSyncControllerTest, TurnedOffWhileItWaitsItStopsWaiting)
{
    startWhole();
    EXPECT_FALSE(scheduler.isIdle());
    controller->disable();
    pass(2);
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(CloudSyncControllerTest, PollingResumesByItselfOnceItIsOnAgain)
{
    controller->disable();
    startWhole();
    pass(180);
    EXPECT_EQ(cycles(), 0);
    store().beginSync("account", "Desk", development);
    pass(60);
    EXPECT_EQ(cycles(), 1);
}

TEST_F(CloudSyncControllerTest, AfterANightsSleepACycleComesAtOnce)
{
    startWhole();
    pass(10);
    slept = 8 * 3600.0;
    controller->machineWoke();
    scheduler.turn();
    answerAll();
    EXPECT_EQ(cycles(), 2);
    pass(59.5);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncControllerTest, AShortSleepCountsTowardsTheMinute)
{
    startWhole();
    pass(10);
    slept = 40;
    controller->machineWoke();
    pass(9.5);
    EXPECT_EQ(cycles(), 1);
    pass(0.5);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncControllerTest, WakingBeforeItIsStartedDoesNothing)
{
    controller->machineWoke();
    pass(120);
    EXPECT_EQ(cycles(), 0);
}

// Local changes

TEST_F(CloudSyncControllerTest, ALocalChangeGoesOutTwoSecondsAfterTheLastOfABurst)
{
    startWhole();
    pass(10);
    for (const char* const name : {"A", "Ac", "Acm"}) {
        rename(name);
        pass(1.5);
    }
    EXPECT_EQ(cycles(), 1);
    pass(0.5);
    EXPECT_EQ(cycles(), 2);
    EXPECT_TRUE(state().outbox.empty());
    EXPECT_EQ(cloud.deliveries.size(), 1U);
}

TEST_F(CloudSyncControllerTest, AChangeThatTouchesNoWaitingRevisionGoesNoFurther)
{
    startWhole();
    pass(10);
    store().applyRemoteSync({remote(renamedAcme("Theirs"))}, {}, state().changeToken);
    pass(10);
    EXPECT_EQ(cycles(), 1);
}

TEST_F(CloudSyncControllerTest, ARecordInConflictBeginsNoCycleWhenItIsSeenAgain)
{
    startWhole();
    cloud.failures.emplace("zone", CloudError("Busy."));
    rename("Ours");
    pass(3);
    EXPECT_EQ(cycles(), 2);
    store().applyRemoteSync({remote(renamedAcme("Theirs"))}, {}, state().changeToken);
    pass(10);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncControllerTest, WhatWaitedBeforeTheStartIsSeenTwoSecondsAfter)
{
    rename("Ours");
    cloud.isAvailable = false;
    controller->start();
    scheduler.turn();
    answerAll();
    cloud.isAvailable = true;
    pass(1.5);
    EXPECT_EQ(cycles(), 0);
    pass(0.5);
    EXPECT_EQ(cycles(), 1);
    EXPECT_TRUE(state().outbox.empty());
}

TEST_F(CloudSyncControllerTest, AChangeDuringACycleIsFollowedByAnotherAfterTheDebounce)
{
    startWhole();
    pass(10);
    rename("One");
    scheduler.advance(2);
    answerUntil("save");
    rename("Two");
    scheduler.advance(5); // The debounce finds the cycle busy.
    answerAll();
    EXPECT_EQ(cycles(), 2);
    EXPECT_EQ(status(), "Changes pending (1)");
    pass(1.5);
    EXPECT_EQ(cycles(), 2);
    pass(0.5);
    EXPECT_EQ(cycles(), 3);
    EXPECT_TRUE(state().outbox.empty());
    pass(20);
    EXPECT_EQ(cycles(), 3);
}

TEST_F(CloudSyncControllerTest, WhatTheStoreRefusesForGoodIsNotSentEveryTwoSeconds)
{
    startWhole();
    pass(10);
    cloud.onSave = [](ScriptedCloud::Results& results) { results[0].result = CloudError("No."); };
    rename("Ours");
    pass(45);
    EXPECT_EQ(cloud.deliveries.size(), 1U);
}

TEST_F(CloudSyncControllerTest, AServerThatAlwaysSaysChangedIsNotAskedEveryTwoSeconds)
{
    bring({stored(remote(renamedAcme("Theirs")))}, "c0");
    syncWhole();
    startWhole();
    pass(10);
    cloud.onSave = [](ScriptedCloud::Results& results) {
        results[0].result =
            CloudError::changed("Changed.", stored(remote(renamedAcme("Theirs")), "v9"));
    };
    rename("Ours");
    pass(45);
    EXPECT_EQ(cloud.deliveries.size(), 1U);
    EXPECT_EQ(status(), "Changes pending (1)");
}

// Stopping

TEST_F(CloudSyncControllerTest, StoppingDuringACycleEndsItAtTheNextCheckSilently)
{
    bring({stored(remote(renamedAcme("Theirs")))}, "c1");
    controller->start();
    scheduler.turn();
    answerUntil("changes");
    controller->stop();
    EXPECT_TRUE(isSyncing());
    answerAll();
    EXPECT_FALSE(isSyncing());
    EXPECT_EQ(status(), "Syncing");
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(ledger().clients.front().name, "Acme");
    EXPECT_TRUE(controller->isEnabled());
}

TEST_F(CloudSyncControllerTest, NothingRunsAfterStopping)
{
    startWhole();
    rename("Ours");
    scheduler.advance(1);
    changeAccount();
    controller->stop();
    EXPECT_TRUE(scheduler.isIdle());
    rename("Ours again");
    changeAccount();
    pass(300);
    EXPECT_EQ(cycles(), 1);
    EXPECT_TRUE(state().enabled);
}

TEST_F(CloudSyncControllerTest, StoppingTakesBackACycleThatHasNotBegun)
{
    startWhole();
    rename("Ours");
    scheduler.advance(1.999);
    controller->stop();
    pass(10);
    EXPECT_EQ(cycles(), 1);
}

TEST_F(CloudSyncControllerTest, ItCanBeStartedAgainAndPollsOnce)
{
    startWhole();
    controller->stop();
    controller->start();
    scheduler.turn();
    answerAll();
    EXPECT_EQ(cycles(), 2);
    pass(60);
    EXPECT_EQ(cycles(), 3);
}

TEST_F(CloudSyncControllerTest, StartedAgainDuringACycleItPollsOnce)
{
    controller->start();
    scheduler.turn();
    controller->stop();
    controller->start();
    scheduler.turn();
    answerAll();
    EXPECT_EQ(cycles(), 0);
    pass(60);
    EXPECT_EQ(cycles(), 1);
    pass(60);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncControllerTest, AControllerThatGoesTakesEverythingWithIt)
{
    startWhole();
    rename("Ours");
    scheduler.advance(2);
    answerUntil("save");
    EXPECT_GT(cloud.frames, 0);
    controller.reset();
    EXPECT_EQ(cloud.frames, 0);
    scheduler.turn();
    EXPECT_TRUE(scheduler.isIdle());
    rename("Ours again");
    changeAccount();
    EXPECT_TRUE(scheduler.isIdle());
}

// The user's switch

TEST_F(CloudSyncControllerTest, EnablingConnectsALedgerAndBeginsACycleAndThePolling)
{
    disconnect();
    bool isDone = false;
    controller->enable([&] { isDone = true; });
    EXPECT_TRUE(isSyncing());
    answerAll();
    EXPECT_TRUE(isDone);
    EXPECT_EQ(state().accountID, "account");
    EXPECT_EQ(state().deviceName, "Desk");
    EXPECT_EQ(state().environment, development);
    EXPECT_TRUE(state().outbox.empty());
    expectSuccess();
    pass(60);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncControllerTest, EnablingWithoutAnAccountAsksToSignIn)
{
    disconnect();
    cloud.isAvailable = false;
    enableWhole();
    expectFailure("Sign in to iCloud in Settings, then enable sync again.");
    EXPECT_FALSE(ledger().replication);
}

TEST_F(CloudSyncControllerTest, ABuildThatMayUseNoStoreCannotBeEnabled)
{
    disconnect();
    configure(false, development);
    enableWhole();
    expectFailure("This build needs iCloud signing and provisioning before sync can be enabled.");
    EXPECT_EQ(cloud.opened, 0);
}

TEST_F(CloudSyncControllerTest, EnablingRefusesAnotherAccountAndStaysOff)
{
    controller->disable();
    cloud.userName = "stranger";
    enableWhole();
    expectFailure("This ledger belongs to another iCloud account. Switch back before syncing; your "
                  "local data has been preserved.");
    EXPECT_FALSE(controller->isEnabled());
    pass(120);
    EXPECT_EQ(cycles(), 0);
}

TEST_F(CloudSyncControllerTest, EnablingNeedsANameForThisMachine)
{
    disconnect();
    hostName = " ";
    enableWhole();
    expectFailure("Sync needs an account and device name.");
}

TEST_F(CloudSyncControllerTest, EnablingShowsTheStoresFailure)
{
    disconnect();
    cloud.failures.emplace("name", CloudError("The server is busy.").retryingAfter(4.5));
    enableWhole();
    expectFailure("The server is busy. Retry in 5 seconds.");
}

TEST_F(CloudSyncControllerTest, EnablingDuringACycleDoesNothing)
{
    sync();
    bool isDone = false;
    controller->enable([&] { isDone = true; });
    EXPECT_TRUE(isDone);
    answerAll();
    EXPECT_EQ(cycles(), 1);
}

TEST_F(CloudSyncControllerTest, TurningOffWhileItIsEnabledStopsItSilently)
{
    disconnect();
    for (const char* const question : {"status", "name"}) {
        enable();
        answerUntil(question);
        controller->disable();
        answerAll();
        EXPECT_FALSE(ledger().replication);
        EXPECT_FALSE(isSyncing());
        EXPECT_EQ(failure(), "");
        EXPECT_EQ(status(), "iCloud sync is off");
    }
}

TEST_F(CloudSyncControllerTest, EnablingClearsTheFailureBeforeItsCycle)
{
    cloud.failures.emplace("zone", CloudError("Busy."));
    syncWhole();
    controller->disable();
    enable();
    answer();
    EXPECT_EQ(failure(), "Busy.");
    answer();
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(status(), "Syncing");
    answerAll();
    expectSuccess();
}

TEST_F(CloudSyncControllerTest, TurningOffKeepsTheLedgerAndGoesOnTracking)
{
    rename("Ours");
    controller->disable();
    EXPECT_EQ(status(), "iCloud sync is off");
    rename("Ours again");
    EXPECT_EQ(state().outbox.size(), 1U);
    startWhole();
    pass(120);
    EXPECT_TRUE(cloud.asked().empty());
    enableWhole();
    EXPECT_TRUE(state().outbox.empty());
}

TEST_F(CloudSyncControllerTest, WhatCannotBeSavedAsOffStaysOffUntilItIsEnabled)
{
    startWhole();
    files.failCallsFrom(1, EIO);
    controller->disable();
    files.heal();
    EXPECT_TRUE(state().enabled);
    EXPECT_EQ(status(), "iCloud sync is off");
    EXPECT_NE(errorMessage(), "");
    pass(120);
    EXPECT_EQ(cycles(), 1);
    enableWhole();
    EXPECT_EQ(cycles(), 2);
}

// A conflict

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

// The account

TEST_F(CloudSyncControllerTest, AnAccountThatChangesSuspendsUntilItIsVerified)
{
    startWhole();
    changeAccount();
    scheduler.turn();
    EXPECT_EQ(status(), accountChanged);
    EXPECT_FALSE(controller->isEnabled());
    EXPECT_FALSE(state().enabled);
    pass(120);
    EXPECT_EQ(cycles(), 1);
    EXPECT_EQ(status(), accountChanged);
    enableWhole();
    EXPECT_TRUE(controller->isEnabled());
    expectSuccess();
}

TEST_F(CloudSyncControllerTest, TheDifferentAccountIsRefusedThen)
{
    startWhole();
    cloud.userName = "stranger";
    changeAccount();
    scheduler.turn();
    EXPECT_EQ(status(), accountChanged);
    enableWhole();
    expectFailure("This ledger belongs to another iCloud account. Switch back before syncing; your "
                  "local data has been preserved.");
    EXPECT_FALSE(controller->isEnabled());
}

TEST_F(CloudSyncControllerTest, AnAccountThatChangesDuringACycleEndsItSilently)
{
    bring({stored(remote(renamedAcme("Theirs")))}, "c1");
    controller->start();
    scheduler.turn();
    answerUntil("changes");
    cloud.isAvailable = false;
    changeAccount();
    scheduler.turn();
    answerAll();
    EXPECT_EQ(status(), accountChanged);
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(ledger().clients.front().name, "Acme");
}

TEST_F(CloudSyncControllerTest, ALedgerThatWasNeverConnectedIsSuspendedToo)
{
    disconnect();
    controller->start();
    changeAccount();
    scheduler.turn();
    EXPECT_EQ(status(), accountChanged);
    EXPECT_FALSE(ledger().replication);
}

TEST_F(CloudSyncControllerTest, AnAccountThatChangesBackAtOnceHasChangedAllTheSame)
{
    disconnect();
    controller->start();
    controller->enable();
    scheduler.turn();
    answerUntil("name");
    changeAccount();
    cloud.userName = "stranger";
    cloud.answer();
    changeAccount();
    scheduler.turn();
    EXPECT_FALSE(ledger().replication) << "the ledger belongs to a stranger";
    EXPECT_EQ(status(), accountChanged);
}

TEST_F(CloudSyncControllerTest, AnAccountThatChangesAfterANewStartSuspends)
{
    startWhole();
    changeAccount();
    controller->stop();
    controller->start();
    scheduler.turn();
    answerAll();
    changeAccount();
    scheduler.turn();
    EXPECT_EQ(status(), accountChanged);
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

} // namespace
} // namespace KestryCore
