#include "NotchGeometry.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

ScreenMetrics plainScreen(const QRectF& frame)
{
    return {.frame = frame, .visibleFrame = frame};
}

ScreenMetrics screenWithNotch(const QRectF& frame)
{
    ScreenMetrics screen = plainScreen(frame);
    screen.topInset = 32;
    screen.auxiliaryTopLeftArea = QRectF(frame.left(), frame.top(), 600, 32);
    screen.auxiliaryTopRightArea = QRectF(frame.left() + 800, frame.top(), 600, 32);
    return screen;
}

TEST(NotchGeometry, TheNotchScreenWinsEvenIfItIsNotTheMainOne)
{
    std::vector<ScreenMetrics> screens{
        plainScreen({0, 0, 1920, 1080}), screenWithNotch({1920, 0, 1400, 900})};
    screens[0].isMain = true;
    EXPECT_EQ(notchScreen(screens), &screens[1]);
}

TEST(NotchGeometry, WithoutANotchTheMainScreenIsTakenElseTheFirst)
{
    std::vector<ScreenMetrics> screens{
        plainScreen({0, 0, 1920, 1080}), plainScreen({1920, 0, 1280, 800})};
    EXPECT_EQ(notchScreen(screens), &screens[0]);
    screens[1].isMain = true;
    EXPECT_EQ(notchScreen(screens), &screens[1]);
}

TEST(NotchGeometry, AScreenThatTheUserHasNamedComesBeforeAllOthers)
{
    std::vector<ScreenMetrics> screens{
        screenWithNotch({0, 0, 1400, 900}), plainScreen({1400, 0, 1280, 800})};
    screens[0].isMain = true;
    screens[1].name = "HDMI-1";
    const PanelPlace named{.screen = PanelPlace::Screen::named, .screenName = "HDMI-1"};
    EXPECT_EQ(notchScreen(screens, named), &screens[1]);
    screens[1].name = "DP-2"; // it is gone, until it comes back
    EXPECT_EQ(notchScreen(screens, named), &screens[0]);
}

TEST(NotchGeometry, TheScreenWithThePointerIsTakenIfThatIsWantedAndKnown)
{
    std::vector<ScreenMetrics> screens{
        plainScreen({0, 0, 1920, 1080}), plainScreen({1920, 0, 1280, 800})};
    screens[0].isMain = true;
    screens[1].hasPointer = true;
    const PanelPlace pointer{.screen = PanelPlace::Screen::pointer};
    EXPECT_EQ(notchScreen(screens, pointer), &screens[1]);
    EXPECT_EQ(notchScreen(screens), &screens[0]);
    screens[1].hasPointer = false;
    EXPECT_EQ(notchScreen(screens, pointer), &screens[0]);
}

TEST(NotchGeometry, AtASideStripAndPanelKeepTheSameDistanceFromTheEdge)
{
    const ScreenMetrics screen{.frame = {100, 0, 1280, 800}, .visibleFrame = {148, 24, 1232, 776}};
    const NotchFrames left = notchFrames(notchMeasures(screen, PanelPlace::Side::left), 48);
    EXPECT_EQ(left.bridge, QRectF(154, 30, 182, 34));
    EXPECT_EQ(left.detail, QRectF(154, 64, 320, 48));
    const NotchFrames right = notchFrames(notchMeasures(screen, PanelPlace::Side::right), 48);
    EXPECT_EQ(right.bridge, QRectF(1192, 30, 182, 34));
    EXPECT_EQ(right.detail, QRectF(1054, 64, 320, 48));
}

TEST(NotchGeometry, BesideACameraHousingTheStripDoesNotHugIt)
{
    const NotchMeasures measures =
        notchMeasures(screenWithNotch({0, 0, 1400, 900}), PanelPlace::Side::left);
    EXPECT_FALSE(measures.isFlush);
    EXPECT_EQ(measures.gap, 42);
    EXPECT_EQ(measures.centreX, 97);
}

TEST(NotchGeometry, WithoutScreensThereIsNone)
{
    EXPECT_EQ(notchScreen({}), nullptr);
}

TEST(NotchGeometry, AroundANotchTheStripHugsIt)
{
    const NotchMeasures measures = notchMeasures(screenWithNotch({0, 0, 1400, 900}));
    EXPECT_EQ(measures.gap, 200);
    EXPECT_EQ(measures.centreX, 700);
    EXPECT_EQ(measures.stripHeight, 32);
    EXPECT_EQ(measures.stripTop, 0);
    EXPECT_TRUE(measures.isFlush);
}

