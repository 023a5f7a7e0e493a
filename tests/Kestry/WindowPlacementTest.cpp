#include "WindowPlacement.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

constexpr QSize smallest(760, 520);
const QRect large(0, 0, 2560, 1400);
const QRect small(0, 0, 1280, 800);
const QRect right(2560, 0, 1920, 1080);

TEST(WindowPlacementTest, APlaceIsReadAsItIsWritten)
{
    const WindowPlace place{{-20, 48}, {1200, 820}};
    EXPECT_EQ("-20,48,1200,820", placeText(place));
    EXPECT_EQ(place, placeFrom(placeText(place)));
}

TEST(WindowPlacementTest, AnyOtherTextIsNoPlace)
{
    for (const char* text : {"", "1,2,3", "1,2,3,4,5", "a,2,3,4", "1,2,0,4", "1,2,3,-4",
             "1,2,3,999999999", "1;2;3;4"}) {
        EXPECT_EQ(std::nullopt, placeFrom(text)) << text;
    }
}

TEST(WindowPlacementTest, AtFirstItIsInTheMiddleOfThePrimaryScreen)
{
    EXPECT_EQ((WindowPlace{{680, 270}, {1200, 820}}), windowPlace({}, {large, right}, smallest));
}

TEST(WindowPlacementTest, AtFirstItLeavesTheStripFree)
{
    const WindowPlace place = windowPlace({}, {small}, smallest);
    EXPECT_EQ((WindowPlace{{40, 48}, {1200, 712}}), place);
    EXPECT_LE(place.position.y() + place.size.height() + 40, small.height());
}

TEST(WindowPlacementTest, ItIsWhereItWas)
{
    const WindowPlace before{{2700, 100}, {900, 600}};
    EXPECT_EQ(before, windowPlace(before, {large, right}, smallest));
}

TEST(WindowPlacementTest, AsHighAsTheScreenBelowALowTitleItStaysSo)
{
    const WindowPlace before{{0, 0}, {1280, 778}};
    EXPECT_EQ(before, windowPlace(before, {small}, smallest));
}

TEST(WindowPlacementTest, OnAScreenThatHasGoneItIsPlacedAnewAtItsSize)
{
    const WindowPlace before{{2700, 100}, {900, 600}};
    EXPECT_EQ((WindowPlace{{830, 380}, {900, 600}}), windowPlace(before, {large}, smallest));
}

TEST(WindowPlacementTest, OnAScreenThatIsSmallerItIsMovedInAndMadeSmaller)
{
    const WindowPlace before{{700, 300}, {1400, 900}};
    EXPECT_EQ((WindowPlace{{0, 0}, {1280, 760}}), windowPlace(before, {small}, smallest));
    EXPECT_EQ((WindowPlace{{480, 240}, {800, 520}}),
        windowPlace(WindowPlace{{900, 600}, {800, 520}}, {small}, smallest));
}

TEST(WindowPlacementTest, AWindowThatCannotBeGrippedIsPlacedAnew)
{
    const WindowPlace before{{2550, 1390}, {900, 600}};
    EXPECT_EQ((WindowPlace{{830, 380}, {900, 600}}), windowPlace(before, {large}, smallest));
}

TEST(WindowPlacementTest, ItIsNeverSmallerThanItsContentNeeds)
{
    EXPECT_EQ(smallest, windowPlace({}, {QRect(0, 0, 640, 480)}, smallest).size);
    const WindowPlace before{{0, 0}, {100, 100}};
    EXPECT_EQ(smallest, windowPlace(before, {small}, smallest).size);
}

} // namespace
} // namespace Kestry
