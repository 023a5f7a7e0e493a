#include "NotchSurface.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Kestry {
namespace {

/// Writes down what it is told.
class EventLog final : public NotchPanelEvents {
public:
    void hover(bool inside) override { add(inside ? "hover" : "leave"); }
    void hoverPreview(bool inside) override { add(inside ? "hover preview" : "leave preview"); }
    void clickInside() override { add("click inside"); }
    void clickElsewhere() override { add("click elsewhere"); }
    void detailResignedKey() override { add("resigned key"); }
    void editingChanged(bool editing) override { add(editing ? "editing" : "not editing"); }
    void resize(double height) override { add("resize " + std::to_string(int(height))); }
    void screensChanged() override { add("screens changed"); }
    void openApp() override { add("open app"); }
    void dashboard() override { add("dashboard"); }
    void previewTitle(const std::optional<std::string>& title) override
    {
        add("preview " + title.value_or("nothing"));
    }
    void dismissPreview() override { add("dismiss preview"); }
    void menuDidBeginTracking(MenuIdentity menu) override
    {
        add("menu " + std::to_string(menu) + " begins");
    }
    void menuDidEndTracking(MenuIdentity menu) override
    {
        add("menu " + std::to_string(menu) + " ends");
    }

    std::vector<std::string> lines;

private:
    void add(std::string line) { lines.push_back(std::move(line)); }
};

TEST(NotchSurface, PassesOnWhatTheViewsReport)
{
    NotchSurface surface(true);
    EventLog log;
    surface.deliverEventsTo(&log);
    surface.openApp();
    surface.dashboard();
    surface.editingChanged(true);
    surface.resize(92);
    surface.menuDidBeginTracking(7);
    surface.menuDidEndTracking(7);
    const std::vector<std::string> expected{
        "open app", "dashboard", "editing", "resize 92", "menu 7 begins", "menu 7 ends"};
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
    surface.menuDidBeginTracking(7);
    surface.menuDidEndTracking(7);
    EXPECT_FALSE(surface.shown());
}

TEST(NotchSurface, AMenuIsOpenFromItsBeginningToItsEnd)
{
    NotchSurface surface(true);
    surface.menuDidBeginTracking(7);
    EXPECT_TRUE(surface.hasOpenMenu());
    surface.menuDidEndTracking(7);
    EXPECT_FALSE(surface.hasOpenMenu());
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
