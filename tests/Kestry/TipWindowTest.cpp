#include "TipWindow.h"

#include <QDeadlineTimer>

#include "PopupFixture.h"

namespace Kestry {
namespace {

class TipWindowTest : public PopupFixture {
protected:
    TipWindowTest()
    {
        while (!owner.isExposed()) {
            QCoreApplication::processEvents();
        }
        toolTips.show(item.get(), "1h 0m", ToolTips::BesideItem, nullptr);
    }

    /// What the window does about it comes with its next frame.
    static bool isGoneSoon()
    {
        const QDeadlineTimer deadline(5000);
        while (tip() && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
        return !tip();
    }
    bool staysWhenDrawnAgain()
    {
        int frames = 0;
        QObject::connect(&owner, &QQuickWindow::frameSwapped, &page, [&] { ++frames; });
        while (frames < 3) {
            owner.update();
            QCoreApplication::processEvents();
        }
        QCoreApplication::processEvents();
        return tip() != nullptr;
    }
    static QString text() { return tip()->content().property("text").toString(); }
};

TEST_F(TipWindowTest, StaysWhileItsItemIsWhereItWas)
{
    ASSERT_TRUE(tip());
    EXPECT_TRUE(staysWhenDrawnAgain());
}

TEST_F(TipWindowTest, GoesWithItsItem)
{
    item.reset();
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(TipWindowTest, GoesWhenThePageOfItsItemIsHidden)
{
    page.setVisible(false);
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(TipWindowTest, GoesWhenSomethingIsLaidOverThePage)
{
    page.setEnabled(false);
    owner.update();
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(TipWindowTest, GoesWhenItsItemIsScrolledOutOfSight)
{
    page.setY(-40);
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(TipWindowTest, MovesWithTheItemThatItIsBeside)
{
    const QPoint before = tip()->frame().topLeft();
    page.setY(30);
    EXPECT_TRUE(staysWhenDrawnAgain());
    EXPECT_EQ(tip()->frame().topLeft(), before + QPoint(0, 30));
}

TEST_F(TipWindowTest, AtThePointerGoesWhenItsItemMoves)
{
    toolTips.show(item.get(), "1h 0m", ToolTips::BelowPointer, nullptr);
    page.setY(30);
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(TipWindowTest, GoesWhenTheWindowIsClosed)
{
    owner.close();
    EXPECT_TRUE(isGoneSoon());
}

TEST_F(TipWindowTest, MovesWithTheWindow)
{
    const QPoint before = tip()->frame().topLeft();
    owner.setPosition(200, 150);
    EXPECT_TRUE(staysWhenDrawnAgain());
    EXPECT_EQ(tip()->frame().topLeft(), before + QPoint(100, 50));
}

TEST_F(TipWindowTest, TheEscapeKeyHidesIt)
{
    press(Qt::Key_A);
    EXPECT_TRUE(tip());
    press(Qt::Key_Escape);
    EXPECT_FALSE(tip());
}

TEST_F(TipWindowTest, FollowsTheTextOfItsItem)
{
    const int before = tip()->frame().width();
    toolTips.change(item.get(), "November 22: 11h 11m");
    EXPECT_EQ(text(), "November 22: 11h 11m");
    EXPECT_GT(tip()->frame().width(), before);
    toolTips.change(&page, "Another item's");
    EXPECT_EQ(text(), "November 22: 11h 11m");
    toolTips.change(item.get(), "");
    EXPECT_FALSE(tip());
}

} // namespace
} // namespace Kestry
