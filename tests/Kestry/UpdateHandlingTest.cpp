#include <gtest/gtest.h>

#include <cerrno>

#include "AppDelegate.h"
#include "ApplicationWorld.h"
#include "FakePanels.h"
#include "LedgerCoding.h"
#include "MemoryFileSystem.h"
#include "UpdateHandoff.h"

namespace Kestry {
namespace {

const std::string tokenText = "0F5B7A52-3C11-4E0B-9A63-6C1D2B7E8F90";
const KestryCore::Uuid token = *KestryCore::Uuid::parse(tokenText);
const std::string updateUrl = "kestry://update?token=" + tokenText;

/// The application on a disk in memory, where every call can be made to fail.
class UpdateHandling : public testing::Test {
protected:
    UpdateHandling()
    {
        files.putDirectory("/home/ledger");
        options.directory = "/home/ledger";
    }

    void launch()
    {
        app.reset();
        const AppDelegate::Platform platform{{files, [this] { return now(); }}, scheduler, defaults,
            [this] { ++quits; }, "/opt/kestry"};
        app = std::make_unique<AppDelegate>(platform, options);
        app->state().installOpenDashboard([this] { ++dashboards; });
        app->didFinishLaunching(panels);
    }
    void launchWithRunningSession()
    {
        launch();
        store().start(addClient(store(), "Aster"), std::nullopt, "", now());
        scheduler.advance(5);
    }
    void relaunch(const std::optional<KestryCore::Uuid>& withToken)
    {
        options.updateToken = withToken;
        launch();
    }
    void request() { files.put(path("update-request"), tokenText + "\n"); }
    void handOver()
    {
        request();
        app->open({updateUrl});
    }

    [[nodiscard]] static std::string path(const std::string& name)
    {
        return "/home/ledger/" + name;
    }
    [[nodiscard]] KestryCore::Date now() const
    {
        return ApplicationWorld::morning + scheduler.now();
    }
    [[nodiscard]] KestryCore::TimeStore& store() { return app->store(); }
    [[nodiscard]] const KestryCore::ActiveSession& session() { return *store().data()->active; }
    [[nodiscard]] std::string message() { return store().errorMessage()->value_or(""); }
    [[nodiscard]] bool has(const std::string& name) const
    {
        return files.content(path(name)).has_value();
    }

