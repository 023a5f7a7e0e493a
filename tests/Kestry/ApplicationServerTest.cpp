#include "ApplicationServer.h"

#include <gtest/gtest.h>
#include <sys/socket.h>

#include <QTest>

#include <future>

#include "AccountContainer.h"
#include "ApplicationWorld.h"
#include "FakePanels.h"
#include "FakeSecrets.h"
#include "FirstInstance.h"
#include "HandedCommand.h"
#include "LocalClient.h"
#include "ScriptedCloud.h"
#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

class ApplicationServerTest : public testing::Test {
protected:
    /// Starts the application on a directory that is there, or is not there yet.
    void launch()
    {
        KestryCore::StoreOptions options;
        options.directory = directory;
        const AppDelegate::Platform platform{world.storePlatform(), world.scheduler, world.defaults,
            [this] { ++quits; }, "",
            {{"sqlite:/cloud", true, KestryCore::CloudSyncEnvironment::development},
                [this](const std::string& identifier) {
                    return std::make_unique<AccountContainer>(account, identifier);
                },
                [] { return "Desk"; }}};
        app.emplace(platform, options);
        app->state().installOpenDashboard([this] { ++dashboards; });
        app->didFinishLaunching(panels);
        server.emplace(ApplicationServer::World{*app, account, world.scheduler, world.files},
            listenAt(directory));
    }

    using Calling = std::future<LocalReply>;

