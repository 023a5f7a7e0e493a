#include "AppDelegate.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "ApplicationWorld.h"
#include "FakePanels.h"
#include "FakeUpdateFramework.h"

namespace Kestry {
namespace {

/// While it lives the process can open no file.
class NoDescriptors {
public:
    NoDescriptors()
    {
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit none{0, before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
};

class AppDelegateTest : public ::testing::Test {
protected:
    /// Starts the application over the test's directory, once more if it ran already.
    void launch()
    {
        app.reset();
        KestryCore::StoreOptions options = world.onDisk();
        options.lock = lock;
        app = std::make_unique<AppDelegate>(
            AppDelegate::Platform{{world.files, [this] { return world.now() + clockOffset; }},
                world.scheduler, world.defaults, [this] { ++quits; }, "", {}, updates},
            options);
        app->state().installOpenDashboard([this] { ++dashboards; });
        app->didFinishLaunching(panels);
    }
    void launchWithRunningSession()
    {
        launch();
        store().start(addClient(store(), "Aster"), std::nullopt, "", world.now());
    }
    /// In a build that has updates.
    void launchWithUpdates()
    {
        updates = {{.feed = UpdateFeed{"https://updates.example/", {}}},
            FakeUpdateFramework::factory(witness)};
        launch();
    }
    /// The framework has laid down an update, and may relaunch.
    void requestInstallation()
    {
        EXPECT_TRUE(witness.framework->delegate->shouldRelaunchApplication());
    }
    [[nodiscard]] std::string updateStatus() const { return *app->updater().fields().status; }
    [[nodiscard]] KestryCore::TimeStore& store() { return app->store(); }
    [[nodiscard]] const KestryCore::ActiveSession& session() { return *store().data()->active; }

    ApplicationWorld world;
    FakePanels panels;
    int dashboards = 0;
    int quits = 0;
    double clockOffset = 0;                       ///< By which the clock is set differently.
    std::shared_ptr<KestryCore::WriterLock> lock; ///< None unless a test is about it.
    FakeUpdateFramework::Witness witness;
    AppDelegate::Updates updates; ///< None unless a test is about them.
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

TEST_F(AppDelegateTest, ACheckpointWithoutDescriptorsIsTheOnlyThingThatFails)
{
    launchWithRunningSession();
    {
        const NoDescriptors none;
        world.scheduler.advance(15);
    }
    EXPECT_EQ(*store().errorMessage(), "ledger.json could not be read: Too many open files.");
    EXPECT_FALSE(store().blocked());
    world.scheduler.advance(15);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 30);
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    EXPECT_TRUE(session().isPaused());
}

TEST_F(AppDelegateTest, ALedgerThatCannotBeReadForTheMomentIsOpenedByItself)
{
    launchWithRunningSession();
    world.scheduler.advance(15);
    {
        const NoDescriptors none;
        launch();
        world.scheduler.advance(5);
        EXPECT_TRUE(store().blocked());
        EXPECT_TRUE(store().data()->clients.empty());
    }
    world.scheduler.advance(5);
    EXPECT_FALSE(store().blocked());
    EXPECT_EQ(*store().errorMessage(), std::nullopt);
    EXPECT_EQ(store().elapsed(world.now()), 15);
    EXPECT_TRUE(world.scheduler.isIdle());
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

TEST_F(AppDelegateTest, AQuitFinishesWhatHasBegun)
{
    launchWithRunningSession();
    int finished = 0;
    app->installLastWork([&] { return ++finished > 0; });
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    EXPECT_EQ(finished, 1);
    EXPECT_TRUE(session().isPaused());
}

TEST_F(AppDelegateTest, AQuitThatCannotFinishWhatHasBegunIsCancelledAndOpensTheWindow)
{
    launchWithRunningSession();
    app->installLastWork([] { return false; });
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::cancel);
    EXPECT_EQ(dashboards, 1);
    EXPECT_FALSE(session().isPaused());
    EXPECT_EQ(quits, 0);
}

TEST_F(AppDelegateTest, QuitAndSleepWriteTheTitleThatIsTypedFirst)
{
    launchWithRunningSession();
    std::string typed = "Drawing";
    app->commander().installTitleWriter(
        [&] { return app->commander().renameSession(session().id, typed); });
    app->willSleep();
    EXPECT_EQ(session().title, "Drawing");
    typed = "Drawings";
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    EXPECT_EQ(session().title, "Drawings");
}

/// The application with a session running, claimed directory and all, which somebody moves.
class AppDelegateInAMovedDirectory : public AppDelegateTest {
protected:
    AppDelegateInAMovedDirectory()
    {
        lock = std::make_shared<KestryCore::WriterLock>(
            world.files, world.directory.path().toStdString());
        EXPECT_TRUE(lock->acquire());
        launchWithRunningSession();
        move(world.directory.path(), elsewhere());
    }
    ~AppDelegateInAMovedDirectory() override { QDir(elsewhere()).removeRecursively(); }

    static void move(const QString& from, const QString& to)
    {
        EXPECT_TRUE(QDir().rename(from, to));
    }
    [[nodiscard]] QString elsewhere() const { return world.directory.path() + "-moved"; }

    const std::string astray =
        "The data directory has been moved, replaced or removed since it was opened, so nothing "
        "was saved. Put it back, or start Kestry again to use what is there now.";
};

TEST_F(AppDelegateInAMovedDirectory, EveryCheckpointSaysSo)
{
    world.scheduler.advance(15);
    EXPECT_EQ(*store().errorMessage(), astray);
    EXPECT_FALSE(QDir(world.directory.path()).exists());
}

TEST_F(AppDelegateInAMovedDirectory, TheFirstQuitIsCancelledAndTheSecondLeavesWithoutSaving)
{
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::cancel);
    EXPECT_EQ(dashboards, 1);
    EXPECT_EQ(*store().errorMessage(),
        astray + " To quit all the same, and lose the time since the last save, quit once more.");
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    EXPECT_FALSE(session().isPaused());
}

TEST_F(AppDelegateInAMovedDirectory, AQuitAfterItsReturnIsAnOrdinaryOne)
{
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::cancel);
    move(elsewhere(), world.directory.path());
    world.scheduler.advance(15);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 15);
    move(world.directory.path(), elsewhere());
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::cancel);
    move(elsewhere(), world.directory.path());
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    EXPECT_TRUE(session().isPaused());
}

