#include "NotchController.h"

#include <gtest/gtest.h>

#include <utility>

#include "NotchWorld.h"

namespace Kestry {
namespace {

class NotchControllerTest : public ::testing::Test, public NotchWorld { };

TEST_F(NotchControllerTest, VisibleItShowsTheStripAlone)
{
    EXPECT_TRUE(isFront(NotchPanel::bridge));
    EXPECT_FALSE(isFront(NotchPanel::detail));
    EXPECT_FALSE(panels.shown);
}

TEST_F(NotchControllerTest, BeforeItIsMadeVisibleNothingShows)
{
    FakePanels hidden;
    const NotchController other(hidden, scheduler, store, [] {});
    EXPECT_FALSE(hidden.isFront[NotchPanel::bridge]);
    EXPECT_EQ(hidden.frames[NotchPanel::bridge], QRectF(549, 6, 182, 34));
}

TEST_F(NotchControllerTest, HoverUnfoldsTheDetailPanelAndMovesItsContentATurnLater)
{
    movePointer(onStrip, true);
    EXPECT_TRUE(isFront(NotchPanel::detail));
    EXPECT_TRUE(panels.hovered);
    EXPECT_FALSE(panels.shown);
    scheduler.turn();
    EXPECT_TRUE(panels.shown);
    EXPECT_EQ(panels.motion, RevealMotion::unfold);
}

TEST_F(NotchControllerTest, ALeftPanelFoldsAfterAShortDelayAndGoesWhenItsContentHasGone)
{
    hoverStrip();
    leave();
    wait(0.119);
    EXPECT_TRUE(notch.expanded());
    wait(0.002);
    EXPECT_FALSE(notch.expanded());
    EXPECT_FALSE(panels.shown);
    EXPECT_EQ(panels.motion, RevealMotion::fold);
    EXPECT_TRUE(isFront(NotchPanel::detail));
    wait(0.15);
    EXPECT_FALSE(isFront(NotchPanel::detail));
    EXPECT_TRUE(isFront(NotchPanel::bridge));
}

TEST_F(NotchControllerTest, APointerThatComesBackWithinTheDelayPreventsTheCollapse)
{
    hoverStrip();
    leave();
    wait(0.1);
    movePointer(onDetail, true);
    wait(1);
    EXPECT_TRUE(notch.expanded());
}

TEST_F(NotchControllerTest, APointerThatMovesFromTheStripToThePanelHoldsItOpen)
{
    hoverStrip();
    movePointer(onDetail, false);
    EXPECT_TRUE(panels.hovered);
    wait(1);
    EXPECT_TRUE(notch.expanded());
}

TEST_F(NotchControllerTest, AHoverWhileItFoldsNeverClosesTheReopenedPanel)
{
    hoverStrip();
    leave();
    wait(0.2);
    EXPECT_FALSE(notch.expanded());
    hoverStrip();
    wait(1);
    EXPECT_TRUE(isFront(NotchPanel::detail));
    EXPECT_TRUE(panels.shown);
}

TEST_F(NotchControllerTest, ALeaveBeforeTheContentMovedKeepsItHidden)
{
    movePointer(onStrip, true);
    notch.hide();
    wait(1);
    EXPECT_FALSE(panels.shown);
}

TEST_F(NotchControllerTest, AMenuHoldsThePanelUntilItEnds)
{
    hoverStrip();
    notch.menuOpened(7);
    leave();
    wait(5);
    EXPECT_TRUE(notch.expanded());
    notch.menuClosed(7);
    wait(0.119);
    EXPECT_TRUE(notch.expanded());
    wait(0.002);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchControllerTest, AMenuThatWasOpenedElsewhereHoldsNothing)
{
    notch.menuOpened(7);
    hoverStrip();
    leave();
    wait(0.2);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchControllerTest, AClickElsewhereFoldsThePanelWhereverThePointerIs)
{
    hoverStrip();
    notch.clickElsewhere();
    EXPECT_TRUE(notch.focusAway());
    wait(0.13);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchControllerTest, AClickElsewhereUnderAnOpenMenuIsTheMenus)
{
    hoverStrip();
    notch.menuOpened(7);
    notch.clickElsewhere();
    EXPECT_FALSE(notch.focusAway());
}

TEST_F(NotchControllerTest, AClickElsewhereWhileFoldedChangesNothing)
{
    notch.clickElsewhere();
    EXPECT_FALSE(notch.focusAway());
}

TEST_F(NotchControllerTest, AClickOnThePanelTakesTheFocusBack)
{
    hoverStrip();
    notch.clickElsewhere();
    notch.clickInside();
    EXPECT_FALSE(notch.focusAway());
    wait(1);
    EXPECT_TRUE(notch.expanded());
}

TEST_F(NotchControllerTest, AClickElsewhereWhileEditingEndsItAndFolds)
{
    beginEditing();
    notch.clickElsewhere();
    EXPECT_FALSE(notch.editingTitle());
    EXPECT_TRUE(panels.wasOrdered("end editing"));
    wait(0.13);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchControllerTest, EditingTakesTheKeyboardAndHoldsThePanelWithThePointerAway)
{
    beginEditing();
    EXPECT_TRUE(panels.isKey);
    EXPECT_TRUE(notch.clickedOpen());
    leave();
    wait(5);
    EXPECT_TRUE(notch.expanded());
}

TEST_F(NotchControllerTest, LosingTheKeyboardWhileEditingFolds)
{
    beginEditing();
    leave();
    panels.isKey = false;
    notch.detailLostFocus();
    wait(0.13);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchControllerTest, TheEndOfEditingFoldsAPanelThatThePointerHasLeft)
{
    beginEditing();
    leave();
    notch.editingChanged(false);
    wait(0.13);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchControllerTest, TheEndOfEditingUnderThePointerKeepsThePanel)
{
    beginEditing();
    notch.editingChanged(false);
    wait(5);
    EXPECT_TRUE(notch.expanded());
}

TEST_F(NotchControllerTest, TheToggleOpensWithTheKeyboardAndCloses)
{
    notch.toggleOpen();
    EXPECT_TRUE(notch.expanded());
    EXPECT_TRUE(notch.clickedOpen());
    EXPECT_TRUE(panels.isKey);
    notch.toggleOpen();
    EXPECT_FALSE(notch.expanded());
    EXPECT_FALSE(notch.clickedOpen());
}

TEST_F(NotchControllerTest, TheToggleMakesAHiddenStripVisible)
{
    notch.hide();
    notch.toggleOpen();
    EXPECT_TRUE(notch.isVisible());
    EXPECT_TRUE(isFront(NotchPanel::bridge));
    EXPECT_TRUE(isFront(NotchPanel::detail));
}

TEST_F(NotchControllerTest, APanelOpenedOnPurposeFoldsWhenThePointerLeavesIt)
{
    notch.toggleOpen();
    movePointer(onDetail, true);
    leave();
    wait(0.13);
    EXPECT_FALSE(notch.expanded());
    EXPECT_FALSE(notch.clickedOpen());
}

TEST_F(NotchControllerTest, HidingTakesEverythingOffAtOnce)
{
    beginEditing();
    notch.menuOpened(7);
    notch.hide();
    EXPECT_FALSE(isFront(NotchPanel::bridge));
    EXPECT_FALSE(isFront(NotchPanel::detail));
    EXPECT_FALSE(panels.shown || panels.hovered);
    EXPECT_FALSE(notch.isVisible() || notch.expanded() || notch.clickedOpen());
    EXPECT_FALSE(notch.editingTitle());
}

TEST_F(NotchControllerTest, HidingLeavesTheFocusAway)
{
    hoverStrip();
    notch.clickElsewhere();
    notch.hide();
    EXPECT_TRUE(notch.focusAway());
}

TEST_F(NotchControllerTest, HoverOnAHiddenStripShowsNothing)
{
    notch.hide();
    movePointer(onStrip, true);
    wait(1);
    EXPECT_FALSE(isFront(NotchPanel::detail));
    EXPECT_FALSE(panels.shown);
}

TEST_F(NotchControllerTest, ReducedMotionLeavesOutSpringFadeAndDelay)
{
    panels.reduceMotion = true;
    hoverStrip();
    EXPECT_TRUE(panels.shown);
    EXPECT_EQ(panels.motion, RevealMotion::none);
    leave();
    wait(0.121);
    EXPECT_FALSE(panels.shown);
    EXPECT_EQ(panels.motion, RevealMotion::none);
    EXPECT_FALSE(isFront(NotchPanel::detail));
}

TEST_F(NotchControllerTest, AChangeOfScreensEndsAnEditAndKeepsAnOpenPanel)
{
    beginEditing();
    panels.attachedScreens[0].visibleFrame = QRectF(0, 31, 1280, 769);
    notch.screensChanged();
    EXPECT_FALSE(notch.editingTitle());
    EXPECT_TRUE(panels.wasOrdered("rebuild"));
    EXPECT_TRUE(panels.shown);
    EXPECT_EQ(panels.frames[NotchPanel::bridge].top(), 37);
}

TEST_F(NotchControllerTest, TheStripGoesToTheScreenThatIsNamedAndComesBackWithIt)
{
    const ScreenMetrics other{
        .frame = {1280, 0, 1280, 800}, .visibleFrame = {1280, 0, 1280, 800}, .name = "HDMI-1"};
    panels.wanted = {.screen = PanelPlace::Screen::named, .screenName = "HDMI-1"};
    panels.attachedScreens.push_back(other);
    notch.screensChanged();
    EXPECT_EQ(panels.frames[NotchPanel::bridge].center().x(), 1920);
    panels.attachedScreens.pop_back();
    notch.screensChanged();
    EXPECT_EQ(panels.frames[NotchPanel::bridge].center().x(), 640);
    panels.attachedScreens.push_back(other);
    notch.screensChanged();
    EXPECT_EQ(panels.frames[NotchPanel::bridge].center().x(), 1920);
    EXPECT_TRUE(panels.isFront[NotchPanel::bridge]);
}

TEST_F(NotchControllerTest, TheStripGoesToTheSideThatIsWanted)
{
    panels.wanted.side = PanelPlace::Side::left;
    notch.screensChanged();
    EXPECT_EQ(panels.frames[NotchPanel::bridge].left(), 6);
    EXPECT_EQ(panels.frames[NotchPanel::detail].left(), 6);
    panels.wanted.side = PanelPlace::Side::right;
    notch.screensChanged();
    EXPECT_EQ(panels.frames[NotchPanel::bridge].right(), 1274);
    EXPECT_EQ(panels.frames[NotchPanel::detail].right(), 1274);
}

TEST_F(NotchControllerTest, ALayoutThatMovesThePanelFromUnderThePointerFoldsIt)
{
    hoverStrip();
    panels.attachedScreens[0].frame = QRectF(1280, 0, 1280, 800);
    panels.attachedScreens[0].visibleFrame = panels.attachedScreens[0].frame;
    notch.screensChanged();
    EXPECT_FALSE(panels.hovered);
    wait(0.13);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchControllerTest, AChangeOfScreensClosesAMenuAndThePanelFoldsByItself)
{
    hoverStrip();
    openMenu();
    leave();
    notch.screensChanged();
    EXPECT_TRUE(panels.wasOrdered("close menus"));
    wait(1);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchControllerTest, APanelThatWasOpenWhenTheLastScreenWentComesBackFolded)
{
    beginEditing();
    const auto screens = std::exchange(panels.attachedScreens, {});
    notch.screensChanged();
    EXPECT_FALSE(notch.expanded() || notch.clickedOpen() || notch.editingTitle());
    EXPECT_TRUE(notch.isVisible());
    panels.attachedScreens = screens;
    notch.screensChanged();
    EXPECT_TRUE(isFront(NotchPanel::bridge));
    EXPECT_FALSE(isFront(NotchPanel::detail));
    hoverStrip();
    EXPECT_TRUE(isFront(NotchPanel::detail));
}

TEST_F(NotchControllerTest, StartedWithoutAScreenItShowsTheStripOnTheFirst)
{
    FakePanels unseen;
    const auto screens = std::exchange(unseen.attachedScreens, {});
    NotchController other(unseen, scheduler, store, [] {});
    other.makeVisible();
    EXPECT_FALSE(unseen.isFront[NotchPanel::bridge]);
    unseen.attachedScreens = screens;
    other.screensChanged();
    EXPECT_TRUE(unseen.isFront[NotchPanel::bridge]);
    EXPECT_EQ(unseen.frames[NotchPanel::bridge], QRectF(549, 6, 182, 34));
}

TEST_F(NotchControllerTest, AMessageMakesThePanelHigherAtTheNextLayout)
{
    store.reportFailure("The disk is full.");
    EXPECT_EQ(detailHeight(), 48);
    notch.layout();
    EXPECT_EQ(detailHeight(), 66);
}

TEST_F(NotchControllerTest, AClockThatWasSetMakesThePanelHigherAtTheNextLayout)
{
    const KestryCore::Uuid client = addClient(store, "Aster");
    store.start(addProject(store, client, "Website"), "", world.now());
    world.scheduler.advance(10);
    world.clockAhead = 3600;
    store.pause(world.now());
    ASSERT_TRUE(store.clockJump()->has_value());
    notch.layout();
    EXPECT_EQ(detailHeight(), 92);
}

TEST_F(NotchControllerTest, AMessageMakesAnOpenPanelHigherWhenItsViewAsks)
{
    hoverStrip();
    store.reportFailure("The disk is full.");
    notch.resize(Kestry::detailHeight({.hasMessage = true}));
    EXPECT_EQ(detailHeight(), 66);
}

TEST_F(NotchControllerTest, ReducedMotionIsReadAtEachTransition)
{
    hoverStrip();
    EXPECT_EQ(panels.motion, RevealMotion::unfold);
    reduceMotion();
    leave();
    wait(0.121);
    EXPECT_FALSE(isFront(NotchPanel::detail));
    EXPECT_EQ(panels.motion, RevealMotion::none);
}

TEST_F(NotchControllerTest, TheFirstEndOfTwoMenusStillHoldsThePanel)
{
    hoverStrip();
    notch.menuOpened(7);
    notch.menuOpened(8);
    leave();
    notch.menuClosed(7);
    wait(1);
    EXPECT_TRUE(notch.expanded());
    notch.menuClosed(8);
    wait(1);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchControllerTest, TheEndOfAMenuThatItDoesNotKnowSchedulesNothing)
{
    hoverStrip();
    point(away);
    notch.menuClosed(9);
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(NotchControllerTest, ARunningCollapseIsStoppedByAMenu)
{
    hoverStrip();
    leave();
    wait(0.1);
    notch.menuOpened(7);
    wait(1);
    EXPECT_TRUE(notch.expanded());
}

TEST_F(NotchControllerTest, AResizeKeepsTheUpperEdge)
{
    notch.resize(120);
    EXPECT_EQ(panels.frames[NotchPanel::detail], QRectF(480, 40, 320, 120));
}

TEST_F(NotchControllerTest, TheDashboardActionFoldsThePanelFirst)
{
    hoverStrip();
    notch.dashboard();
    EXPECT_FALSE(notch.expanded());
    EXPECT_EQ(dashboards, 1);
}

TEST_F(NotchControllerTest, PressingTheStripOpensTheWindowAndLeavesThePanel)
{
    hoverStrip();
    notch.openApp();
    EXPECT_TRUE(notch.expanded());
    EXPECT_EQ(dashboards, 1);
}

TEST_F(NotchControllerTest, NothingIsScheduledWhileNothingMoves)
{
    EXPECT_TRUE(scheduler.isIdle());
    hoverStrip();
    EXPECT_TRUE(scheduler.isIdle());
    leave();
    wait(1);
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(NotchControllerTest, AControllerThatIsGoneLeavesNoDelayedAction)
{
    FakePanels others;
    {
        NotchController gone(others, scheduler, store, [] {});
        gone.makeVisible();
        gone.toggleOpen();
    }
    wait(1);
    EXPECT_FALSE(others.shown);
    EXPECT_EQ(others.events, nullptr);
}

} // namespace
} // namespace Kestry
