// Each event that reaches the notch controller, and the orders that it gives for it, in order.

#include <gtest/gtest.h>

#include <vector>

#include "NotchWorld.h"

namespace Kestry {
namespace {

using Orders = std::vector<std::string>;
using Step = void (*)(NotchWorld&);

struct Rule {
    const char* name; ///< The rule in words.
    Step before;
    Step event;
    Orders orders;
};

void nothing(NotchWorld&) { }
void hoverStrip(NotchWorld& user)
{
    user.hoverStrip();
}
void hoverStripStill(NotchWorld& user)
{
    user.reduceMotion();
    user.hoverStrip();
}
void hideStrip(NotchWorld& user)
{
    user.hideStrip();
}
void openWithAMenu(NotchWorld& user)
{
    user.hoverStrip();
    user.openMenu();
}
void leaveJustNow(NotchWorld& user)
{
    user.hoverStrip();
    user.leave();
}
void showPreview(NotchWorld& user)
{
    user.showPreview();
}
void beginEditing(NotchWorld& user)
{
    user.beginEditing();
}
void fold(NotchWorld& user)
{
    user.fold();
}
void startFolding(NotchWorld& user)
{
    user.startFolding();
}

void layout(NotchWorld& user)
{
    user.notch.layout();
}
void pointAndLayout(NotchWorld& user)
{
    user.point(NotchWorld::onStrip);
    user.notch.layout();
}
void toggle(NotchWorld& user)
{
    user.notch.toggleOpen();
}
void makeVisible(NotchWorld& user)
{
    user.notch.makeVisible();
}
void enter(NotchWorld& user)
{
    user.movePointer(NotchWorld::onStrip, true);
}
void enterAndTurn(NotchWorld& user)
{
    user.hoverStrip();
}
void leave(NotchWorld& user)
{
    user.leave();
}
void leaveAndWait(NotchWorld& user)
{
    user.leave();
    user.wait(1);
}
void moveOntoDetail(NotchWorld& user)
{
    user.movePointer(NotchWorld::onDetail, false);
}
void turn(NotchWorld& user)
{
    user.scheduler.turn();
}
void wait(NotchWorld& user)
{
    user.wait(1);
}
void clickElsewhere(NotchWorld& user)
{
    user.clickElsewhere();
}
void clickInside(NotchWorld& user)
{
    user.notch.clickInside();
}
void resignKey(NotchWorld& user)
{
    user.panels.isKey = false;
    user.notch.detailLostFocus();
}
void edit(NotchWorld& user)
{
    user.notch.editingChanged(true);
}
void endEditing(NotchWorld& user)
{
    user.notch.editingChanged(false);
}
void resizeTo92(NotchWorld& user)
{
    user.notch.resize(92);
}
void resizeTo48(NotchWorld& user)
{
    user.notch.resize(48);
}
void askForTheWindow(NotchWorld& user)
{
    user.notch.dashboard();
}
void previewAndWait(NotchWorld& user)
{
    user.preview();
    user.wait(0.25);
}
void dismissAndWait(NotchWorld& user)
{
    user.notch.dismissPreview();
    user.wait(0.13);
}
void enterPreview(NotchWorld& user)
{
    user.point(NotchWorld::onPreview);
    user.notch.hoverPreview(true);
}
void leavePreview(NotchWorld& user)
{
    user.point(NotchWorld::away);
    user.notch.hoverPreview(false);
}
void loseTheScreens(NotchWorld& user)
{
    user.panels.attachedScreens.clear();
    user.notch.screensChanged();
}

void gainAScreen(NotchWorld& user)
{
    user.panels.attachedScreens = FakePanels().attachedScreens;
    user.notch.screensChanged();
}

const Orders nothingAtAll{};
const Orders foldAtOnce{"preview out", "end editing", "hidden at once", "detail out"};

const std::vector<Rule> rules{
    {"LayoutOfAStripPlacesRebuildsAndShowsItAlone", nothing, layout,
        {"preview out", "hidden at once", "place bridge", "place detail", "not hovered", "rebuild",
            "detail out", "bridge front"}},
    {"LayoutOfAnOpenPanelKeepsItAndItsContentOnScreen", hoverStrip, layout,
        {"preview out", "shown at once", "place bridge", "place detail", "hovered", "rebuild",
            "bridge front", "detail front"}},
    {"LayoutUnderThePointerHoversAndDoesNotUnfold", nothing, pointAndLayout,
        {"preview out", "hidden at once", "place bridge", "place detail", "hovered", "rebuild",
            "detail out", "bridge front"}},
    {"LayoutWhileHiddenShowsNothingAndHoversNothing", hideStrip, pointAndLayout,
        {"preview out", "hidden at once", "place bridge", "place detail", "not hovered", "rebuild",
            "detail out"}},
    {"WithoutScreensEverythingIsOrderedOut", hoverStrip, loseTheScreens,
        {"close menus", "preview out", "hidden at once", "not hovered", "bridge out",
            "detail out"}},
    {"TheFirstScreenBringsTheStripBack", loseTheScreens, gainAScreen,
        {"close menus", "preview out", "hidden at once", "place bridge", "place detail",
            "not hovered", "rebuild", "detail out", "bridge front"}},
    {"TheFirstScreenBringsNoStripThatIsSwitchedOff",
        [](NotchWorld& user) {
            loseTheScreens(user);
            hideStrip(user);
        },
        gainAScreen,
        {"close menus", "preview out", "hidden at once", "place bridge", "place detail",
            "not hovered", "rebuild", "detail out"}},
    {"WithoutScreensTheStripIsSwitchedOnUnseen",
        [](NotchWorld& user) {
            hideStrip(user);
            loseTheScreens(user);
        },
        makeVisible, {"preview out", "hidden at once", "not hovered", "bridge out", "detail out"}},
    {"WithoutScreensToggleUnfoldsNothing", loseTheScreens, toggle, nothingAtAll},
    {"WithoutScreensThePointerUnfoldsNothing", loseTheScreens, enterAndTurn, nothingAtAll},
    {"WithoutScreensEditingTakesNoKeyboard", loseTheScreens, edit, nothingAtAll},

    {"EnteringOrdersThePanelFrontBeforeItsContentMoves", nothing, enter,
        {"hovered", "detail front"}},
    {"ATurnLaterTheContentUnfolds", nothing, enterAndTurn,
        {"hovered", "detail front", "shown by spring"}},
    {"WithReducedMotionTheContentIsThereATurnLater", [](NotchWorld& user) { user.reduceMotion(); },
        enterAndTurn, {"hovered", "detail front", "shown at once"}},
    {"EnteringAnOpenPanelOrdersNothingNew", hoverStrip, enter, {"hovered"}},
    {"EnteringAHiddenStripShowsNothing", hideStrip, enter,
        {"hovered", "preview out", "end editing", "hidden by ease-out"}},
    {"MovingFromTheStripToThePanelHoldsIt", hoverStrip, moveOntoDetail, {"hovered"}},
    {"LeavingFoldsThePanelAndThenOrdersItOut", hoverStrip, leaveAndWait,
        {"not hovered", "preview out", "end editing", "hidden by ease-out", "detail out"}},
    {"LeavingWithReducedMotionOrdersItOutInTheSameTurn", hoverStripStill, leaveAndWait,
        {"not hovered", "preview out", "end editing", "hidden at once", "detail out"}},
    {"EnteringWhileItFoldsUnfoldsAgainAndOrdersNothingOut", startFolding,
        [](NotchWorld& user) {
            user.hoverStrip();
            user.wait(1);
        },
        {"hovered", "detail front", "shown by spring"}},
    {"LeavingAFoldedStripOnlyEndsTheHover", fold, leave, {"not hovered"}},

    {"ToggleUnfoldsAndTakesTheKeyboard", nothing, toggle,
        {"detail front", "focus detail", "detail front"}},
    {"ToggleOnAPanelOpenByHoverOnlyTakesTheKeyboard", hoverStrip, toggle,
        {"focus detail", "detail front"}},
    {"ToggleOnAPanelOpenOnPurposeFoldsIt", beginEditing, toggle,
        {"preview out", "end editing", "hidden by ease-out"}},
    {"ToggleOnAHiddenStripShowsItFirst", hideStrip, toggle,
        {"preview out", "hidden at once", "place bridge", "place detail", "not hovered", "rebuild",
            "detail out", "bridge front", "bridge front", "detail front", "focus detail",
            "detail front"}},
    {"MakingVisibleLaysOutAndOrdersTheStripFront", hideStrip, makeVisible,
        {"preview out", "hidden at once", "place bridge", "place detail", "not hovered", "rebuild",
            "detail out", "bridge front", "bridge front"}},
    {"HidingOrdersEverythingOut", hoverStrip, hideStrip,
        {"close menus", "preview out", "hidden at once", "not hovered", "bridge out",
            "detail out"}},

    {"EditingTakesTheKeyboardAndEndsAPreview", hoverStrip, edit,
        {"preview out", "focus detail", "detail front"}},
    {"TheEndOfEditingOrdersNothingByItself", beginEditing, endEditing, nothingAtAll},

    {"AClickElsewhereEndsTypingAndThenFolds", hoverStrip,
        [](NotchWorld& user) {
            user.clickElsewhere();
            user.wait(1);
        },
        {"preview out", "end editing", "preview out", "end editing", "hidden by ease-out",
            "detail out"}},
    {"LosingTheKeyboardDoesWhatAClickElsewhereDoes", beginEditing, resignKey,
        {"preview out", "end editing"}},
    {"AClickElsewhereUnderAMenuDoesNothing", openWithAMenu, clickElsewhere, nothingAtAll},
    {"AClickElsewhereWhileFoldedDoesNothing", nothing, clickElsewhere, nothingAtAll},
    {"AClickElsewhereWhileHiddenDoesNothing", hideStrip, clickElsewhere, nothingAtAll},
    {"AClickInsideHoldsAPanelThatWasAboutToFold", leaveJustNow,
        [](NotchWorld& user) {
            clickInside(user);
            wait(user);
        },
        nothingAtAll},

    {"AResizeKeepsTheUpperEdgeAndEndsAPreview", hoverStrip, resizeTo92,
        {"place detail", "preview out"}},
    {"AResizeToTheSameHeightDoesNothing", hoverStrip, resizeTo48, nothingAtAll},
    {"TheWindowActionFoldsThePanel", hoverStrip, askForTheWindow,
        {"preview out", "end editing", "hidden by ease-out"}},
    {"TheWindowActionWithReducedMotionFoldsAtOnce", hoverStripStill, askForTheWindow, foldAtOnce},

    {"APreviewIsLaidOutPlacedAndFadedInInFront", hoverStrip, previewAndWait,
        {"lay out preview", "place preview", "fade preview in", "preview front"}},
    {"ADismissedPreviewGoes", showPreview, dismissAndWait, {"preview out"}},
    {"EnteringTheBubbleHovers", showPreview, enterPreview, {"hovered"}},
    {"LeavingTheBubbleHidesItAtOnce", showPreview, leavePreview, {"preview out", "not hovered"}},
    {"LayoutEndsAPreview", showPreview,
        [](NotchWorld& user) {
            user.notch.layout();
            user.panels.orders.resize(1);
        },
        {"preview out"}},
    {"NothingIsOrderedLaterThatAnEarlierTransitionAskedFor", nothing,
        [](NotchWorld& user) {
            enter(user);
            hideStrip(user);
            user.panels.orders.clear();
            turn(user);
            wait(user);
        },
        nothingAtAll},
};

class NotchOrders : public ::testing::TestWithParam<Rule> { };

TEST_P(NotchOrders, AreGivenInOrder)
{
    const Rule& rule = GetParam();
    NotchWorld user;
    rule.before(user);
    user.panels.orders.clear();
    rule.event(user);
    EXPECT_EQ(user.panels.orders, rule.orders);
}

INSTANTIATE_TEST_SUITE_P(NotchController, NotchOrders, ::testing::ValuesIn(rules),
    [](const ::testing::TestParamInfo<Rule>& rule) { return std::string(rule.param.name); });

} // namespace
} // namespace Kestry