TEST_F(AppDelegateInAMovedDirectory, AnUpdateIsNotStartedAndItsRequestStays)
{
    ASSERT_TRUE(QDir().mkpath(world.directory.path()));
    const KestryCore::Uuid token = KestryCore::Uuid::random();
    QFile request(world.directory.filePath("update-request"));
    ASSERT_TRUE(request.open(QIODevice::WriteOnly));
    request.write(QByteArray::fromStdString(token.text()));
    request.close();
    app->open({"kestry://update?token=" + token.text()});
    EXPECT_EQ(*store().errorMessage(),
        "The update could not start. Your session is still running: " + astray);
    EXPECT_TRUE(request.exists());
    EXPECT_EQ(quits, 0);
}

TEST_F(AppDelegateTest, AQuitThatCannotSaveIsCancelledWithoutAWindowToo)
{
    launchWithRunningSession();
    app->state().installOpenDashboard({});
    world.damageLedger();
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::cancel);
}

TEST_F(AppDelegateTest, TheEndOfTheDisplayPausesARunningSessionAsAQuitDoes)
{
    launchWithRunningSession();
    world.scheduler.advance(7);
    EXPECT_TRUE(app->leaveWithDisplay());
    launch();
    EXPECT_TRUE(session().isPaused());
    EXPECT_FALSE(*store().recoveredSession());
    EXPECT_EQ(store().elapsed(world.now()), 7);
}

TEST_F(AppDelegateTest, AfterAQuitTheEndOfTheDisplayWritesNothing)
{
    launchWithRunningSession();
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    const QByteArray before = world.ledgerBytes();
    EXPECT_TRUE(app->leaveWithDisplay());
    EXPECT_EQ(world.ledgerBytes(), before);
}

TEST_F(AppDelegateTest, APauseThatFailsAtTheEndOfTheDisplayIsToldAndOpensNoWindow)
{
    launchWithRunningSession();
    world.damageLedger();
    EXPECT_FALSE(app->leaveWithDisplay());
    EXPECT_EQ(dashboards, 0);
    EXPECT_TRUE(*store().errorMessage());
    EXPECT_FALSE(session().isPaused());
}

