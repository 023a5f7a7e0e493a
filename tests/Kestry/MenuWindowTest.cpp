#include "MenuWindow.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "ServedEngine.h"
#include "StageChoice.h"
#include "TipWindow.h"

namespace Kestry {
namespace {

class MenuWindowTest : public ::testing::Test {
protected:
    MenuWindowTest()
    {
        toolTips.serve(engine);
        owner.setGeometry(100, 100, 400, 300);
        owner.show();
        item.setParentItem(owner.contentItem());
        item.setPosition({10, 10});
        item.setSize({80, 30});
        QObject::connect(&menus, &MenuWindow::opened,
            [this](quint64 menu) { events.push_back("opened " + std::to_string(menu)); });
        QObject::connect(&menus, &MenuWindow::closed,
            [this](quint64 menu) { events.push_back("closed " + std::to_string(menu)); });
    }

    void open()
    {
        const auto note = [this] { events.emplace_back("done"); };
        menus.open({MenuEntry{.text = "Birch", .action = note},
                       MenuEntry{.text = "More", .entries = {MenuEntry{.text = "Oak"}}}},
            "Trees", MenuController::Panel, item);
    }
    static PanelWindow* menuWindow() { return panelWindow("Menu"); }
    static PanelWindow* panelWindow(const QString& title)
    {
        for (QWindow* each : QGuiApplication::topLevelWindows()) {
            if (each->title() == title && each->isVisible()) {
                return qobject_cast<PanelWindow*>(each);
            }
        }
        return nullptr;
    }
    static void press(QWindow& window, Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, {});
        QCoreApplication::sendEvent(&window, &event);
    }
    static void press(QWindow& window, QPointF place)
    {
        QMouseEvent event(QEvent::MouseButtonPress, place, window.position() + place,
            Qt::LeftButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(&window, &event);
    }

    std::vector<std::string> events;
    KestryCore::VirtualScheduler scheduler;
    MapDefaults defaults;
    AppearanceSettings settings{defaults};
    DesktopPreferences preferences;
    AppearanceBridge appearance{settings, preferences};
    ToolTips toolTips{nullptr};
    std::unique_ptr<PanelStage> stage = panelStage();
    ServedEngine engine{appearance};
    MenuWindow menus{engine, *stage, scheduler};
    TipWindow tips{engine, *stage, toolTips, menus};
    QQuickWindow owner;
    QQuickItem item;
};

TEST_F(MenuWindowTest, AMenuOpensBelowItsItem)
{
    open();
    ASSERT_TRUE(menuWindow());
    EXPECT_TRUE(menus.isOpen());
    EXPECT_EQ(menuWindow()->frame().topLeft(), QPoint(110, 142));
    EXPECT_EQ(events, std::vector<std::string>{"opened 1"});
}

TEST_F(MenuWindowTest, AMenuWithoutEntriesDoesNotOpen)
{
    menus.open({}, "Nothing", MenuController::Panel, item);
    EXPECT_FALSE(menus.isOpen());
    EXPECT_TRUE(events.empty());
}

TEST_F(MenuWindowTest, AMenuOfAnItemInNoWindowDoesNotOpen)
{
    item.setParentItem(nullptr);
    open();
    EXPECT_FALSE(menus.isOpen());
}

TEST_F(MenuWindowTest, KeysOfOtherWindowsGoToTheMenuAndWhatIsChosenIsDoneAfterItHasClosed)
{
    open();
    press(owner, Qt::Key_Down);
    press(owner, Qt::Key_Return);
    EXPECT_FALSE(menus.isOpen());
    EXPECT_FALSE(menuWindow());
    EXPECT_EQ(events, std::vector<std::string>{"opened 1"});
    QCoreApplication::processEvents();
    EXPECT_EQ(events, (std::vector<std::string>{"opened 1", "done", "closed 1"}));
}

TEST_F(MenuWindowTest, EscapeClosesIt)
{
    open();
    press(owner, Qt::Key_Escape);
    QCoreApplication::processEvents();
    EXPECT_EQ(events, (std::vector<std::string>{"opened 1", "closed 1"}));
}

TEST_F(MenuWindowTest, APressBesideItClosesItWhereverItArrives)
{
    open();
    press(owner, QPointF(300, 200));
    EXPECT_FALSE(menus.isOpen());
    open();
    press(*menuWindow(), QPointF(-5, 4));
    EXPECT_FALSE(menus.isOpen());
}

TEST_F(MenuWindowTest, APressOnItLeavesItOpen)
{
    open();
    press(*menuWindow(), QPointF(20, 20));
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
    const QRect before = menuWindow()->frame();
    press(owner, Qt::Key_Up);
    press(owner, Qt::Key_Right);
    EXPECT_EQ(menuWindow()->frame().width(), before.width());
    EXPECT_NE(menuWindow()->frame().height(), before.height());
    EXPECT_EQ(menuWindow()->frame().topLeft(), before.topLeft());
}

TEST_F(MenuWindowTest, NoTipIsShownWhileItIsOpenAndAShownTipGoes)
{
    toolTips.show(&item, "A tip", ToolTips::BesideItem, nullptr);
    ASSERT_TRUE(panelWindow("Tip"));
    open();
    EXPECT_FALSE(panelWindow("Tip"));
    toolTips.show(&item, "A tip", ToolTips::BesideItem, nullptr);
    EXPECT_FALSE(panelWindow("Tip"));
}

} // namespace
} // namespace Kestry
