#include "AppDelegate.h"

#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "FakePanels.h"

namespace Kestry {
namespace {

class AppDelegateTest : public ::testing::Test {
protected:
    /// Starts the application over the test's directory, once more if it ran already.
    void launch()
    {
        app.reset();
        app = std::make_unique<AppDelegate>(
            AppDelegate::Platform{world.storePlatform(), world.scheduler, world.defaults},
            world.onDisk());
        app->state().installOpenDashboard([this] { ++dashboards; });
        app->didFinishLaunching(panels);
    }
    void launchWithRunningSession()
    {
        launch();
        store().start(addClient(store(), "Aster"), std::nullopt, "", world.now());
    }
    [[nodiscard]] KestryCore::TimeStore& store() { return app->store(); }
    [[nodiscard]] const KestryCore::ActiveSession& session() { return *store().data()->active; }

    ApplicationWorld world;
    FakePanels panels;
    int dashboards = 0;
    std::unique_ptr<AppDelegate> app;
};

TEST_F(AppDelegateTest, TheStripShowsAtTheStart)
{
    launch();
    EXPECT_TRUE(panels.isFront[NotchPanel::bridge]);
    EXPECT_EQ(dashboards, 0);
}

TEST_F(AppDelegateTest, AStripThatIsSwitchedOffStaysAwayUntilItIsToggled)
{
    world.defaults.values["notchEnabled"] = false;
    launch();
    EXPECT_FALSE(panels.isFront[NotchPanel::bridge]);
    app->state().toggleNotch();
    EXPECT_TRUE(panels.isFront[NotchPanel::bridge]);
    EXPECT_TRUE(panels.isFront[NotchPanel::detail]);
    EXPECT_TRUE(world.defaults.values["notchEnabled"]);
}

TEST_F(AppDelegateTest, TheStripCanBeShownAndHidden)
{
    launch();
    app->state().setNotchVisible(false);
    EXPECT_FALSE(panels.isFront[NotchPanel::bridge]);
    app->state().setNotchVisible(true);
    EXPECT_TRUE(panels.isFront[NotchPanel::bridge]);
}

TEST_F(AppDelegateTest, PressingTheStripOpensTheWindow)
{
    launch();
    panels.events->openApp();
    EXPECT_EQ(dashboards, 1);
}

TEST_F(AppDelegateTest, StartingMakesNoFile)
{
    launch();
    world.scheduler.advance(60);
    EXPECT_TRUE(QDir(world.directory.path()).isEmpty());
}

TEST_F(AppDelegateTest, ARunningSessionIsCheckpointedEveryFifteenSeconds)
{
    launchWithRunningSession();
    world.scheduler.advance(14.9);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning);
    world.scheduler.advance(0.2);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 15);
    world.scheduler.advance(15);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 30);
}

TEST_F(AppDelegateTest, ACrashLosesTheTimeSinceTheLastCheckpointAndNoMore)
{
    launchWithRunningSession();
    world.scheduler.advance(44);
    launch();
    EXPECT_TRUE(session().isPaused());
    EXPECT_EQ(store().elapsed(world.now()), 30);
    EXPECT_TRUE(*store().recoveredSession());
}

TEST_F(AppDelegateTest, APausedSessionGetsNoCheckpoint)
{
    launchWithRunningSession();
    store().pause(world.now());
    const QByteArray before = world.ledgerBytes();
    world.scheduler.advance(60);
    EXPECT_EQ(world.ledgerBytes(), before);
}

TEST_F(AppDelegateTest, AFailedCheckpointIsReportedAndTheNextOneTriesAgain)
{
    launchWithRunningSession();
    store().checkpoint(world.now() + 20);
    world.scheduler.advance(15);
    EXPECT_EQ(*store().errorMessage(), "Checkpoint cannot move backwards.");
    world.scheduler.advance(15);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 30);
}

TEST_F(AppDelegateTest, AnOrdinaryQuitPausesARunningSession)
{
    launchWithRunningSession();
    world.scheduler.advance(7);
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    EXPECT_TRUE(session().isPaused());
    EXPECT_EQ(store().elapsed(world.now()), 7);
    launch();
    EXPECT_FALSE(*store().recoveredSession());
    EXPECT_EQ(store().elapsed(world.now()), 7);
}

TEST_F(AppDelegateTest, AQuitWhilePausedWritesNothing)
{
    launchWithRunningSession();
    store().pause(world.now());
    const QByteArray before = world.ledgerBytes();
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    EXPECT_EQ(world.ledgerBytes(), before);
}

TEST_F(AppDelegateTest, AQuitWithNothingInProgressGoesThrough)
{
    launch();
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    EXPECT_TRUE(QDir(world.directory.path()).isEmpty());
}

TEST_F(AppDelegateTest, AQuitThatCannotSaveIsCancelledAndOpensTheWindow)
{
    launchWithRunningSession();
    world.damageLedger();
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::cancel);
    EXPECT_EQ(dashboards, 1);
    EXPECT_FALSE(session().isPaused());
    EXPECT_EQ(*store().errorMessage(),
        "The ledger on disk could not be read. It has been preserved. Restore the last backup in "
        "Settings if available.");
}

TEST_F(AppDelegateTest, AQuitThatCannotSaveIsCancelledWithoutAWindowToo)
{
    launchWithRunningSession();
    app->state().installOpenDashboard({});
    world.damageLedger();
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::cancel);
}

TEST_F(AppDelegateTest, NothingTicksAfterTheEnd)
{
    launchWithRunningSession();
    app->willTerminate();
    EXPECT_TRUE(world.scheduler.isIdle());
}

} // namespace
} // namespace Kestry