TEST_F(AppDelegateTest, NothingTicksWhileNothingRuns)
{
    launch();
    EXPECT_TRUE(world.scheduler.isIdle());
    store().start(addClient(store(), "Aster"), std::nullopt, "", world.now());
    EXPECT_FALSE(world.scheduler.isIdle());
    store().pause(world.now());
    EXPECT_TRUE(world.scheduler.isIdle());
    store().resume(world.now());
    EXPECT_FALSE(world.scheduler.isIdle());
    store().stop(world.now());
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(AppDelegateTest, TheTicksCountFromTheStartOfTheSessionWheneverThatIs)
{
    launch();
    world.scheduler.advance(7);
    store().start(addClient(store(), "Aster"), std::nullopt, "", world.now());
    world.scheduler.advance(15);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 22);
    store().renameActiveSession(session().id, "Sketches");
    world.scheduler.advance(15);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 37);
}

TEST_F(AppDelegateTest, ASessionStartedInThePastIsCheckpointedAtOnceAndThenRegularly)
{
    launch();
    store().start(addClient(store(), "Aster"), std::nullopt, "", world.now() + -3600.0);
    world.scheduler.turn();
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning);
    world.scheduler.advance(15);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 15);
}

TEST_F(AppDelegateTest, WithTheClockSetBackTicksFailUntilItCatchesUp)
{
    launchWithRunningSession();
    clockOffset = -40;
    for (int tick = 0; tick < 2; ++tick) {
        world.scheduler.advance(15);
        EXPECT_EQ(*store().errorMessage(), "Checkpoint cannot move backwards.");
        EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning);
    }
    world.scheduler.advance(15);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 5);
}

TEST_F(AppDelegateTest, SleepPausesARunningSessionAndASecondOneFindsItPaused)
{
    launchWithRunningSession();
    world.scheduler.advance(7);
    app->willSleep();
    EXPECT_EQ(store().elapsed(world.now()), 7);
    EXPECT_TRUE(session().isPaused());
    const QByteArray before = world.ledgerBytes();
    world.scheduler.advance(7);
    app->willSleep();
    EXPECT_EQ(world.ledgerBytes(), before);
    EXPECT_EQ(*store().errorMessage(), std::nullopt);
}

TEST_F(AppDelegateTest, SleepWithNothingInProgressWritesNothing)
{
    launch();
    app->willSleep();
    EXPECT_TRUE(QDir(world.directory.path()).isEmpty());
}

TEST_F(AppDelegateTest, APauseThatFailsBeforeSleepIsToldAndTheSessionRunsOn)
{
    launchWithRunningSession();
    world.damageLedger();
    app->willSleep();
    EXPECT_FALSE(session().isPaused());
    EXPECT_TRUE(*store().errorMessage());
}

TEST_F(AppDelegateTest, AQuitEndsTheLoopUnlessItIsCancelled)
{
    launchWithRunningSession();
    world.damageLedger();
    app->terminate();
    EXPECT_EQ(quits, 0);
    launch();
    app->terminate();
    EXPECT_EQ(quits, 1);
}

TEST_F(AppDelegateTest, StartingTheProgramAgainOpensTheWindow)
{
    launch();
    app->reopen();
    EXPECT_EQ(dashboards, 1);
}

TEST_F(AppDelegateTest, ActionsFromOutsideDriveTheSession)
{
    launch();
    addClient(store(), "Aster");
    app->commander().perform(DesktopAction::stop);
    EXPECT_FALSE(store().data()->active);
    app->commander().perform(DesktopAction::start);
    const auto started = session().id;
    app->commander().perform(DesktopAction::start);
    EXPECT_EQ(session().id, started);
    app->commander().perform(DesktopAction::toggle);
    EXPECT_TRUE(session().isPaused());
    app->commander().perform(DesktopAction::toggle);
    EXPECT_FALSE(session().isPaused());
    app->commander().perform(DesktopAction::stop);
    EXPECT_FALSE(store().data()->active);
    app->commander().perform(DesktopAction::toggle);
    EXPECT_FALSE(session().isPaused());
    app->commander().perform(DesktopAction::showControls);
    EXPECT_TRUE(panels.isFront[NotchPanel::detail]);
}

