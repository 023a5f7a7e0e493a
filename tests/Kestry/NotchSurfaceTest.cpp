#include "NotchSurface.h"

#include <gtest/gtest.h>

#include "EventLog.h"

namespace Kestry {
namespace {

TEST(NotchSurface, PassesOnWhatTheViewsReport)
{
    NotchSurface surface(true);
    EventLog log;
    surface.deliverEventsTo(&log);
    surface.openApp();
    surface.dashboard();
    surface.editingChanged(true);
    surface.resize(92);
    const std::vector<std::string> expected{"open app", "dashboard", "editing", "resize 92"};
    EXPECT_EQ(log.lines, expected);
}

TEST(NotchSurface, AnEmptyTitleIsNoWishForAPreview)
{
    NotchSurface surface(true);
    EventLog log;
    surface.deliverEventsTo(&log);
    surface.previewTitle("Ügyfél");
    surface.previewTitle("");
    surface.dismissPreview();
    EXPECT_EQ(log.lines,
        (std::vector<std::string>{"preview Ügyfél", "preview nothing", "dismiss preview"}));
}

TEST(NotchSurface, WithNobodyToTellItStaysQuiet)
{
    NotchSurface surface(true);
    surface.openApp();
    surface.dashboard();
    surface.previewTitle("A title");
    surface.dismissPreview();
    EXPECT_FALSE(surface.shown());
}

TEST(NotchSurface, ReducedMotionIsFollowedWhileItRuns)
{
    NotchSurface surface(true);
    int changes = 0;
    QObject::connect(&surface, &NotchSurface::reducesMotionChanged, [&] { ++changes; });
    surface.setReducesMotion(true);
    surface.setReducesMotion(true);
    EXPECT_TRUE(surface.reducesMotion());
    EXPECT_EQ(changes, 1);
}

} // namespace
} // namespace Kestry
