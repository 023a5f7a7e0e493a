#include "ScreenStruts.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

// Two monitors beside each other.
constexpr QSize desktop{2560, 800};
constexpr QRect left{0, 0, 1280, 800};
constexpr QRect right{1280, 0, 1280, 800};

ScreenStrut topStrut(int depth, int first, int last)
{
    ScreenStrut strut;
    strut.top = {depth, first, last};
    return strut;
}

TEST(ScreenStruts, WithoutPanelsAllOfTheScreenIsUsable)
{
    EXPECT_EQ(withoutStruts(right, desktop, {}), right);
    EXPECT_EQ(withoutStruts(right, desktop, {ScreenStrut{}}), right);
}

TEST(ScreenStruts, APanelTakesOnlyFromItsOwnMonitor)
{
    const std::vector<ScreenStrut> struts{topStrut(31, 1280, 2559)};
    EXPECT_EQ(withoutStruts(left, desktop, struts), left);
    EXPECT_EQ(withoutStruts(right, desktop, struts), QRect(1280, 31, 1280, 769));
}

TEST(ScreenStruts, OfTwoPanelsOnOneEdgeTheDeeperCounts)
{
    const std::vector<ScreenStrut> struts{topStrut(31, 0, 639), topStrut(24, 640, 1279)};
    EXPECT_EQ(withoutStruts(left, desktop, struts), QRect(0, 31, 1280, 769));
}

TEST(ScreenStruts, EachEdgeIsMeasuredFromTheDesktopsOwn)
{
    ScreenStrut strut;
    strut.left = {64, 0, 799};
    strut.right = {50, 0, 799};
    strut.bottom = {40, 0, 2559};
    EXPECT_EQ(withoutStruts(left, desktop, {strut}), QRect(64, 0, 1216, 760));
    EXPECT_EQ(withoutStruts(right, desktop, {strut}), QRect(1280, 0, 1230, 760));
}

TEST(ScreenStruts, APanelOfALowerMonitorLeavesTheUpperOneAlone)
{
    // Measured from the top of the desktop, through all of the upper monitor.
    const std::vector<ScreenStrut> struts{topStrut(831, 0, 1279)};
    EXPECT_EQ(withoutStruts({0, 0, 1280, 800}, {1280, 1600}, struts), QRect(0, 0, 1280, 800));
    EXPECT_EQ(withoutStruts({0, 800, 1280, 800}, {1280, 1600}, struts), QRect(0, 831, 1280, 769));
}

TEST(ScreenStruts, APanelThatEndsBesideTheMonitorTakesNothing)
{
    EXPECT_EQ(withoutStruts(right, desktop, {topStrut(31, 0, 1279)}), right);
}

} // namespace
} // namespace Kestry
