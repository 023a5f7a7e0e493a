#include "ApplicationServer.h"

#include <gtest/gtest.h>

#include <QTest>

#include <future>

#include "ApplicationWorld.h"
#include "FakePanels.h"
#include "FirstInstance.h"
#include "HandedCommand.h"
#include "LocalClient.h"
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
        const AppDelegate::Platform platform{
            world.storePlatform(), world.scheduler, world.defaults, [this] { ++quits; }};
        app.emplace(platform, options);
        app->state().installOpenDashboard([this] { ++dashboards; });
        app->didFinishLaunching(panels);
        server.emplace(*app, world.files, listenAt(directory));
    }

    LocalReply send(const std::string& message)
    {
        auto reply = std::async(
            std::launch::async, [&] { return handOver(directory, message, {.untilTaken = 2}); });
        const auto isThere = [&] {
            return reply.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
        };
        EXPECT_TRUE(QTest::qWaitFor(isThere, 10'000));
        return reply.get();
    }
    LocalReply run(const std::vector<std::string>& words)
    {
        auto command = commandToHandOver(words, directory, KestryCore::processEnvironment);
        command.timeZone = "UTC";
        return send(encodeMessage(command));
    }

    KestryCore::TemporaryDirectory folder;
    KestryCore::EnvironmentVariable runtime{"XDG_RUNTIME_DIR", folder.path()};
    ApplicationWorld world;
    FakePanels panels;
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

TEST_F(ApplicationServerTest, OnceClosedItIsReachedByNobody)
{
    launch();
    server->close();
    EXPECT_EQ(send(encodeMessage(LocalActivation{})).outcome, LocalReply::Outcome::unreached);
}

} // namespace
} // namespace Kestry
