// When the controller exchanges records, and when it stops.

#include "ControllerFixture.h"

namespace KestryCore {
namespace {

class CloudSyncScheduleTest : public ControllerFixture { };

// Polling

TEST_F(CloudSyncScheduleTest, StartingBeginsACycleAtOnceAndThenEveryMinute)
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

TEST_F(CloudSyncScheduleTest, TheMinuteBeginsWhenACycleIsOver)
{
    controller->start();
    scheduler.advance(30);
    answerAll();
    pass(59.5);
    EXPECT_EQ(cycles(), 1);
    pass(0.5);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncScheduleTest, StartingTwiceAddsNothing)
{
    startWhole();
    controller->start();
    pass(60);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncScheduleTest, WhileItIsOffItNeverWakesTheMachine)
{
    controller->disable();
    startWhole();
    EXPECT_TRUE(scheduler.isIdle());
    rename("Acme Ltd");
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(CloudSyncScheduleTest, TurnedOffWhileItWaitsItStopsWaiting)
{
    startWhole();
    EXPECT_FALSE(scheduler.isIdle());
    controller->disable();
    pass(2);
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(CloudSyncScheduleTest, PollingResumesByItselfOnceItIsOnAgain)
{
    controller->disable();
    startWhole();
    pass(180);
    EXPECT_EQ(cycles(), 0);
    store().beginSync("account", "Desk", development);
    pass(60);
    EXPECT_EQ(cycles(), 1);
}

TEST_F(CloudSyncScheduleTest, AfterANightsSleepACycleComesAtOnce)
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

TEST_F(CloudSyncScheduleTest, AShortSleepCountsTowardsTheMinute)
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

TEST_F(CloudSyncScheduleTest, WakingBeforeItIsStartedDoesNothing)
{
    controller->machineWoke();
    pass(120);
    EXPECT_EQ(cycles(), 0);
}

// Local changes

TEST_F(CloudSyncScheduleTest, ALocalChangeGoesOutTwoSecondsAfterTheLastOfABurst)
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

TEST_F(CloudSyncScheduleTest, AChangeThatTouchesNoWaitingRevisionGoesNoFurther)
{
    startWhole();
    pass(10);
    store().applyRemoteSync({remote(renamedAcme("Theirs"))}, {}, state().changeToken);
    pass(10);
    EXPECT_EQ(cycles(), 1);
}

TEST_F(CloudSyncScheduleTest, ARecordInConflictBeginsNoCycleWhenItIsSeenAgain)
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

TEST_F(CloudSyncScheduleTest, WhatWaitedBeforeTheStartIsSeenTwoSecondsAfter)
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

TEST_F(CloudSyncScheduleTest, AChangeDuringACycleIsFollowedByAnotherAfterTheDebounce)
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

TEST_F(CloudSyncScheduleTest, WhatTheStoreRefusesForGoodIsNotSentEveryTwoSeconds)
{
    startWhole();
    pass(10);
    cloud.onSave = [](ScriptedCloud::Results& results) { results[0].result = CloudError("No."); };
    rename("Ours");
    pass(45);
    EXPECT_EQ(cloud.deliveries.size(), 1U);
}

TEST_F(CloudSyncScheduleTest, AServerThatAlwaysSaysChangedIsNotAskedEveryTwoSeconds)
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

TEST_F(CloudSyncScheduleTest, StoppingDuringACycleEndsItAtTheNextCheckSilently)
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

TEST_F(CloudSyncScheduleTest, NothingRunsAfterStopping)
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

TEST_F(CloudSyncScheduleTest, StoppingTakesBackACycleThatHasNotBegun)
{
    startWhole();
    rename("Ours");
    scheduler.advance(1.999);
    controller->stop();
    pass(10);
    EXPECT_EQ(cycles(), 1);
}

TEST_F(CloudSyncScheduleTest, ItCanBeStartedAgainAndPollsOnce)
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

TEST_F(CloudSyncScheduleTest, StartedAgainDuringACycleItPollsOnce)
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

TEST_F(CloudSyncScheduleTest, AControllerThatGoesTakesEverythingWithIt)
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

} // namespace
} // namespace KestryCore
