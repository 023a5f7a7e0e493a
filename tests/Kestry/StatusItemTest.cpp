#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "StatusItem.h"

namespace Kestry {
namespace {

/// A status area that is only remembered.
class FakeArea final : public StatusArea {
public:
    void create(Menu entries) override
    {
        exists = true;
        menu = std::move(entries);
    }
    void remove() override { exists = false; }
    [[nodiscard]] int frameCount() override { return frames; }
    void showFrame(int frame) override { shown.push_back(frame); }
    void showSymbol() override { ++symbols; }

    bool exists = false;
    Menu menu;
    int frames = 240;
    std::vector<int> shown;
    int symbols = 0;
};

class StatusItemTest : public ::testing::Test {
protected:
    StatusItemTest()
    {
        addClient(store, "Birch");
        state.setMenuBarEnabled(true);
    }

    StatusItem item()
    {
        return StatusItem(
            {area, store, state, preferences, world.scheduler, [this] { return world.now(); }},
            [] { return Menu{{.text = "Open Kestry"}}; });
    }
    void start() { store.start(store.data()->clients.front().id, std::nullopt, "", world.now()); }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    DesktopPreferences preferences;
    FakeArea area;
};

TEST_F(StatusItemTest, ExistsOnlyWhileItIsSwitchedOn)
{
    state.setMenuBarEnabled(false);
    StatusItem status = item();
    EXPECT_FALSE(area.exists);

    state.setMenuBarEnabled(true);
    EXPECT_TRUE(area.exists);
    EXPECT_EQ("Open Kestry", area.menu.front().text);
    state.setMenuBarEnabled(false);
    EXPECT_FALSE(area.exists);
}

TEST_F(StatusItemTest, StandsStillAndWakesNothingWithoutASession)
{
    StatusItem status = item();

    EXPECT_THAT(area.shown, ::testing::ElementsAre(0));
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(StatusItemTest, TurnsWhileASessionRuns)
{
    StatusItem status = item();
    start();
    world.scheduler.advance(2.0);

    EXPECT_NEAR(60, area.shown.back(), 1);
    EXPECT_GE(area.shown.size(), 55U);
}

TEST_F(StatusItemTest, StopsWherePausedAndGoesOnFromThere)
{
    StatusItem status = item();
    start();
    world.scheduler.advance(2.0);
    store.pause(world.now());
    EXPECT_TRUE(world.scheduler.isIdle());
    EXPECT_EQ(60, area.shown.back());

    world.scheduler.advance(100.0);
    store.resume(world.now());
    world.scheduler.advance(1.0);
    EXPECT_NEAR(90, area.shown.back(), 1);
}

TEST_F(StatusItemTest, TurningItOffStopsTheTimerAndTurningItOnResumesAtTheRightAngle)
{
    StatusItem status = item();
    start();
    world.scheduler.advance(1.0);
    state.setMenuBarEnabled(false);
    EXPECT_TRUE(world.scheduler.isIdle());
    const std::size_t before = area.shown.size();

    world.scheduler.advance(3.0);
    EXPECT_EQ(before, area.shown.size());
    state.setMenuBarEnabled(true);
    EXPECT_EQ(120, area.shown.back());
}

TEST_F(StatusItemTest, ReduceMotionStopsTheTimerAndReturnsToTheFirstFrame)
{
    StatusItem status = item();
    start();
    world.scheduler.advance(1.0);

    preferences.setReducesMotion(true);
    EXPECT_EQ(0, area.shown.back());
    EXPECT_TRUE(world.scheduler.isIdle());
    preferences.setReducesMotion(false);
    EXPECT_EQ(30, area.shown.back());
    EXPECT_FALSE(world.scheduler.isIdle());
}

TEST_F(StatusItemTest, WithoutFramesShowsTheSymbolAndStartsNoTimer)
{
    area.frames = 0;
    StatusItem status = item();
    start();

    EXPECT_EQ(2, area.symbols);
    EXPECT_TRUE(area.shown.empty());
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(StatusItemTest, DoesNotDrawTheFrameThatItShows)
{
    StatusItem status = item();
    start();
    store.pause(world.now());
    const std::size_t before = area.shown.size();

    store.renameActiveSession(store.data()->active->id, "Layout");

    EXPECT_EQ(before, area.shown.size());
}

} // namespace
} // namespace Kestry