TEST(NotchGeometry, AreasThatOverlapLeaveNoGap)
{
    ScreenMetrics screen = screenWithNotch({0, 0, 1400, 900});
    screen.auxiliaryTopRightArea = QRectF(590, 0, 810, 32);
    EXPECT_EQ(notchMeasures(screen).gap, 0);
    EXPECT_EQ(notchMeasures(screen).centreX, 595);
}

TEST(NotchGeometry, WithoutANotchTheStripHangsInTheMiddleBelowTheDesktopsPanels)
{
    ScreenMetrics screen = plainScreen({1920, 0, 1280, 800});
    screen.visibleFrame = QRectF(1920, 31, 1280, 769);
    const NotchMeasures measures = notchMeasures(screen);
    EXPECT_EQ(measures.gap, 42);
    EXPECT_EQ(measures.centreX, 2560);
    EXPECT_EQ(measures.stripHeight, 34);
    EXPECT_EQ(measures.stripTop, 37);
    EXPECT_FALSE(measures.isFlush);
}

TEST(NotchGeometry, AnInsetWithoutBothAreasIsNoNotch)
{
    ScreenMetrics screen = screenWithNotch({0, 0, 1400, 900});
    screen.auxiliaryTopRightArea.reset();
    EXPECT_EQ(notchMeasures(screen).gap, 42);
    EXPECT_EQ(notchMeasures(screen).stripHeight, 34);
    screen.auxiliaryTopLeftArea.reset();
    EXPECT_EQ(notchMeasures(screen).gap, 42);
}

TEST(NotchGeometry, SeventyPointsOfStripShowOnEitherSideOfTheGap)
{
    const NotchFrames frames = notchFrames({42, 640, 34, 6, false}, 48);
    EXPECT_EQ(frames.bridge, QRectF(549, 6, 182, 34));
}

TEST(NotchGeometry, TheDetailPanelHangsFromTheStrip)
{
    const NotchFrames frames = notchFrames({42, 640, 34, 6, false}, 74);
    EXPECT_EQ(frames.detail, QRectF(480, 40, 320, 74));
}

TEST(NotchGeometry, TheDetailHeightFollowsWhatItShows)
{
    EXPECT_EQ(detailHeight({}), 48);
    EXPECT_EQ(detailHeight({.hasSession = true}), 74);
    EXPECT_EQ(detailHeight({.hasMessage = true}), 66);
    EXPECT_EQ(detailHeight({.hasSession = true, .hasMessage = true}), 92);
}

constexpr QRectF visible{0, 0, 1280, 800};
constexpr QRectF detail{480, 40, 320, 74};

TEST(NotchGeometry, TheBubbleHangsSixPointsBelowThePanelAsHighAsItsContent)
{
    EXPECT_EQ(titlePreviewWidth(visible), 320);
    EXPECT_EQ(titlePreviewFrame(visible, detail, 54.2), QRectF(480, 120, 320, 55));
}

TEST(NotchGeometry, TheBubbleEndsEightPointsAboveTheEdgeAndScrolls)
{
    EXPECT_EQ(titlePreviewFrame(visible, detail, 2000), QRectF(480, 120, 320, 672));
}

TEST(NotchGeometry, WithLittleRoomTheBubbleKeepsFortyPointsAndStaysOnTheScreen)
{
    EXPECT_EQ(titlePreviewFrame({0, 0, 1280, 140}, detail, 2000), QRectF(480, 92, 320, 40));
}

TEST(NotchGeometry, ABubbleWithLittleTextIsLowerThanFortyPoints)
{
    EXPECT_EQ(titlePreviewFrame({0, 0, 1280, 140}, detail, 30).height(), 30);
}

TEST(NotchGeometry, ANarrowScreenMakesTheBubbleNarrow)
{
    EXPECT_EQ(titlePreviewWidth({100, 0, 300, 800}), 284);
    EXPECT_EQ(titlePreviewFrame({100, 0, 300, 800}, {90, 40, 320, 74}, 54).left(), 108);
}

TEST(NotchGeometry, TheBubbleIsKeptWithinTheScreenOnBothSides)
{
    EXPECT_EQ(titlePreviewFrame(visible, {-40, 40, 320, 74}, 54).left(), 8);
    EXPECT_EQ(titlePreviewFrame(visible, {1100, 40, 320, 74}, 54).left(), 952);
}

TEST(NotchGeometry, APointerOnTheFarEdgesHasLeft)
{
    EXPECT_TRUE(covers(detail, {480, 40}));
    EXPECT_TRUE(covers(detail, {799.5, 113.5}));
    EXPECT_FALSE(covers(detail, {800, 60}));
    EXPECT_FALSE(covers(detail, {500, 114}));
    EXPECT_FALSE(covers(detail, {479.5, 60}));
}

} // namespace
} // namespace Kestry
