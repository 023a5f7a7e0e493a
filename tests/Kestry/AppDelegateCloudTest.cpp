#include "AppDelegate.h"

#include <gtest/gtest.h>

#include <memory>

#include "ApplicationWorld.h"
#include "FakePanels.h"
#include "ScriptedCloud.h"

namespace Kestry {
namespace {

using KestryCore::CloudSyncEnvironment;

/// The application with a cloud that answers when told to.
class AppDelegateCloudTest : public ::testing::Test {
protected:
    void launch(const KestryCore::StoreOptions& options)
    {
        app.reset();
        AppDelegate::Platform platform{
            world.storePlatform(), world.scheduler, world.defaults, [this] { ++quits; }};
        platform.cloud = {{"sqlite:/cloud", true, CloudSyncEnvironment::development},
            [this](const std::string& identifier) { return cloud.open(identifier); },
            [] { return "Desk"; },
            [this](const std::function<void()>& observer) {
                return account.observe([observer](int) { observer(); });
            }};
        platform.store.steady = [this] { return world.scheduler.now() + slept; };
        app = std::make_unique<AppDelegate>(platform, options);
        app->state().installOpenDashboard([] {});
        app->didFinishLaunching(panels);
    }
    /// Launched, with replication on and in step.
    void launchInStep()
    {
        launch(world.onDisk());
        addClient(app->store(), "Aster");
        app->cloudSync().enable();
        answerAll();
        launch(world.onDisk());
        answerAll();
    }
    void answerAll()
    {
        world.scheduler.turn();
        while (!cloud.waiting().empty()) {
            cloud.answer();
            world.scheduler.turn();
        }
    }
    [[nodiscard]] int cycles() const { return cloud.times("changes"); }
    /// Asks the program to make way for its successor.
    void handOver()
    {
        const std::string token = KestryCore::Uuid::random().text();
        QFile request(world.directory.filePath("update-request"));
        ASSERT_TRUE(request.open(QIODevice::WriteOnly));
        request.write(QByteArray::fromStdString(token));
        request.close();
        app->open({"kestry://update?token=" + token});
    }

    ApplicationWorld world;
    FakePanels panels;
    KestryCore::ScriptedCloud cloud{world.scheduler};
    KestryCore::Observable<int> account;
    int quits = 0;
    double slept = 0.0; ///< Seconds that the machine has slept.
    std::unique_ptr<AppDelegate> app;
};

TEST_F(AppDelegateCloudTest, ALaunchExchangesRecordsAtOnce)
{
    launchInStep();
    const int before = cycles();
    launch(world.onDisk());
    answerAll();
    EXPECT_EQ(cycles(), before + 1);
}

TEST_F(AppDelegateCloudTest, ADemoNeverDoes)
{
    launch(ApplicationWorld::inMemory());
    world.scheduler.advance(300);
    answerAll();
    EXPECT_EQ(cloud.opened, 0);
}

TEST_F(AppDelegateCloudTest, ComingToTheProgramExchangesRecords)
{
    launchInStep();
    const int before = cycles();
    app->didBecomeActive();
    answerAll();
    EXPECT_EQ(cycles(), before + 1);
}

TEST_F(AppDelegateCloudTest, AQuitEndsTheExchangeUnderWay)
{
    launchInStep();
    app->didBecomeActive();
    world.scheduler.turn();
    ASSERT_EQ(app->shouldTerminate(), TerminateReply::terminateNow);
    app->willTerminate();
    const auto before = *app->store().data();
    answerAll();
    EXPECT_EQ(*app->store().data(), before);
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(AppDelegateCloudTest, AnotherAccountIsToldAndTheFirstOneIsNone)
{
    launch(world.onDisk());
    account.assign(1);
    world.scheduler.turn();
    EXPECT_EQ(*app->cloudSync().fields().status, "iCloud sync is off");
    launchInStep();
    account.assign(2);
    world.scheduler.turn();
    EXPECT_EQ(*app->cloudSync().fields().status,
        "iCloud account changed. Enable sync to verify your original account.");
}

TEST_F(AppDelegateCloudTest, TheFirstAccountEndsWhatWentWrongWithoutOne)
{
    launch(world.onDisk());
    cloud.isAvailable = false;
    app->cloudSync().enable();
    answerAll();
    ASSERT_TRUE(app->cloudSync().fields().errorMessage->has_value());
    account.assign(1);
    EXPECT_EQ(*app->cloudSync().fields().errorMessage, std::nullopt);
    EXPECT_EQ(*app->cloudSync().fields().status, "iCloud sync is off");
}

TEST_F(AppDelegateCloudTest, TheFirstAccountIsAChangeForALedgerThatIsBeingConnected)
{
    launch(world.onDisk());
    app->cloudSync().enable();
    world.scheduler.turn();
    account.assign(1);
    answerAll();
    EXPECT_FALSE(app->store().data()->replication);
}

TEST_F(AppDelegateCloudTest, AHandoffEndsTheExchangeUnderWayAndThePolling)
{
    launchInStep();
    const int before = cycles();
    app->didBecomeActive();
    world.scheduler.turn();
    ASSERT_FALSE(cloud.waiting().empty());
    handOver();
    EXPECT_EQ(quits, 1);
    answerAll();
    EXPECT_FALSE(*app->cloudSync().fields().isSyncing);
    world.scheduler.advance(300);
    answerAll();
    EXPECT_EQ(cycles(), before);
}

TEST_F(AppDelegateCloudTest, AfterAHandoffThatFailsRecordsAreExchangedAgain)
{
    launchInStep();
    // The handoff cannot be written where a folder is.
    ASSERT_TRUE(QDir().mkpath(world.directory.filePath("update-handoff.json/folder")));
    const int before = cycles();
    handOver();
    EXPECT_EQ(quits, 0);
    answerAll();
    EXPECT_EQ(cycles(), before + 1);
    world.scheduler.advance(60);
    answerAll();
    EXPECT_EQ(cycles(), before + 2);
}

TEST_F(AppDelegateCloudTest, WakingExchangesRecordsWhenThatFellDueInTheSleep)
{
    launchInStep();
    const int before = cycles();
    app->didWake();
    answerAll();
    EXPECT_EQ(cycles(), before);
    slept = 8 * 3600.0;
    app->didWake();
    answerAll();
    EXPECT_EQ(cycles(), before + 1);
}

TEST_F(AppDelegateCloudTest, ReplicationThatIsOffNeverWakesTheProgram)
{
    launchInStep();
    app->cloudSync().disable();
    world.scheduler.advance(61);
    EXPECT_TRUE(world.scheduler.isIdle());
}

} // namespace
} // namespace Kestry
