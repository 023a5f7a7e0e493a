#include "MenuController.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

#include "VirtualScheduler.h"

namespace Kestry {
namespace {

Menu sampleMenu(std::vector<std::string>& done)
{
    const auto command = [&done](std::string text) {
        return MenuEntry{.text = text, .action = [&done, text] { done.push_back(text); }};
    };
    MenuEntry disabled = command("Check");
    disabled.isEnabled = false;
    MenuEntry more{.text = "More", .entries = {command("Pause"), command("Stop")}};
    return {disabled, MenuEntry::separator(), command("Birch"), command("Beech"), command("Öre"),
        more, MenuEntry::heading("End")};
}

class MenuControllerTest : public ::testing::Test {
protected:
    MenuControllerTest()
    {
        QObject::connect(&menu, &MenuController::chosen, [](const auto& action) { action(); });
        QObject::connect(&menu, &MenuController::dismissed, [this] { ++dismissals; });
        menu.open(sampleMenu(done), "Trees", MenuController::Panel);
    }

    void type(const QString& letters)
    {
        for (const QChar letter : letters) {
            menu.press(letter == ' ' ? int{Qt::Key_Space} : letter.toUpper().unicode(), letter);
        }
    }
    void press(Qt::Key key) { menu.press(key, {}); }
    [[nodiscard]] std::string current() const
    {
        return menu.data(menu.index(menu.current()), MenuController::TextRole)
            .toString()
            .toStdString();
    }

    std::vector<std::string> done;
    int dismissals = 0;
    KestryCore::VirtualScheduler scheduler;
    MenuController menu{scheduler};
    QAbstractItemModelTester tester{&menu};
};

TEST_F(MenuControllerTest, NothingIsHighlightedAtFirstAndReturnDoesNothing)
{
    EXPECT_EQ(menu.current(), -1);
    press(Qt::Key_Return);
    type(" ");
    EXPECT_TRUE(done.empty());
    EXPECT_EQ(dismissals, 0);
}

TEST_F(MenuControllerTest, TabMovesAsTheArrowsDo)
{
    press(Qt::Key_Tab);
    EXPECT_EQ(current(), "Birch");
    press(Qt::Key_Backtab);
    EXPECT_EQ(current(), "More");
    press(Qt::Key_Tab);
    EXPECT_EQ(current(), "Birch");
}

TEST_F(MenuControllerTest, ArrowsSkipWhatCannotBeChosenAndGoAround)
{
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "Birch");
    press(Qt::Key_Up);
    EXPECT_EQ(current(), "More");
    press(Qt::Key_Down);
    EXPECT_EQ(current(), "Birch");
}

TEST_F(MenuControllerTest, UpHighlightsTheLastEntryFirst)
{
    press(Qt::Key_Up);
    EXPECT_EQ(current(), "More");
}

TEST_F(MenuControllerTest, HomeAndEndHighlightTheFirstAndTheLast)
{
    press(Qt::Key_End);
    EXPECT_EQ(current(), "More");
    press(Qt::Key_Home);
    EXPECT_EQ(current(), "Birch");
}

TEST_F(MenuControllerTest, ReturnEnterAndSpaceChoose)
{
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    press(Qt::Key_Enter);
    type(" ");
    EXPECT_EQ(done, (std::vector<std::string>{"Birch", "Birch", "Birch"}));
}

TEST_F(MenuControllerTest, ALetterGoesToTheNextEntryThatBeginsWithIt)
{
    type("b");
    EXPECT_EQ(current(), "Birch");
    type("b");
    EXPECT_EQ(current(), "Beech");
    type("b");
    EXPECT_EQ(current(), "Birch");
}

TEST_F(MenuControllerTest, LettersTypedTogetherAreTheBeginningOfAnEntry)
{
    type("be");
    EXPECT_EQ(current(), "Beech");
    type("x");
    EXPECT_EQ(current(), "Beech");
}

TEST_F(MenuControllerTest, ALetterThatDoesNotGoOnWithTheWordBeginsAnother)
{
    type("bbm");
    EXPECT_EQ(current(), "More");
}

TEST_F(MenuControllerTest, AfterAPauseALetterBeginsAnew)
{
    type("be");
    scheduler.advance(1.1);
    type("m");
    EXPECT_EQ(current(), "More");
}

TEST_F(MenuControllerTest, LettersBeyondAsciiAndOfEitherCaseAreFound)
{
    menu.press(0, "ö");
    EXPECT_EQ(current(), "Öre");
}

TEST_F(MenuControllerTest, ADisabledEntryIsNotFoundNorChosen)
{
    type("c");
    EXPECT_EQ(menu.current(), -1);
    menu.choose(0);
    menu.choose(1);
    menu.choose(6);
    menu.choose(99);
    EXPECT_TRUE(done.empty());
}

TEST_F(MenuControllerTest, ThePointerHighlightsOnlyWhatCanBeChosen)
{
    menu.point(2);
    EXPECT_EQ(current(), "Birch");
    menu.point(1);
    EXPECT_EQ(menu.current(), -1);
}

TEST_F(MenuControllerTest, RightOpensASubmenuAndLeftReturnsToItsEntry)
{
    press(Qt::Key_Up);
    press(Qt::Key_Right);
    EXPECT_TRUE(menu.isSubmenu());
    EXPECT_EQ(menu.name(), "More");
    EXPECT_EQ(current(), "Pause");
    press(Qt::Key_Left);
    EXPECT_FALSE(menu.isSubmenu());
    EXPECT_EQ(current(), "More");
    press(Qt::Key_Left);
    EXPECT_EQ(menu.name(), "Trees");
}

TEST_F(MenuControllerTest, RightOnAPlainEntryDoesNothing)
{
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    EXPECT_FALSE(menu.isSubmenu());
    EXPECT_TRUE(done.empty());
}

TEST_F(MenuControllerTest, AnEntryOfASubmenuIsChosen)
{
    menu.choose(5);
    EXPECT_TRUE(done.empty());
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(done, std::vector<std::string>{"Stop"});
}

TEST_F(MenuControllerTest, EscapeLeavesASubmenuAndThenTheMenu)
{
    menu.choose(5);
    press(Qt::Key_Escape);
    EXPECT_FALSE(menu.isSubmenu());
    EXPECT_EQ(dismissals, 0);
    press(Qt::Key_Escape);
    EXPECT_EQ(dismissals, 1);
}

TEST_F(MenuControllerTest, KeysWithoutAMeaningDoNothing)
{
    menu.press(Qt::Key_Shift, {});
    menu.press(Qt::Key_F5, "\t");
    menu.press(Qt::Key_F10, {});
    EXPECT_EQ(menu.current(), -1);
    EXPECT_EQ(dismissals, 0);
}

TEST_F(MenuControllerTest, AnotherMenuBeginsWithoutAHighlight)
{
    menu.choose(5);
    menu.open({MenuEntry{.text = "Only"}}, "Another", MenuController::Window);
    EXPECT_FALSE(menu.isSubmenu());
    EXPECT_EQ(menu.current(), -1);
    EXPECT_EQ(menu.rowCount(), 1);
}

TEST_F(MenuControllerTest, AMenuWithNothingToChooseHasNoHighlight)
{
    menu.open({MenuEntry::separator()}, "Empty", MenuController::Window);
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    type("a");
    EXPECT_EQ(menu.current(), -1);
}

} // namespace
} // namespace Kestry
