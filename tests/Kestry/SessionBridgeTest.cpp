#include "SessionBridge.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "ApplicationWorld.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;

class SessionBridgeTest : public ::testing::Test {
protected:
    void startFor(const std::string& client, Projects projects = Projects::enabled)
    {
        state.sessionClientID.assign(addClient(store, client, projects));
        bridge.start();
    }
    [[nodiscard]] static QStringList texts(TargetListModel* model, TargetListModel::Role role)
    {
        QStringList texts;
        for (int row = 0; row < model->rowCount(); ++row) {
            texts << model->data(model->index(row), role).toString();
        }
        return texts;
    }
    [[nodiscard]] static QString chosen(TargetListModel* model)
    {
        for (int row = 0; row < model->rowCount(); ++row) {
            if (model->data(model->index(row), TargetListModel::IsChosenRole).toBool()) {
                return model->data(model->index(row), TargetListModel::NameRole).toString();
            }
        }
        return "(none)";
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), ApplicationWorld::inMemory()};
    AppState state{world.defaults};
    SessionBridge bridge{store, state, [this] { return world.now(); }, world.scheduler};
};

TEST_F(SessionBridgeTest, WithoutClientsThereIsNothingToStart)
{
    EXPECT_FALSE(bridge.hasClients());
    EXPECT_FALSE(bridge.hasSession());
    EXPECT_EQ(bridge.clientName(), "");
    EXPECT_EQ(bridge.elapsed(), "00:00:00");
}

TEST_F(SessionBridgeTest, AnAddedClientIsTheOneForTheNextSession)
{
    addClient(store, "Aster");
    EXPECT_TRUE(bridge.addClient("  Birch "));
    EXPECT_EQ(bridge.clientName(), "Birch");
    EXPECT_EQ(store.data()->clients.back().colorHex, "A2A5AA");
    EXPECT_FALSE(store.data()->clients.back().rateIsKnown);
}

TEST_F(SessionBridgeTest, AClientWithoutANameIsRefusedInWords)
{
    EXPECT_FALSE(bridge.addClient(" "));
    EXPECT_EQ(bridge.message(), "Enter a name.");
    EXPECT_FALSE(bridge.hasClients());
}

TEST_F(SessionBridgeTest, TheNextSessionIsNamedByClientAndProject)
{
    addClient(store, "Aster");
    EXPECT_EQ(bridge.clientName(), "Aster");
    EXPECT_EQ(bridge.projectName(), "Unassigned");
}

TEST_F(SessionBridgeTest, AClientWithoutProjectsOffersNone)
{
    addClient(store, "Aster", Projects::disabled);
    EXPECT_FALSE(bridge.choosesProject());
    EXPECT_EQ(bridge.projectName(), "");
    EXPECT_EQ(bridge.projects()->rowCount(), 0);
}

TEST_F(SessionBridgeTest, ClientsAreListedInTheLedgersOrderWithTheChosenOneMarked)
{
    addClient(store, "Birch");
    const Uuid aster = addClient(store, "Aster");
    EXPECT_EQ(texts(bridge.clients(), TargetListModel::NameRole), (QStringList{"Birch", "Aster"}));
    EXPECT_EQ(chosen(bridge.clients()), "Birch");
    bridge.chooseClient(QString::fromStdString(aster.text()));
    EXPECT_EQ(chosen(bridge.clients()), "Aster");
    EXPECT_EQ(bridge.clientName(), "Aster");
}

TEST_F(SessionBridgeTest, ProjectsAreThoseOfTheChosenClientWithUnassignedAtHand)
{
    const Uuid aster = addClient(store, "Aster");
    const Uuid birch = addClient(store, "Birch");
    addProject(store, aster, "Site");
    addProject(store, birch, "Logo");
    EXPECT_EQ(
        texts(bridge.projects(), TargetListModel::NameRole), (QStringList{"Unassigned", "Site"}));
    bridge.chooseClient(QString::fromStdString(birch.text()));
    EXPECT_EQ(
        texts(bridge.projects(), TargetListModel::NameRole), (QStringList{"Unassigned", "Logo"}));
}

TEST_F(SessionBridgeTest, AnUnassignedProjectThatExistsIsListedOnce)
{
    startFor("Aster");
    bridge.stop();
    EXPECT_EQ(texts(bridge.projects(), TargetListModel::NameRole), QStringList{"Unassigned"});
    EXPECT_EQ(chosen(bridge.projects()), "Unassigned");
}

