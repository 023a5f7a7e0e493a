#include "DesktopChoices.h"

#include <gtest/gtest.h>

#include <QQuickItem>
#include <QSignalSpy>

#include "ApplicationWorld.h"
#include "FakeAutostart.h"

namespace Kestry {
namespace {

class DesktopChoicesTest : public ::testing::Test {
protected:
    [[nodiscard]] DesktopChoices made(bool knowsPointer = true)
    {
        return DesktopChoices({state, store, autostart, [this] { return screens; },
            [knowsPointer] { return knowsPointer; },
            [this](Menu opened, const QString&, const QQuickItem&) { menu = std::move(opened); }});
    }
    /// The entries of the menu of screens; the chosen one has a star.
    std::vector<std::string> entries(DesktopChoices& of)
    {
        of.openScreens(&item);
        std::vector<std::string> texts;
        for (const MenuEntry& entry : menu) {
            if (entry.kind == MenuEntry::Kind::command) {
                texts.push_back((entry.isChosen.value_or(false) ? "*" : "") + entry.text);
            }
        }
        return texts;
    }
    void choose(const std::string& text)
    {
        choices.openScreens(&item);
        std::ranges::find(menu, text, &MenuEntry::text)->action();
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), ApplicationWorld::inMemory()};
    AppState state{world.defaults};
    FakeAutostart autostart;
    std::vector<KnownScreen> screens{{"DP-1", "Panorama"}, {"HDMI-1", ""}};
    Menu menu;
    QQuickItem item;
    DesktopChoices choices = made();
};

TEST_F(DesktopChoicesTest, TheStartWithTheDesktopIsSwitched)
{
    choices.toggleAutostart();
    EXPECT_TRUE(choices.startsWithDesktop());
    choices.toggleAutostart();
    EXPECT_FALSE(autostart.on);
}

TEST_F(DesktopChoicesTest, ASwitchThatCannotBeStoredIsToldAndStays)
{
    autostart.isBroken = true;
    choices.toggleAutostart();
    EXPECT_FALSE(choices.startsWithDesktop());
    EXPECT_EQ(store.errorMessage()->value_or(""), "The disk is full.");
}

TEST_F(DesktopChoicesTest, WhatIsSwitchedOutsideShowsAtOnceOnceThePageIsOpen)
{
    const QSignalSpy changes(&choices, &DesktopChoices::changed);
    EXPECT_FALSE(autostart.followed); // nothing is watched for a page that nobody sees
    choices.open();
    const auto before = changes.count();
    autostart.on = true;
    autostart.followed();
    EXPECT_EQ(changes.count(), before + 1);
    EXPECT_TRUE(choices.startsWithDesktop());
}

TEST_F(DesktopChoicesTest, TheMenuHasEachScreenAndMarksTheChosenOne)
{
    EXPECT_EQ(entries(choices),
        (std::vector<std::string>{
            "*Primary screen", "Screen with the pointer", "DP-1 · Panorama", "HDMI-1"}));
    choose("HDMI-1");
    EXPECT_EQ(choices.screen(), "HDMI-1");
    EXPECT_EQ(world.defaults.strings["panelScreen"], "screen:HDMI-1");
    EXPECT_EQ(entries(choices).back(), "*HDMI-1");
    choose("Screen with the pointer");
    EXPECT_EQ(choices.screen(), "Screen with the pointer");
    choose("Primary screen");
    EXPECT_EQ(*state.panelPlace(), PanelPlace{});
}

TEST_F(DesktopChoicesTest, AScreenThatIsGoneStaysChosenAndIsToldOf)
{
    choose("HDMI-1");
    EXPECT_EQ(choices.screenDetail(), "The screen that shows your timer");
    const QSignalSpy changes(&choices, &DesktopChoices::changed);
    screens.pop_back();
    choices.screensChanged();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(
        choices.screenDetail(), "Not connected. Until it is, the primary screen shows your timer");
    EXPECT_EQ(entries(choices).back(), "*HDMI-1 · not connected");
}

TEST_F(DesktopChoicesTest, WhereNobodyTellsOfThePointerItsScreenIsNotOffered)
{
    DesktopChoices blind = made(false);
    EXPECT_EQ(
        entries(blind), (std::vector<std::string>{"*Primary screen", "DP-1 · Panorama", "HDMI-1"}));
}

TEST_F(DesktopChoicesTest, TheSideIsStoredBesideTheScreen)
{
    EXPECT_EQ(DesktopChoices::sides().at(choices.side()), "Center");
    choose("DP-1 · Panorama");
    choices.chooseSide(2);
    EXPECT_EQ(DesktopChoices::sides().at(choices.side()), "Right");
    EXPECT_EQ(world.defaults.strings["panelSide"], "right");
    EXPECT_EQ(choices.screen(), "DP-1");
    choices.chooseSide(3);
    choices.chooseSide(-1);
    EXPECT_EQ(choices.side(), 2);
}

} // namespace
} // namespace Kestry