    KestryCore::VirtualScheduler scheduler;
    KestryCore::MemoryFileSystem files;
    MapDefaults defaults;
    FakePanels panels;
    KestryCore::StoreOptions options;
    std::unique_ptr<AppDelegate> app;
    int quits = 0;
    int dashboards = 0;
};

TEST_F(UpdateHandling, ARequestLeavesTheSessionRunningAndQuits)
{
    launchWithRunningSession();
    handOver();
    EXPECT_EQ(quits, 1);
    EXPECT_FALSE(has("update-request"));
    EXPECT_TRUE(session().runningSince);
    const auto handoff =
        KestryCore::decodeUpdateHandoff(files.content(path("update-handoff.json")).value());
    EXPECT_EQ(handoff.token, token);
    EXPECT_EQ(handoff.active, session());
    EXPECT_EQ(session().checkpointAt, now());
}

TEST_F(UpdateHandling, TheSuccessorCarriesOnAndSaysThatItIsUp)
{
    launchWithRunningSession();
    handOver();
    scheduler.advance(3);
    relaunch(token);
    EXPECT_EQ(session().runningSince, ApplicationWorld::morning);
    EXPECT_FALSE(*store().recoveredSession());
    EXPECT_EQ(files.content(path("update-ready.json")).value().substr(0, 47),
        "{\"token\":\"" + tokenText + "\"");
    EXPECT_FALSE(has("update-handoff.json"));
}

TEST_F(UpdateHandling, ASuccessorWithoutTheTokenPausesAndSaysNothing)
{
    launchWithRunningSession();
    handOver();
    scheduler.advance(3);
    relaunch(std::nullopt);
    EXPECT_TRUE(session().isPaused());
    EXPECT_EQ(store().elapsed(now()), 5);
    EXPECT_FALSE(has("update-ready.json"));
    EXPECT_FALSE(has("update-handoff.json"));
}

TEST_F(UpdateHandling, ALinkWithoutARequestFileLeavesNothingBehind)
{
    launchWithRunningSession();
    const auto before = files.contents();
    app->open({updateUrl});
    app->open({"kestry://other", "https://kestry"});
    app->open({});
    EXPECT_EQ(files.contents(), before);
    EXPECT_EQ(quits, 0);
    EXPECT_EQ(message(), "");
}

TEST_F(UpdateHandling, OnlyTheFirstUpdateUrlOfOneEventCounts)
{
    launchWithRunningSession();
    request();
    const std::string other = "kestry://update?token=11111111-1111-1111-1111-111111111111";
    app->open({other, updateUrl});
    EXPECT_EQ(quits, 0);
    EXPECT_TRUE(has("update-request"));
    app->open({"kestry://open", updateUrl, other});
    EXPECT_EQ(quits, 1);
}

TEST_F(UpdateHandling, ARequestDuringAHandoffIsIgnoredAndItsFileStays)
{
    launchWithRunningSession();
    handOver();
    handOver();
    EXPECT_EQ(quits, 1);
    EXPECT_TRUE(has("update-request"));
    EXPECT_EQ(app->pendingUpdateToken(), token);
}

TEST_F(UpdateHandling, ARequestFileThatStaysIsToldAndNothingElseHappens)
{
    launchWithRunningSession();
    request();
    files.failCalls(path("update-request") + " removed", EACCES);
    app->open({updateUrl});
    EXPECT_EQ(message(),
        "The update could not start. Your session is still running: update-request could not be "
        "removed: Permission denied.");
    EXPECT_EQ(quits, 0);
    EXPECT_FALSE(app->pendingUpdateToken());
    EXPECT_FALSE(has("update-handoff.json"));
}

TEST_F(UpdateHandling, AFailedHandoffCancelsTheQuitAndALaterQuitPauses)
{
    launchWithRunningSession();
    files.failCalls(path("ledger.json.new") + " written", ENOSPC);
    request();
    app->open({updateUrl});
    EXPECT_EQ(message(), "ledger.json.new could not be written: No space left on device.");
    EXPECT_EQ(dashboards, 1);
    EXPECT_EQ(quits, 0);
    EXPECT_FALSE(app->pendingUpdateToken());
    files.heal();
    scheduler.advance(15);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 15);
    app->terminate();
    EXPECT_EQ(quits, 1);
    EXPECT_TRUE(session().isPaused());
}

TEST_F(UpdateHandling, AFailedHandoffIsCancelledWithoutAWindowToo)
{
    launchWithRunningSession();
    app->state().installOpenDashboard({});
    files.failCalls(path("ledger.json.new") + " written", ENOSPC);
    request();
    app->open({updateUrl});
    EXPECT_EQ(quits, 0);
}

TEST_F(UpdateHandling, NoCheckpointIsMadeOnceTheSessionIsHandedOver)
{
    launchWithRunningSession();
    handOver();
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(UpdateHandling, ASessionThatIsHandedOverRunsOnWhenTheDisplayEnds)
{
    launchWithRunningSession();
    handOver();
    EXPECT_TRUE(app->leaveWithDisplay());
    EXPECT_TRUE(session().runningSince);
    EXPECT_TRUE(has("update-handoff.json"));
}

TEST_F(UpdateHandling, WithoutASessionTheHandoffHoldsTheTokenAloneAndIsAcknowledged)
{
    launch();
    addClient(store(), "Aster");
    handOver();
    EXPECT_EQ(files.content(path("update-handoff.json")), "{\"token\":\"" + tokenText + "\"}");
    relaunch(token);
    EXPECT_TRUE(has("update-ready.json"));
    EXPECT_FALSE(*store().recoveredSession());
}

TEST_F(UpdateHandling, APausedSessionStaysPausedAndIsNotRecovered)
{
    launchWithRunningSession();
    store().pause(now());
    handOver();
    relaunch(token);
    EXPECT_TRUE(session().isPaused());
    EXPECT_FALSE(*store().recoveredSession());
    EXPECT_TRUE(has("update-ready.json"));
}

TEST_F(UpdateHandling, ADamagedHandoffIsDroppedWithoutAWord)
{
    launchWithRunningSession();
    handOver();
    files.put(path("update-handoff.json"), "{");
    relaunch(token);
    EXPECT_TRUE(session().isPaused());
    EXPECT_TRUE(*store().recoveredSession());
    EXPECT_EQ(message(), "");
    EXPECT_TRUE(has("update-ready.json"));
}

TEST_F(UpdateHandling, AStoreThatOpensWithAMessageAcknowledgesNothing)
{
    files.put(path("ledger.json"), "{");
    relaunch(token);
    EXPECT_NE(message(), "");
    EXPECT_FALSE(has("update-ready.json"));
}

TEST_F(UpdateHandling, AnAcknowledgementThatFailsIsToldAndTheApplicationRunsOn)
{
    files.failCalls(path("update-ready.json.new") + " written", EROFS);
    relaunch(token);
    EXPECT_EQ(message(),
        "The app opened, but could not acknowledge the update: update-ready.json.new could not be "
        "written: Read-only file system.");
    EXPECT_TRUE(panels.isFront[NotchPanel::bridge]);
}

TEST_F(UpdateHandling, TheAcknowledgementMakesAMissingDirectory)
{
    options.directory = "/home/new/ledger";
    relaunch(token);
    EXPECT_TRUE(files.content("/home/new/ledger/update-ready.json"));
}

TEST_F(UpdateHandling, ADemoHonoursNoRequestAndWritesNothing)
{
    options.demoLedger = KestryCore::LedgerData{};
    relaunch(token);
    request();
    const auto before = files.contents();
    app->open({updateUrl});
    EXPECT_EQ(quits, 0);
    EXPECT_EQ(files.contents(), before);
}

TEST_F(UpdateHandling, ASessionThatCameRunningIsCheckpointedAsIfItHadNeverStopped)
{
    launchWithRunningSession();
    handOver();
    scheduler.advance(4);
    relaunch(token);
    scheduler.advance(10.9);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 5);
    scheduler.advance(0.2);
    EXPECT_EQ(session().checkpointAt, ApplicationWorld::morning + 20);
}

} // namespace
} // namespace Kestry
