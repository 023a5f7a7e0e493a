#include "NotchWindows.h"

#include <QEnterEvent>
#include <QGuiApplication>
#include <QQmlExtensionPlugin>

#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "EventLog.h"
#include "ServedEngine.h"
#include "StageChoice.h"
#include "ZoneCalendar.h"

Q_IMPORT_QML_PLUGIN(KestryPlugin)
Q_IMPORT_QML_PLUGIN(KestryItemsPlugin)

namespace Kestry {
namespace {

class NotchWindowsTest : public ::testing::Test {
protected:
    NotchWindowsTest() { panels.deliverEventsTo(&log); }

    static PanelWindow& window(const QString& title)
    {
        const auto windows = QGuiApplication::topLevelWindows();
        const auto found = std::ranges::find_if(windows, [&](const QWindow* each) {
            return each->title() == title && qobject_cast<const PanelWindow*>(each);
        });
        return *qobject_cast<PanelWindow*>(*found);
    }
    static void enter(PanelWindow& window)
    {
        QEnterEvent event({}, {}, {});
        QCoreApplication::sendEvent(&window, &event);
    }
    static void leave(PanelWindow& window)
    {
        QEvent event(QEvent::Leave);
        QCoreApplication::sendEvent(&window, &event);
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), ApplicationWorld::inMemory()};
    AppState state{world.defaults};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar{
        KestryCore::ZoneCalendar("UTC", "en_US")};
    KestryCore::MoneyText money{"en_US"};
    Commander commander{store, state, [this] { return world.now(); }, [] {}};
    SessionBridge session{commander, store, state, [this] { return world.now(); }, world.scheduler,
        {calendar, money}};
    AppearanceSettings settings{world.defaults};
    DesktopPreferences preferences;
    AppearanceBridge appearance{settings, preferences};
    std::unique_ptr<PanelStage> stage = panelStage();
    ServedEngine engine{appearance};
    MenuWindow menuWindow{engine, *stage, world.scheduler};
    SoftwareUpdater updater{{store, state}};
    SessionMenus menus{commander, store, state, updater, menuWindow, money};
    NotchWindows panels{
        engine, *stage, session, menus, preferences.reducesMotion(), state.panelPlace()};
    EventLog log;
    PanelWindow& bridge = window("Kestry");
    PanelWindow& detail = window("Kestry session controls");
    PanelWindow& bubble = window("Full session title");
};

TEST_F(NotchWindowsTest, NothingShowsBeforeItIsOrdered)
{
    EXPECT_FALSE(bridge.isVisible() || detail.isVisible() || bubble.isVisible());
}

TEST_F(NotchWindowsTest, OnlyTheBubbleCanNeverHaveTheKeyboard)
{
    EXPECT_TRUE(bubble.flags() & Qt::WindowDoesNotAcceptFocus);
    EXPECT_FALSE(detail.flags() & Qt::WindowDoesNotAcceptFocus);
}

TEST_F(NotchWindowsTest, TheDetailWindowHasRoomForItsHighestContent)
{
    panels.place(NotchPanel::detail, {480, 40, 320, 48});
    EXPECT_EQ(detail.geometry(), QRect(480, 40, 320, 92));
    EXPECT_EQ(detail.content().size(), QSizeF(320, 48));
    EXPECT_EQ(detail.frame(), QRect(480, 40, 320, 48));
}

TEST_F(NotchWindowsTest, AWindowGrowsWhenItHasToAndGetsSmallerOutOfSight)
{
    panels.show(NotchPanel::titlePreview);
    panels.place(NotchPanel::titlePreview, {480, 120, 320, 200});
    EXPECT_EQ(bubble.height(), 200);
    panels.place(NotchPanel::titlePreview, {480, 120, 320, 60});
    EXPECT_EQ(bubble.height(), 200);
    EXPECT_EQ(bubble.content().height(), 60);
    panels.hide(NotchPanel::titlePreview);
    panels.place(NotchPanel::titlePreview, {480, 120, 320, 60});
    EXPECT_EQ(bubble.height(), 60);
}

TEST_F(NotchWindowsTest, ComingAndGoingOfThePointerIsTold)
{
    enter(bridge);
    EXPECT_TRUE(panels.pointerIsOver(NotchPanel::bridge));
    leave(bridge);
    EXPECT_FALSE(panels.pointerIsOver(NotchPanel::bridge));
    enter(bubble);
    leave(bubble);
    const std::vector<std::string> told{"hover", "leave", "hover preview", "leave preview"};
    EXPECT_EQ(log.lines, told);
}

TEST_F(NotchWindowsTest, AWindowThatGoesUnderThePointerHasNoPointerOnIt)
{
    panels.show(NotchPanel::bridge);
    enter(bridge);
    panels.hide(NotchPanel::bridge);
    EXPECT_FALSE(panels.pointerIsOver(NotchPanel::bridge));
    panels.show(NotchPanel::bridge);
    enter(bridge);
    bridge.destroy();
    EXPECT_FALSE(panels.pointerIsOver(NotchPanel::bridge));
}

TEST_F(NotchWindowsTest, TheBubbleWantsItsTextWithTwelvePointsAround)
{
    const double oneLine = panels.layOutPreview("Short", 320);
    EXPECT_GT(oneLine, 24 + 12);
    EXPECT_LT(oneLine, 24 + 2 * 12);
    const std::string words = "Corrections with the printers and the photographers, second round";
    EXPECT_GT(panels.layOutPreview(words, 320), oneLine);
    EXPECT_GT(panels.layOutPreview(words, 120), panels.layOutPreview(words, 320));
}

TEST_F(NotchWindowsTest, AWordTooLongForTheBubbleIsBroken)
{
    const double oneLine = panels.layOutPreview("Short", 320);
    EXPECT_GT(panels.layOutPreview(std::string(200, 'w'), 320), oneLine);
}

TEST_F(NotchWindowsTest, MarkupInATitleIsOnlyText)
{
    const double oneLine = panels.layOutPreview("Short", 320);
    EXPECT_EQ(panels.layOutPreview("<h1>A</h1><br><br>", 320), oneLine);
}

TEST_F(NotchWindowsTest, ReducedMotionIsFollowed)
{
    EXPECT_FALSE(panels.reducesMotion());
    preferences.setReducesMotion(true);
    EXPECT_TRUE(panels.reducesMotion());
}

TEST_F(NotchWindowsTest, EachScreenIsToldWithItsUsablePart)
{
    const std::vector<ScreenMetrics> screens = panels.screens();
    ASSERT_EQ(screens.size(), 1U);
    EXPECT_TRUE(screens[0].isMain);
    EXPECT_TRUE(screens[0].frame.contains(screens[0].visibleFrame));
}

TEST_F(NotchWindowsTest, AnotherPlaceIsToldAtOnceAsAChangeOfTheScreens)
{
    const auto before = std::ranges::count(log.lines, "screens changed");
    state.setPanelPlace({.side = PanelPlace::Side::right});
    EXPECT_EQ(std::ranges::count(log.lines, "screens changed"), before + 1);
    EXPECT_EQ(panels.wantedPlace().side, PanelPlace::Side::right);
}

TEST_F(NotchWindowsTest, ThePointerIsLookedForOnlyWhereItsScreenIsWanted)
{
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    QCursor::setPos(screen.center());
    EXPECT_FALSE(panels.screens().front().hasPointer);
    state.setPanelPlace({.screen = PanelPlace::Screen::pointer});
    EXPECT_TRUE(panels.screens().front().hasPointer);
    EXPECT_EQ(
        panels.screens().front().name, QGuiApplication::primaryScreen()->name().toStdString());
}

} // namespace
} // namespace Kestry