    /// Sends a message as another process would.
    [[nodiscard]] Calling callWith(const std::string& message) const
    {
        return std::async(std::launch::async,
            [this, message] { return handOver(directory, message, {.untilTaken = 2}); });
    }
    [[nodiscard]] Calling call(const std::vector<std::string>& words) const
    {
        auto command = commandToHandOver(words, directory, KestryCore::processEnvironment);
        command.timeZone = "UTC";
        return callWith(encodeMessage(command));
    }
    static LocalReply reply(Calling calling)
    {
        const auto isThere = [&] {
            return calling.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        };
        EXPECT_TRUE(QTest::qWaitFor(isThere, 10'000));
        return calling.get();
    }
    LocalReply send(const std::string& message) { return reply(callWith(message)); }
    LocalReply run(const std::vector<std::string>& words) { return reply(call(words)); }
    /// Waits until the record store is asked something.
    void waitForQuestion()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] {
            world.scheduler.turn();
            return !cloud.waiting().empty();
        }));
    }
    /// Answers the record store's questions until the caller has its reply.
    LocalReply replyWithAnswers(Calling calling)
    {
        const auto isThere = [&] {
            world.scheduler.turn();
            if (!cloud.waiting().empty()) {
                cloud.answer();
            }
            return calling.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        };
        EXPECT_TRUE(QTest::qWaitFor(isThere, 10'000));
        return calling.get();
    }
    LocalReply runWithAnswers(const std::vector<std::string>& words)
    {
        return replyWithAnswers(call(words));
    }
    /// Signed in, and replication on.
    void launchInStep()
    {
        launch();
        EXPECT_EQ(runWithAnswers({"sync", "sign-in", "sqlite:/shared/store"}).answer.status, 0);
        EXPECT_EQ(runWithAnswers({"sync", "on"}).answer.status, 0);
    }

    KestryCore::TemporaryDirectory folder;
    KestryCore::EnvironmentVariable runtime{"XDG_RUNTIME_DIR", folder.path()};
    ApplicationWorld world;
    FakePanels panels;
    FakeSecrets secrets;
    KestryCore::ScriptedCloud cloud{world.scheduler};
    CloudAccount account{{world.defaults, secrets, world.scheduler,
        [this](const CloudCredentials& credentials, StoreUse /*use*/) {
            return cloud.open(credentials.address);
        }}};
    std::string directory = folder.path("data");
    std::optional<AppDelegate> app;
    std::optional<ApplicationServer> server;
    int quits = 0;
    int dashboards = 0;
};

TEST_F(ApplicationServerTest, ACommandChangesTheStoreThatTheSurfacesShow)
{
    launch();
    EXPECT_EQ(run({"client", "add", "Aster"}).answer.output, "Added client \"Aster\".\n");
    EXPECT_EQ(app->store().data()->clients.front().name, "Aster");
    EXPECT_EQ(run({"start", "aster"}).answer.status, 0);
    EXPECT_EQ(app->store().data()->active->runningSince, ApplicationWorld::morning);
}

TEST_F(ApplicationServerTest, ItIsFoundBeforeAndAfterTheFirstSaveHasMadeTheDirectory)
{
    launch();
    EXPECT_EQ(run({"status"}).outcome, LocalReply::Outcome::answered);
    EXPECT_FALSE(QDir(QString::fromStdString(directory)).exists());
    addClient(app->store(), "Aster");
    EXPECT_TRUE(QDir(QString::fromStdString(directory)).exists());
    EXPECT_EQ(run({"client", "list", "--json"}).outcome, LocalReply::Outcome::answered);
}

TEST_F(ApplicationServerTest, AnotherStartOpensTheWindowAndItsUrlsAreOpened)
{
    launch();
    EXPECT_EQ(send(encodeMessage(LocalActivation{})).outcome, LocalReply::Outcome::answered);
    EXPECT_TRUE(QTest::qWaitFor([this] { return dashboards == 1; }));
    addClient(app->store(), "Aster");
    const std::string token = "0F5B7A52-3C11-4E0B-9A63-6C1D2B7E8F90";
    QFile request(QString::fromStdString(directory + "/update-request"));
    EXPECT_TRUE(request.open(QIODevice::WriteOnly));
    request.write(token.c_str());
    request.close();
    (void)send(encodeMessage(LocalActivation{{"kestry://update?token=" + token}, ""}));
    EXPECT_TRUE(QTest::qWaitFor([this] { return quits == 1; }));
    EXPECT_EQ(dashboards, 1);
}

TEST_F(ApplicationServerTest, ARefusedCommandLeavesNoMessageInTheApplication)
{
    launch();
    EXPECT_EQ(run({"pause"}).answer.errors, "No running session to pause.\n");
    EXPECT_EQ(*app->store().errorMessage(), std::nullopt);
}

TEST_F(ApplicationServerTest, AWholeRoadOfReplication)
{
    launch();
    EXPECT_EQ(runWithAnswers({"sync", "sign-in", "sqlite:/shared/store"}).answer.output,
        "Signed in to sqlite:/shared/store.\n");
    EXPECT_EQ(runWithAnswers({"sync", "on"}).answer.output, "Sync is on. Up to date.\n");
    EXPECT_EQ(runWithAnswers({"sync", "now"}).answer.output, "Exchanged records. Up to date.\n");
    const std::string status = run({"sync", "status", "--json"}).answer.output;
    EXPECT_NE(status.find(R"("account":{"address":"sqlite:\/shared\/store","user":""})"),
        std::string::npos);
    EXPECT_EQ(runWithAnswers({"sync", "sign-out"}).answer.output, "Signed out. Sync is off.\n");
    EXPECT_FALSE(app->cloudSync().isEnabled());
    EXPECT_EQ(*account.name(), std::nullopt);
}

TEST_F(ApplicationServerTest, OthersAreServedWhileRecordsAreExchanged)
{
    launchInStep();
    Calling first = call({"sync", "now"});
    waitForQuestion();
    EXPECT_EQ(run({"client", "add", "Aster"}).answer.status, 0);
    EXPECT_EQ(runWithAnswers({"sync", "now"}).answer.status, 0);
    EXPECT_EQ(reply(std::move(first)).answer.status, 0);
    EXPECT_TRUE(app->store().data()->replication->outbox.empty());
}

TEST_F(ApplicationServerTest, AnExchangeGoesOnWhenWhoeverWaitsForItGoes)
{
    launchInStep();
    {
        const Descriptor caller = connectLocally(folder.path(), localSocketName(directory)).socket;
        auto command =
            commandToHandOver({"sync", "now"}, directory, KestryCore::processEnvironment);
        command.timeZone = "UTC";
        const std::string message = encodeMessage(command);
        ::send(caller.number(), message.data(), message.size(), MSG_NOSIGNAL);
        waitForQuestion();
    }
    EXPECT_EQ(runWithAnswers({"sync", "now"}).answer.status, 0);
    EXPECT_FALSE(*app->cloudSync().fields().isSyncing);
}

TEST_F(ApplicationServerTest, AQuitIsToldToWhoeverWaits)
{
    launchInStep();
    Calling waiting = call({"sync", "now"});
    waitForQuestion();
    server->close();
    EXPECT_EQ(reply(std::move(waiting)).answer.errors, "Kestry was quit before this was over.\n");
    app->willTerminate();
    world.scheduler.advance(300);
}

TEST_F(ApplicationServerTest, OnceClosedItIsReachedByNobody)
{
    launch();
    server->close();
    EXPECT_EQ(send(encodeMessage(LocalActivation{})).outcome, LocalReply::Outcome::unreached);
}

} // namespace
} // namespace Kestry
