#include "AppState.h"

#include <gtest/gtest.h>

#include "ApplicationWorld.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;

class AppStateTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string clientName() const
    {
        const auto client = state.clientForNewSession(store);
        return client ? client->name : "(none)";
    }
    [[nodiscard]] std::string projectName() const
    {
        const auto project = state.projectForNewSession(store, state.clientForNewSession(store));
        return project ? project->name : "(none)";
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), ApplicationWorld::inMemory()};
    AppState state{world.defaults};
};

TEST_F(AppStateTest, StartsOnTheOverviewWithNothingChosen)
{
    EXPECT_EQ(*state.destination, Destination::overview);
    EXPECT_EQ(*state.editor, std::nullopt);
    EXPECT_EQ(*state.selectedClient, std::nullopt);
    EXPECT_EQ(*state.sessionClientID, std::nullopt);
    EXPECT_EQ(*state.sessionTitle, "");
    EXPECT_FALSE(state.dashboardInitialized);
}

TEST_F(AppStateTest, TheStripIsOnAndTheMenuBarOffUnlessStoredOtherwise)
{
    EXPECT_TRUE(*state.notchEnabled());
    EXPECT_FALSE(*state.menuBarEnabled());
    world.defaults.values = {{"notchEnabled", false}, {"menuBarEnabled", true}};
    const AppState stored(world.defaults);
    EXPECT_FALSE(*stored.notchEnabled());
    EXPECT_TRUE(*stored.menuBarEnabled());
}

TEST_F(AppStateTest, SettersPublishBeforeTheyStore)
{
    std::optional<bool> storedWhenPublished;
    const auto subscription = state.notchEnabled().observe([&](bool enabled) {
        EXPECT_FALSE(enabled);
        storedWhenPublished = world.defaults.values.contains("notchEnabled");
    });
    state.setNotchEnabled(false);
    EXPECT_EQ(storedWhenPublished, false);
    EXPECT_FALSE(world.defaults.values.at("notchEnabled"));
    state.setMenuBarEnabled(true);
    EXPECT_TRUE(world.defaults.values.at("menuBarEnabled"));
}

TEST_F(AppStateTest, WithoutClientsThereIsNoneForANewSession)
{
    EXPECT_EQ(clientName(), "(none)");
    EXPECT_EQ(projectName(), "(none)");
}

TEST_F(AppStateTest, TheFirstClientIsTakenWhenNoneIsWanted)
{
    addClient(store, "Aster");
    addClient(store, "Birch");
    EXPECT_EQ(clientName(), "Aster");
}

TEST_F(AppStateTest, ThePickedClientComesBeforeTheSelectedOneAndThatBeforeTheProjects)
{
    addClient(store, "Aster");
    const Uuid birch = addClient(store, "Birch");
    const Uuid cedar = addClient(store, "Cedar");
    const Uuid dogwood = addClient(store, "Dogwood");
    state.selectedProject.assign(addProject(store, birch, "Site"));
    EXPECT_EQ(clientName(), "Birch");
    state.selectedClient.assign(cedar);
    EXPECT_EQ(clientName(), "Cedar");
    state.sessionClientID.assign(dogwood);
    EXPECT_EQ(clientName(), "Dogwood");
}

TEST_F(AppStateTest, AWantedClientThatIsGoneGivesTheFirst)
{
    addClient(store, "Aster");
    state.selectedClient.assign(addClient(store, "Birch"));
    state.sessionClientID.assign(Uuid::random());
    EXPECT_EQ(clientName(), "Aster");
}

TEST_F(AppStateTest, AClientWithoutProjectsHasNoneForANewSession)
{
    const Uuid aster = addClient(store, "Aster", Projects::disabled);
    store.start(aster, std::nullopt, "", world.now());
    state.selectedProject.assign(store.data()->active->projectID);
    EXPECT_EQ(projectName(), "(none)");
}

TEST_F(AppStateTest, TheSelectedProjectIsTakenWhenItIsTheClients)
{
    const Uuid aster = addClient(store, "Aster");
    addProject(store, aster, "Unassigned");
    state.selectedProject.assign(addProject(store, aster, "Site"));
    EXPECT_EQ(projectName(), "Site");
}

TEST_F(AppStateTest, AProjectOfAnotherClientGivesTheUnassignedOne)
{
    const Uuid aster = addClient(store, "Aster");
    addProject(store, aster, "unassigned");
    state.sessionClientID.assign(aster);
    state.selectedProject.assign(addProject(store, addClient(store, "Birch"), "Site"));
    EXPECT_EQ(projectName(), "unassigned");
}

TEST_F(AppStateTest, StartingTakesWhatIsChosenAndClearsProjectAndTitle)
{
    addClient(store, "Aster");
    const Uuid birch = addClient(store, "Birch");
    const Uuid site = addProject(store, birch, "Site");
    state.selectedProject.assign(site);
    state.sessionTitle.assign("Drawing");
    state.startSession(store, world.now());
    EXPECT_EQ(store.data()->active->projectID, site);
    EXPECT_EQ(store.data()->active->title, "Drawing");
    EXPECT_EQ(*state.sessionClientID, birch);
    EXPECT_EQ(*state.selectedProject, std::nullopt);
    EXPECT_EQ(*state.sessionTitle, "");
}

TEST_F(AppStateTest, AFailedStartLeavesTheChoiceAndTheReason)
{
    const Uuid aster = addClient(store, "Aster");
    const Uuid site = addProject(store, aster, "Site");
    state.startSession(store, world.now());
    state.selectedProject.assign(site);
    state.sessionTitle.assign("Drawing");
    state.sessionClientID.assign(std::nullopt);
    state.startSession(store, world.now());
    EXPECT_EQ(*store.errorMessage(), "Stop the current session first.");
    EXPECT_EQ(*state.selectedProject, site);
    EXPECT_EQ(*state.sessionTitle, "Drawing");
    EXPECT_EQ(*state.sessionClientID, std::nullopt);
}

TEST_F(AppStateTest, StartingWithoutClientsAsksForOneInTheWindow)
{
    int opened = 0;
    state.installOpenDashboard([&] { ++opened; });
    state.startSession(store, world.now());
    EXPECT_EQ(*state.editor, Editor{Editor::ClientForm{}});
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(store.data()->active, std::nullopt);
}

TEST_F(AppStateTest, ActionsThatAreNotInstalledDoNothing)
{
    state.openDashboard();
    state.toggleNotch();
    state.setNotchVisible(true);
    EXPECT_FALSE(state.dashboardInitialized);
}

} // namespace
} // namespace Kestry
