#include "OrdinaryStage.h"

#include <QCloseEvent>
#include <QEnterEvent>

#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "NotchSurface.h"
#include "ServedEngine.h"

namespace Kestry {
namespace {

class OrdinaryStageTest : public ::testing::Test {
protected:
    OrdinaryStageTest()
    {
        for (PanelWindow* panel : {&strip, &detail}) {
            panel->setView(engine, QUrl("qrc:/Kestry/TitlePreview.qml"),
                {{"surface", QVariant::fromValue(&surface)}});
        }
        put(strip, {549, 6, 182, 34});
        put(detail, {480, 40, 320, 74});
        stage.show(strip);
    }

    void put(PanelWindow& panel, const QRect& frame)
    {
        panel.place(frame);
        stage.frameChanged(panel, 0);
    }
    template <class Event>
    void send(Event event)
    {
        QCoreApplication::sendEvent(const_cast<QQuickWindow*>(&stage.window()), &event);
    }

    NotchSurface surface{true};
    MapDefaults defaults;
    AppearanceSettings settings{defaults};
    DesktopPreferences preferences;
    AppearanceBridge appearance{settings, preferences};
    ServedEngine engine{appearance};
    PanelWindow strip{"Strip"};
    PanelWindow detail{"Detail"};
    OrdinaryStage stage;
};

TEST_F(OrdinaryStageTest, TheStripAloneMakesALowWindowOfTheFullWidth)
{
    EXPECT_TRUE(stage.window().isVisible());
    EXPECT_EQ(stage.window().size(), QSize(320, 34));
    EXPECT_EQ(strip.content().position(), QPointF(69, 0));
    EXPECT_FALSE(strip.isVisible());
}

TEST_F(OrdinaryStageTest, ThePanelUnfoldsBelowTheStrip)
{
    stage.show(detail);
    EXPECT_EQ(stage.window().size(), QSize(320, 108));
    EXPECT_EQ(detail.content().position(), QPointF(0, 34));
    stage.hide(detail);
    EXPECT_EQ(stage.window().size(), QSize(320, 34));
}

TEST_F(OrdinaryStageTest, AHigherPanelMakesTheWindowHigher)
{
    stage.show(detail);
    put(detail, {480, 40, 320, 92});
    EXPECT_EQ(stage.window().height(), 126);
}

TEST_F(OrdinaryStageTest, ThePointerOnTheWindowIsOnEachPanelThatShows)
{
    std::vector<bool> hovers;
    strip.setHoverAction([&](bool inside) { hovers.push_back(inside); });
    send(QEnterEvent({}, {}, {}));
    EXPECT_TRUE(stage.pointerIsOver(strip));
    EXPECT_FALSE(stage.pointerIsOver(detail));
    send(QEvent(QEvent::Leave));
    EXPECT_FALSE(stage.pointerIsOver(strip));
    EXPECT_EQ(hovers, (std::vector<bool>{true, false}));
}

TEST_F(OrdinaryStageTest, ItCannotBeClosedOnlySwitchedOff)
{
    send(QCloseEvent());
    EXPECT_TRUE(stage.window().isVisible());
    stage.hide(strip);
    EXPECT_FALSE(stage.window().isVisible());
}

} // namespace
} // namespace Kestry
