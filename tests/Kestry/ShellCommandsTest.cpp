#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "ShellCommands.h"

namespace Kestry {
namespace {

class ShellCommandsTest : public ::testing::Test {
protected:
    ShellCommandsTest()
    {
        state.installOpenDashboard([this] { ++dashboards; });
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    int quits = 0;
    int dashboards = 0;
    ShellCommands commands{store, state, [this] { return world.now(); }, [this] { ++quits; }};
};

TEST_F(ShellCommandsTest, StartsThenPausesThenResumesWithOneCommand)
{
    addClient(store, "Birch");

    commands.toggleSession();
    EXPECT_FALSE(store.data()->active->isPaused());
    world.scheduler.advance(60);
    commands.toggleSession();
    EXPECT_TRUE(store.data()->active->isPaused());
    commands.toggleSession();
    EXPECT_FALSE(store.data()->active->isPaused());
    EXPECT_EQ(60.0, store.elapsed(world.now()));
}

TEST_F(ShellCommandsTest, AsksForAClientWhenThereIsNone)
{
    commands.toggleSession();

    EXPECT_EQ("client-new", (*state.editor)->id());
    EXPECT_EQ(1, dashboards);
    EXPECT_FALSE(store.data()->active);
}

TEST_F(ShellCommandsTest, StopsAndSavesTheSessionAndDoesNothingWithoutOne)
{
    commands.stopSession();
    EXPECT_FALSE(store.errorMessage()->has_value());

    addClient(store, "Birch");
    commands.toggleSession();
    world.scheduler.advance(60);
    commands.stopSession();
    EXPECT_EQ(1U, store.data()->entries.size());
    EXPECT_FALSE(store.data()->active);
}

TEST_F(ShellCommandsTest, LeavesAFailureInTheStore)
{
    addClient(store, "Birch");
    commands.toggleSession();
    world.damageLedger();
    world.scheduler.advance(60);

    commands.toggleSession();

    EXPECT_FALSE(store.data()->active->isPaused());
    EXPECT_TRUE(store.errorMessage()->has_value());
}

TEST_F(ShellCommandsTest, OpensTheSettingsPage)
{
    commands.openSettings();

    EXPECT_EQ(Destination::settings, *state.destination);
    EXPECT_EQ(1, dashboards);
}

TEST_F(ShellCommandsTest, OffersTheSelectedClientForANewProjectIfItHasProjects)
{
    addClient(store, "Alder", Projects::disabled);
    const auto birch = addClient(store, "Birch");
    const auto cedar = addClient(store, "Cedar");

    state.selectedClient.assign(cedar);
    EXPECT_EQ(cedar, commands.clientForNewProject());
    state.selectedClient.assign(store.data()->clients.front().id);
    EXPECT_EQ(birch, commands.clientForNewProject());
}

TEST_F(ShellCommandsTest, OffersNoNewProjectWhileNoClientHasProjects)
{
    addClient(store, "Alder", Projects::disabled);

    commands.newProject();

    EXPECT_FALSE(commands.clientForNewProject());
    EXPECT_FALSE(*state.editor);
    EXPECT_EQ(0, dashboards);
}

TEST_F(ShellCommandsTest, OpensTheFormOfANewProjectForItsClient)
{
    const auto birch = addClient(store, "Birch");

    commands.newProject();

    EXPECT_EQ("project-" + birch.text(), (*state.editor)->id());
    EXPECT_EQ(1, dashboards);
}

TEST_F(ShellCommandsTest, AsksTheApplicationToQuit)
{
    commands.quit();
    EXPECT_EQ(1, quits);
}

} // namespace
} // namespace Kestry
