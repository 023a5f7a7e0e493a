#include "MenuWindow.h"

#include <QMouseEvent>

#include <string>
#include <vector>

#include "PopupFixture.h"

namespace Kestry {
namespace {

class MenuWindowTest : public PopupFixture {
protected:
    MenuWindowTest()
    {
        QObject::connect(&menus, &MenuWindow::opened,
            [this](quint64 number) { events.push_back("opened " + std::to_string(number)); });
        QObject::connect(&menus, &MenuWindow::closed,
            [this](quint64 number) { events.push_back("closed " + std::to_string(number)); });
    }

    void open()
    {
        const auto note = [this] { events.emplace_back("done"); };
        menus.open({MenuEntry{.text = "Birch", .action = note},
                       MenuEntry{.text = "More", .entries = {MenuEntry{.text = "Oak"}}}},
            "Trees", MenuController::Panel, *item);
    }
    static void pressAt(QWindow& window, QPointF place)
    {
        QMouseEvent event(QEvent::MouseButtonPress, place, window.position() + place,
            Qt::LeftButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window, &event);
    }

    std::vector<std::string> events;
};

TEST_F(MenuWindowTest, AMenuOpensBelowItsItem)
{
    open();
    ASSERT_TRUE(menu());
    EXPECT_TRUE(menus.isOpen());
    EXPECT_EQ(menu()->frame().topLeft(), QPoint(110, 142));
    EXPECT_EQ(events, std::vector<std::string>{"opened 1"});
}

TEST_F(MenuWindowTest, AMenuWithoutEntriesDoesNotOpen)
{
    menus.open({}, "Nothing", MenuController::Panel, *item);
    EXPECT_FALSE(menus.isOpen());
    EXPECT_TRUE(events.empty());
}

TEST_F(MenuWindowTest, AMenuOfAnItemInNoWindowDoesNotOpen)
{
    item->setParentItem(nullptr);
    open();
    EXPECT_FALSE(menus.isOpen());
}

TEST_F(MenuWindowTest, KeysOfOtherWindowsGoToTheMenuAndWhatIsChosenIsDoneAfterItHasClosed)
{
    open();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_FALSE(menus.isOpen());
    EXPECT_FALSE(menu());
    EXPECT_EQ(events, std::vector<std::string>{"opened 1"});
    QCoreApplication::processEvents();
    EXPECT_EQ(events, (std::vector<std::string>{"opened 1", "done", "closed 1"}));
}

TEST_F(MenuWindowTest, EscapeClosesIt)
{
    open();
    press(Qt::Key_Escape);
    QCoreApplication::processEvents();
    EXPECT_EQ(events, (std::vector<std::string>{"opened 1", "closed 1"}));
}

TEST_F(MenuWindowTest, APressBesideItClosesItWhereverItArrives)
{
    open();
    pressAt(owner, QPointF(300, 200));
    EXPECT_FALSE(menus.isOpen());
    open();
    pressAt(*menu(), QPointF(-5, 4));
    EXPECT_FALSE(menus.isOpen());
}

TEST_F(MenuWindowTest, APressOnItLeavesItOpen)
{
    open();
    pressAt(*menu(), QPointF(20, 20));
    EXPECT_TRUE(menus.isOpen());
}

TEST_F(MenuWindowTest, AShortcutOfAnotherWindowIsNotForTheMenusTime)
{
    QKeyEvent event(QEvent::ShortcutOverride, Qt::Key_N, Qt::ControlModifier);
    event.ignore();
    open();
    QCoreApplication::sendEvent(&owner, &event);
    EXPECT_TRUE(event.isAccepted());
}

TEST_F(MenuWindowTest, ASecondMenuClosesTheFirst)
{
    open();
    open();
    QCoreApplication::processEvents();
    EXPECT_EQ(events, (std::vector<std::string>{"opened 1", "opened 2", "closed 1"}));
    EXPECT_TRUE(menus.isOpen());
}

TEST_F(MenuWindowTest, ItClosesWithTheWindowThatItWasOpenedFrom)
{
    open();
    owner.hide();
    EXPECT_FALSE(menus.isOpen());
}

TEST_F(MenuWindowTest, ASubmenuTakesThePlaceOfTheMenuInTheSameWidth)
{
    open();
    const QRect before = menu()->frame();
    press(Qt::Key_Up);
    press(Qt::Key_Right);
    EXPECT_EQ(menu()->frame().width(), before.width());
    EXPECT_NE(menu()->frame().height(), before.height());
    EXPECT_EQ(menu()->frame().topLeft(), before.topLeft());
}

TEST_F(MenuWindowTest, NoTipIsShownWhileItIsOpenAndAShownTipGoes)
{
    toolTips.show(item.get(), "A tip", ToolTips::BesideItem, nullptr);
    ASSERT_TRUE(tip());
    open();
    EXPECT_FALSE(tip());
    toolTips.show(item.get(), "A tip", ToolTips::BesideItem, nullptr);
    EXPECT_FALSE(tip());
}

} // namespace
} // namespace Kestry
