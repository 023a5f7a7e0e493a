#include "PlatformChoice.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

bool yes()
{
    return true;
}

bool no()
{
    return false;
}

TEST(PlatformChoice, OnX11AloneItIsX11)
{
    EXPECT_EQ(platformFor({.hasX11 = true, .hasLayers = yes}), "xcb");
}

TEST(PlatformChoice, WithoutWaylandNobodyAsksForLayers)
{
    int asked = 0;
    EXPECT_EQ(platformFor({.hasX11 = true, .hasLayers = [&] { return ++asked > 0; }}), "xcb");
    EXPECT_EQ(asked, 0);
}

TEST(PlatformChoice, WaylandWithLayersIsTakenWithX11ToFallBackOn)
{
    EXPECT_EQ(platformFor({.hasX11 = true, .hasWayland = true, .hasLayers = yes}), "wayland;xcb");
    EXPECT_EQ(platformFor({.hasWayland = true, .hasLayers = yes}), "wayland");
}

TEST(PlatformChoice, WaylandWithoutLayersIsLeftForItsX11Server)
{
    EXPECT_EQ(platformFor({.hasX11 = true, .hasWayland = true, .hasLayers = no}), "xcb");
}

TEST(PlatformChoice, WaylandWithNeitherStillHasOrdinaryWindows)
{
    EXPECT_EQ(platformFor({.hasWayland = true, .hasLayers = no}), "wayland");
}

TEST(PlatformChoice, WithNothingToBeOnItIsLeftToTheToolkit)
{
    EXPECT_EQ(platformFor({.hasLayers = yes}), "");
}

} // namespace
} // namespace Kestry
