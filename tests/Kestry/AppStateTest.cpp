#include "AppState.h"

#include <gtest/gtest.h>

#include "ApplicationWorld.h"

namespace Kestry {
namespace {

class AppStateTest : public ::testing::Test {
protected:
    ApplicationWorld world;
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

TEST_F(AppStateTest, ThePlaceOfThePanelIsStored)
{
    const PanelPlace place{
        .screen = PanelPlace::Screen::named, .screenName = "DP-1", .side = PanelPlace::Side::left};
    EXPECT_EQ(*state.panelPlace(), PanelPlace{});
    state.setPanelPlace(place);
    EXPECT_EQ(*AppState(world.defaults).panelPlace(), place);
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