TEST_F(SessionBridgeTest, AChosenProjectIsStartedOnAndUnassignedTakesItBack)
{
    const Uuid site = addProject(store, addClient(store, "Aster"), "Site");
    bridge.chooseProject(QString::fromStdString(site.text()));
    EXPECT_EQ(bridge.projectName(), "Site");
    EXPECT_EQ(chosen(bridge.projects()), "Site");
    bridge.chooseProject("");
    EXPECT_EQ(bridge.projectName(), "Unassigned");
    bridge.chooseProject(QString::fromStdString(site.text()));
    bridge.start();
    EXPECT_EQ(store.data()->active->projectID, site);
}

TEST_F(SessionBridgeTest, ASessionRunsPausesResumesAndStops)
{
    startFor("Aster");
    EXPECT_TRUE(bridge.isRunning());
    world.scheduler.advance(60);
    bridge.pauseOrResume();
    EXPECT_TRUE(bridge.hasSession());
    EXPECT_FALSE(bridge.isRunning());
    world.scheduler.advance(60);
    bridge.pauseOrResume();
    EXPECT_TRUE(bridge.isRunning());
    world.scheduler.advance(60);
    bridge.stop();
    EXPECT_FALSE(bridge.hasSession());
    EXPECT_EQ(store.data()->entries.front().duration(), 120);
}

TEST_F(SessionBridgeTest, ElapsedFollowsTheClockOnceASecond)
{
    startFor("Aster");
    const QSignalSpy changes(&bridge, &SessionBridge::elapsedChanged);
    world.scheduler.advance(3.5);
    EXPECT_EQ(changes.count(), 3);
    EXPECT_EQ(bridge.elapsed(), "00:00:03");
    EXPECT_EQ(bridge.spokenElapsed(), "3 seconds");
}

TEST_F(SessionBridgeTest, NothingTicksUnlessASessionRuns)
{
    EXPECT_TRUE(world.scheduler.isIdle());
    startFor("Aster");
    EXPECT_FALSE(world.scheduler.isIdle());
    bridge.pauseOrResume();
    EXPECT_TRUE(world.scheduler.isIdle());
    bridge.stop();
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(SessionBridgeTest, ASessionIsCalledByItsTitleElseItsProjectElseSession)
{
    EXPECT_EQ(bridge.label(), "Session");
    startFor("Aster");
    EXPECT_EQ(bridge.label(), "Unassigned");
    bridge.rename("  Drawing ");
    EXPECT_EQ(bridge.label(), "Drawing");
    EXPECT_EQ(bridge.title(), "Drawing");
}

TEST_F(SessionBridgeTest, TheHiddenProjectOfAClientIsNotShown)
{
    startFor("Aster", Projects::disabled);
    EXPECT_EQ(bridge.clientName(), "Aster");
    EXPECT_EQ(bridge.projectName(), "");
}

TEST_F(SessionBridgeTest, ARefusalThatTheStoreKeepsQuietAboutStillShows)
{
    bridge.pauseOrResume();
    EXPECT_EQ(bridge.message(), "No session to resume.");
}

TEST_F(SessionBridgeTest, TheHeightFollowsSessionAndMessage)
{
    EXPECT_EQ(bridge.baseHeight(), 48);
    startFor("Aster");
    EXPECT_EQ(bridge.baseHeight(), 74);
    store.reportFailure("The disk is full.");
    EXPECT_EQ(bridge.baseHeight(), 92);
}

TEST_F(SessionBridgeTest, AChangeFromElsewhereIsTold)
{
    const Uuid aster = addClient(store, "Aster");
    const QSignalSpy changes(&bridge, &SessionBridge::changed);
    store.start(aster, std::nullopt, "Drawing", world.now());
    EXPECT_GE(changes.count(), 1);
    EXPECT_EQ(bridge.title(), "Drawing");
}

TEST_F(SessionBridgeTest, ARecoveredSessionIsToldUntilItIsDismissed)
{
    {
        KestryCore::TimeStore crashed(world.storePlatform(), world.onDisk());
        crashed.start(addClient(crashed, "Aster"), std::nullopt, "", world.now());
    }
    KestryCore::TimeStore recovered(world.storePlatform(), world.onDisk());
    SessionBridge other(
        recovered, state, [this] { return world.now(); }, world.scheduler);
    EXPECT_TRUE(other.isRecovered());
    other.dismissRecovery();
    EXPECT_FALSE(other.isRecovered());
}

} // namespace
} // namespace Kestry
