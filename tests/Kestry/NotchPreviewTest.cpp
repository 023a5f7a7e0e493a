#include <gtest/gtest.h>

#include "NotchWorld.h"

namespace Kestry {
namespace {

class NotchPreviewTest : public ::testing::Test, public NotchWorld {
protected:
    NotchPreviewTest() { hoverDetail(); }
    [[nodiscard]] bool bubbleIsUp() { return isFront(NotchPanel::titlePreview); }
};

TEST_F(NotchPreviewTest, TheBubbleShowsAQuarterOfASecondAfterThePointerCameToRest)
{
    preview();
    wait(0.239);
    EXPECT_FALSE(bubbleIsUp());
    wait(0.002);
    EXPECT_TRUE(bubbleIsUp());
    EXPECT_EQ(panels.previewedTitle, "A title that is too long for its field");
    EXPECT_EQ(panels.previewWidth, 320);
    EXPECT_EQ(panels.frames[NotchPanel::titlePreview], QRectF(480, 94, 320, 56));
}

TEST_F(NotchPreviewTest, TheBubbleFadesInFromNothing)
{
    showPreview();
    EXPECT_EQ(panels.previewOpacity, 0);
    EXPECT_EQ(panels.previewFadeSeconds, 0.12);
}

TEST_F(NotchPreviewTest, WithReducedMotionTheBubbleIsThereAtOnce)
{
    reduceMotion();
    showPreview();
    EXPECT_EQ(panels.previewOpacity, 1);
    EXPECT_EQ(panels.previewFadeSeconds, 0);
}

TEST_F(NotchPreviewTest, APointerThatMovesOnInTimeShowsNoBubble)
{
    preview();
    wait(0.2);
    notch.dismissPreview();
    wait(1);
    EXPECT_FALSE(panels.wasOrdered("preview front"));
}

TEST_F(NotchPreviewTest, AnotherTitleStartsTheWaitAnew)
{
    preview();
    wait(0.2);
    notch.previewTitle("Another title");
    wait(0.2);
    EXPECT_FALSE(bubbleIsUp());
    wait(0.05);
    EXPECT_EQ(panels.previewedTitle, "Another title");
}

TEST_F(NotchPreviewTest, NoTitleDismissesTheBubbleAfterAMoment)
{
    showPreview();
    notch.previewTitle(std::nullopt);
    wait(0.119);
    EXPECT_TRUE(bubbleIsUp());
    wait(0.002);
    EXPECT_FALSE(bubbleIsUp());
}

TEST_F(NotchPreviewTest, ATitleInTimeHoldsABubbleThatWasDismissed)
{
    showPreview();
    notch.dismissPreview();
    preview();
    wait(0.13);
    EXPECT_TRUE(bubbleIsUp());
}

TEST_F(NotchPreviewTest, APointerOnTheBubbleHoldsItAndThePanel)
{
    showPreview();
    notch.dismissPreview();
    leave();
    wait(0.1);
    point(onPreview);
    notch.hoverPreview(true);
    wait(5);
    EXPECT_TRUE(bubbleIsUp());
    EXPECT_TRUE(notch.expanded());
}

TEST_F(NotchPreviewTest, ADismissalThatFindsThePointerOnTheBubbleLeavesIt)
{
    showPreview();
    point(onPreview);
    notch.dismissPreview();
    wait(1);
    EXPECT_TRUE(bubbleIsUp());
}

TEST_F(NotchPreviewTest, LeavingTheBubbleForThePanelHidesItAndKeepsThePanel)
{
    showPreview();
    point(onPreview);
    notch.hoverPreview(true);
    point(onDetail);
    notch.hoverPreview(false);
    EXPECT_FALSE(bubbleIsUp());
    wait(1);
    EXPECT_TRUE(notch.expanded());
}

TEST_F(NotchPreviewTest, LeavingTheBubbleForNothingFoldsThePanel)
{
    showPreview();
    point(away);
    notch.hoverPreview(false);
    wait(0.13);
    EXPECT_FALSE(notch.expanded());
}

TEST_F(NotchPreviewTest, TheBubbleTakesTheFocusBack)
{
    showPreview();
    clickElsewhere();
    notch.hoverPreview(true);
    EXPECT_FALSE(notch.focusAway());
}

TEST_F(NotchPreviewTest, AFoldedPanelShowsNoTitle)
{
    fold();
    preview();
    wait(1);
    EXPECT_FALSE(bubbleIsUp());
}

TEST_F(NotchPreviewTest, ATitleBeingEditedIsNotShownInABubble)
{
    notch.editingChanged(true);
    preview();
    wait(1);
    EXPECT_FALSE(bubbleIsUp());
}

TEST_F(NotchPreviewTest, EditingThatBeginsDuringTheWaitPreventsTheBubble)
{
    preview();
    wait(0.1);
    notch.editingChanged(true);
    wait(1);
    EXPECT_FALSE(panels.wasOrdered("preview front"));
}

TEST_F(NotchPreviewTest, WhateverEndsThePanelsStandEndsTheBubble)
{
    const std::vector<void (*)(NotchWorld&)> endings{
        [](NotchWorld& user) { user.notch.layout(); },
        [](NotchWorld& user) { user.notch.hide(); },
        [](NotchWorld& user) { user.notch.dashboard(); },
        [](NotchWorld& user) { user.notch.editingChanged(true); },
        [](NotchWorld& user) { user.notch.resize(92); },
        [](NotchWorld& user) { user.notch.clickElsewhere(); },
    };
    for (const auto ending : endings) {
        NotchWorld user;
        user.showPreview();
        ending(user);
        EXPECT_FALSE(user.isFront(NotchPanel::titlePreview));
    }
}

TEST_F(NotchPreviewTest, AResizeDuringTheWaitPreventsTheBubble)
{
    preview();
    notch.resize(92);
    wait(1);
    EXPECT_FALSE(bubbleIsUp());
}

TEST_F(NotchPreviewTest, TheBubbleFollowsThePanelToItsScreen)
{
    panels.attachedScreens.push_back(
        {.frame = {1280, 0, 300, 120}, .visibleFrame = {1280, 0, 300, 120}, .isMain = true});
    panels.attachedScreens[0].isMain = false;
    point({1430, 60});
    notch.layout();
    preview();
    wait(0.25);
    EXPECT_EQ(panels.previewWidth, 284);
    EXPECT_EQ(panels.frames[NotchPanel::titlePreview], QRectF(1288, 72, 284, 40));
}

} // namespace
} // namespace Kestry
