#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "Commander.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;

class CommanderTest : public ::testing::Test {
protected:
    CommanderTest()
    {
        state.installOpenDashboard([this] { ++dashboards; });
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    int quits = 0;
    int dashboards = 0;
    Commander commander{store, state, [this] { return world.now(); }, [this] { ++quits; }};
};

TEST_F(CommanderTest, StartsThenPausesThenResumesWithOneCommand)
{
    addClient(store, "Birch");

    commander.toggleSession();
    EXPECT_FALSE(store.data()->active->isPaused());
    world.scheduler.advance(60);
    commander.toggleSession();
    EXPECT_TRUE(store.data()->active->isPaused());
    commander.toggleSession();
    EXPECT_FALSE(store.data()->active->isPaused());
    EXPECT_EQ(60.0, store.elapsed(world.now()));
}

TEST_F(CommanderTest, AsksForAClientWhenThereIsNone)
{
    commander.toggleSession();

    EXPECT_EQ("client-new", (*state.editor)->id());
    EXPECT_EQ(1, dashboards);
    EXPECT_FALSE(store.data()->active);
}

TEST_F(CommanderTest, StopsAndSavesTheSessionAndDoesNothingWithoutOne)
{
    commander.stopSession();
    EXPECT_FALSE(store.errorMessage()->has_value());

    addClient(store, "Birch");
    commander.toggleSession();
    world.scheduler.advance(60);
    commander.stopSession();
    EXPECT_EQ(1U, store.data()->entries.size());
    EXPECT_FALSE(store.data()->active);
}

TEST_F(CommanderTest, LeavesAFailureInTheStore)
{
    addClient(store, "Birch");
    commander.toggleSession();
    world.damageLedger();
    world.scheduler.advance(60);

    commander.toggleSession();

    EXPECT_FALSE(store.data()->active->isPaused());
    EXPECT_TRUE(store.errorMessage()->has_value());
}

TEST_F(CommanderTest, StartingTakesWhatIsChosenAndClearsProjectAndTitle)
{
    addClient(store, "Aster");
    const Uuid birch = addClient(store, "Birch");
    const Uuid site = addProject(store, birch, "Site");
    state.selectedProject.assign(site);
    state.sessionTitle.assign("Drawing");
    commander.startSession();
    EXPECT_EQ(store.data()->active->projectID, site);
    EXPECT_EQ(store.data()->active->title, "Drawing");
    EXPECT_EQ(*state.sessionClientID, birch);
    EXPECT_EQ(*state.selectedProject, std::nullopt);
    EXPECT_EQ(*state.sessionTitle, "");
}

TEST_F(CommanderTest, AFailedStartLeavesTheChoiceAndTheReason)
{
    const Uuid aster = addClient(store, "Aster");
    const Uuid site = addProject(store, aster, "Site");
    commander.startSession();
    state.selectedProject.assign(site);
    state.sessionTitle.assign("Drawing");
    state.sessionClientID.assign(std::nullopt);
    commander.startSession();
    EXPECT_EQ(*store.errorMessage(), "Stop the current session first.");
    EXPECT_EQ(*state.selectedProject, site);
    EXPECT_EQ(*state.sessionTitle, "Drawing");
    EXPECT_EQ(*state.sessionClientID, std::nullopt);
}

TEST_F(CommanderTest, StartingOnAProjectTakesTheTitleAndMakesItsClientTheNext)
{
    const Uuid aster = addClient(store, "Aster");
    const Uuid birch = addClient(store, "Birch");
    const Uuid site = addProject(store, birch, "Site");
    state.sessionClientID.assign(aster);
    state.selectedProject.assign(addProject(store, aster, "Poster"));
    state.sessionTitle.assign("Drawing");
    commander.startSessionOn(site);
    EXPECT_EQ(store.data()->active->projectID, site);
    EXPECT_EQ(store.data()->active->title, "Drawing");
    EXPECT_EQ(*state.sessionClientID, birch);
    EXPECT_EQ(*state.selectedProject, std::nullopt);
    EXPECT_EQ(*state.sessionTitle, "");
}

TEST_F(CommanderTest, AStartOnAProjectIsRefusedWhileASessionIsInProgress)
{
    const Uuid aster = addClient(store, "Aster");
    const Uuid site = addProject(store, aster, "Site");
    commander.startSession();
    const auto before = store.data()->active;
    state.sessionTitle.assign("Drawing");
    state.sessionClientID.assign(std::nullopt);
    commander.startSessionOn(site);
    EXPECT_EQ(*store.errorMessage(), "Stop the current session first.");
    EXPECT_EQ(store.data()->active, before);
    EXPECT_EQ(*state.sessionTitle, "Drawing");
    EXPECT_EQ(*state.sessionClientID, std::nullopt);
}

TEST_F(CommanderTest, AStartOnAProjectThatIsGoneIsRefused)
{
    addClient(store, "Aster");
    commander.startSessionOn(Uuid::random());
    EXPECT_EQ(*store.errorMessage(), "Project no longer exists.");
    EXPECT_FALSE(store.data()->active);
}

TEST_F(CommanderTest, StartingWithoutClientsAsksForOneInTheWindow)
{
    commander.startSession();
    EXPECT_EQ(*state.editor, Editor{Editor::ClientForm{}});
    EXPECT_EQ(dashboards, 1);
    EXPECT_EQ(store.data()->active, std::nullopt);
}

TEST_F(CommanderTest, OpensTheSettingsPage)
{
    commander.openSettings();

    EXPECT_EQ(Destination::settings, *state.destination);
    EXPECT_EQ(1, dashboards);
}

TEST_F(CommanderTest, OffersTheSelectedClientForANewProjectIfItHasProjects)
{
    addClient(store, "Alder", Projects::disabled);
    const auto birch = addClient(store, "Birch");
    const auto cedar = addClient(store, "Cedar");

    state.selectedClient.assign(cedar);
    EXPECT_EQ(cedar, commander.clientForNewProject());
    state.selectedClient.assign(store.data()->clients.front().id);
    EXPECT_EQ(birch, commander.clientForNewProject());
}

TEST_F(CommanderTest, OffersNoNewProjectWhileNoClientHasProjects)
{
    addClient(store, "Alder", Projects::disabled);

    commander.newProject();

    EXPECT_FALSE(commander.clientForNewProject());
    EXPECT_FALSE(*state.editor);
    EXPECT_EQ(0, dashboards);
}

TEST_F(CommanderTest, OpensTheFormOfANewProjectForItsClient)
{
    const auto birch = addClient(store, "Birch");

    commander.newProject();

    EXPECT_EQ("project-" + birch.text(), (*state.editor)->id());
    EXPECT_EQ(1, dashboards);
}

TEST_F(CommanderTest, AsksTheApplicationToQuit)
{
    commander.quit();
    EXPECT_EQ(1, quits);
}

TEST(DesktopActionNames, AreThoseOfTheMenuEntry)
{
    EXPECT_EQ(desktopAction("start"), DesktopAction::start);
    EXPECT_EQ(desktopAction("toggle"), DesktopAction::toggle);
    EXPECT_EQ(desktopAction("stop"), DesktopAction::stop);
    EXPECT_EQ(desktopAction("show-controls"), DesktopAction::showControls);
    EXPECT_EQ(desktopAction("quit"), std::nullopt);
}

} // namespace
} // namespace Kestry