TEST_F(AppDelegateTest, AnActionThatFailsIsTold)
{
    launchWithRunningSession();
    world.damageLedger();
    app->commander().perform(DesktopAction::stop);
    EXPECT_TRUE(*store().errorMessage());
    EXPECT_TRUE(store().data()->active);
}

TEST_F(AppDelegateTest, StartingWithoutClientsAsksForOne)
{
    launch();
    app->commander().perform(DesktopAction::start);
    EXPECT_EQ(*app->state().editor, Editor{Editor::ClientForm{}});
    EXPECT_EQ(dashboards, 1);
}

TEST_F(AppDelegateTest, NothingTicksAfterTheEnd)
{
    launchWithRunningSession();
    app->willTerminate();
    EXPECT_TRUE(world.scheduler.isIdle());
}

// Updates installed from inside the program.

const std::string unfinishedWorkWords =
    "Save your changes and finish the current session before installing an update.";

TEST_F(AppDelegateTest, TheUpdaterIsConfiguredAtTheStart)
{
    launchWithUpdates();
    EXPECT_EQ(updateStatus(), "Updates are ready to check.");
    EXPECT_EQ(witness.made, 1);
}

TEST_F(AppDelegateTest, ABuildWithoutUpdatesSaysSo)
{
    launch();
    EXPECT_EQ(updateStatus(), "Software updates are not enabled in this build.");
}

TEST_F(AppDelegateTest, AnUpdateQuitsTheApplication)
{
    launchWithUpdates();
    requestInstallation();
    EXPECT_TRUE(witness.setup.terminate());
    EXPECT_EQ(quits, 1);
}

TEST_F(AppDelegateTest, ASessionThatBeganSinceKeepsTheApplicationAndItselfRunning)
{
    launchWithUpdates();
    requestInstallation();
    store().start(addClient(store(), "Aster"), std::nullopt, "", world.now());
    EXPECT_FALSE(witness.setup.terminate());
    EXPECT_EQ(quits, 0);
    EXPECT_FALSE(session().isPaused());
    EXPECT_EQ(updateStatus(), unfinishedWorkWords);
    EXPECT_EQ(*app->updater().fields().errorMessage, unfinishedWorkWords);
}

TEST_F(AppDelegateTest, AQuitAfterARefusedUpdateIsAnOrdinaryOne)
{
    launchWithUpdates();
    requestInstallation();
    store().start(addClient(store(), "Aster"), std::nullopt, "", world.now());
    EXPECT_FALSE(witness.setup.terminate());
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    EXPECT_TRUE(session().isPaused());
}

TEST_F(AppDelegateTest, TheUpdateIsRefusedBeforeAnythingElseIsDone)
{
    launchWithUpdates();
    requestInstallation();
    bool hasWorked = false;
    app->installLastWork([&] { return hasWorked = true; });
    app->state().sessionTitle.assign("Type & color");
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::cancel);
    EXPECT_FALSE(hasWorked);
    EXPECT_EQ(dashboards, 0);
}

TEST_F(AppDelegateTest, AnOpenEditorRefusesTheUpdateToo)
{
    launchWithUpdates();
    requestInstallation();
    app->state().editor.assign(Editor{Editor::ClientForm{}});
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::cancel);
    EXPECT_TRUE(*app->state().editor);
}

TEST_F(AppDelegateTest, TheEndOfTheDisplayIsNotRefusedForAnUpdate)
{
    launchWithUpdates();
    requestInstallation();
    store().start(addClient(store(), "Aster"), std::nullopt, "", world.now());
    EXPECT_TRUE(app->leaveWithDisplay());
    EXPECT_TRUE(session().isPaused());
}

TEST_F(AppDelegateTest, AnUpdateThatTheDiskRefusesTheQuitOfAsksForNothingAnyMore)
{
    launchWithUpdates();
    requestInstallation();
    app->installLastWork([] { return false; });
    EXPECT_FALSE(witness.setup.terminate());
    app->installLastWork({});
    store().start(addClient(store(), "Aster"), std::nullopt, "", world.now());
    EXPECT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
}

} // namespace
} // namespace Kestry
