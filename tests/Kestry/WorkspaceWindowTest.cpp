#include "WorkspaceWindow.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QGuiApplication>

#include "ApplicationWorld.h"

namespace Kestry {
namespace {

class WorkspaceWindowTest : public ::testing::Test {
protected:
    void open()
    {
        state.openDashboard();
        settle();
    }
    void close()
    {
        shown->close();
        settle();
    }
    void settle()
    {
        QCoreApplication::processEvents();
        world.scheduler.advance(1);
        QCoreApplication::processEvents();
    }

    ApplicationWorld world;
    AppState state{world.defaults};
    QQmlEngine engine;
    QQuickView* shown = nullptr;
    QSize loadedSize;
    int loads = 0;
    WorkspaceWindow window{
        engine, state, world.defaults, world.scheduler, [this](QQuickView& view) {
            shown = &view;
            loadedSize = view.size();
            ++loads;
        }};
};

TEST_F(WorkspaceWindowTest, NoWindowIsMadeBeforeItIsAskedFor)
{
    EXPECT_TRUE(state.dashboardInitialized);
    EXPECT_FALSE(window.isLoaded());
    open();
    EXPECT_TRUE(window.isOpen());
    EXPECT_EQ(QSize(760, 520), shown->minimumSize());
}

TEST_F(WorkspaceWindowTest, PreparingItMakesNoWindow)
{
    window.prepare(QUrl("qrc:/Kestry/WorkspaceView.qml"));
    settle();
    EXPECT_FALSE(window.isLoaded());
    EXPECT_EQ(0, loads);
    open();
    EXPECT_EQ(1, loads);
}

TEST_F(WorkspaceWindowTest, AClosedWindowIsLetGoSomeTimeLater)
{
    open();
    close();
    EXPECT_FALSE(window.isOpen());
    EXPECT_TRUE(window.isLoaded());
    world.scheduler.advance(60);
    EXPECT_FALSE(window.isLoaded());
    open();
    EXPECT_EQ(2, loads);
}

TEST_F(WorkspaceWindowTest, ItOpensWhereItWas)
{
    open();
    shown->setFramePosition({0, 20});
    shown->resize(770, 530);
    close();
    world.scheduler.advance(60);
    open();
    EXPECT_EQ(QSize(770, 530), shown->size());
    EXPECT_EQ(QPoint(0, 20), shown->framePosition());
}

TEST_F(WorkspaceWindowTest, ItsViewIsLoadedAtItsSize)
{
    open();
    EXPECT_EQ(shown->size(), loadedSize);
    shown->resize(770, 530);
    close();
    world.scheduler.advance(60);
    open();
    EXPECT_EQ(QSize(770, 530), loadedSize);
}

TEST_F(WorkspaceWindowTest, AMaximisedWindowGoesBackToWhereItWas)
{
    open();
    shown->resize(770, 530);
    settle();
    const auto place = world.defaults.string("windowPlace");
    shown->setWindowStates(Qt::WindowMaximized);
    shown->resize(800, 760);
    settle();
    EXPECT_EQ(true, world.defaults.boolean("windowMaximized"));
    EXPECT_EQ(place, world.defaults.string("windowPlace"));
    close();
    open();
    EXPECT_TRUE(shown->windowStates().testFlag(Qt::WindowMaximized));
}

TEST_F(WorkspaceWindowTest, AMinimisedWindowComesBackWhenItIsOpened)
{
    open();
    shown->setWindowStates(Qt::WindowMinimized);
    settle();
    open();
    EXPECT_FALSE(shown->windowStates().testFlag(Qt::WindowMinimized));
    EXPECT_EQ(1, loads);
}

TEST_F(WorkspaceWindowTest, MovingItIsRememberedWhenItRests)
{
    open();
    shown->resize(770, 530);
    QCoreApplication::processEvents();
    const auto before = world.defaults.string("windowPlace");
    shown->resize(780, 540);
    QCoreApplication::processEvents();
    EXPECT_EQ(before, world.defaults.string("windowPlace"));
    world.scheduler.advance(1);
    EXPECT_TRUE(QString::fromStdString(*world.defaults.string("windowPlace")).endsWith("780,540"));
}

} // namespace
} // namespace Kestry
