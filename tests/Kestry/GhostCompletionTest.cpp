#include "GhostCompletion.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

/// Of a view of 200 by 28, with room to spare.
GhostPlace roomyPlace()
{
    return {.caret = {40, 7, 1, 14}, .completion = {80, 14}, .typedWidth = 40, .bounds = {200, 28}};
}

TEST(GhostCompletion, IsTheRestOfTheFirstSuggestionThatGoesOn)
{
    EXPECT_EQ(
        firstCompletion("design", {"Logo", "Design exploration", "Design review"}), " exploration");
    EXPECT_EQ(firstCompletion("xyz", {"Design exploration"}), std::nullopt);
    EXPECT_EQ(firstCompletion("design", {}), std::nullopt);
}

TEST(GhostCompletion, OfBlanksIsNone)
{
    EXPECT_EQ(firstCompletion("   ", {"   Design"}), std::nullopt);
    EXPECT_EQ(firstCompletion("", {"Design"}), std::nullopt);
}

TEST(GhostCompletion, OfATextThatEqualsASuggestionIsNone)
{
    EXPECT_EQ(firstCompletion("Design", {"design"}), std::nullopt);
    EXPECT_EQ(firstCompletion("Design", {"Design", "Design review"}), " review");
}

TEST(GhostCompletion, FitsWithRoomBehindIt)
{
    EXPECT_TRUE(ghostFits(roomyPlace()));
}

TEST(GhostCompletion, NeedsMoreThanTwoPixelsBehindIt)
{
    GhostPlace place = roomyPlace();
    place.caret.moveLeft(117); // ends at 118, and with 80 more two before the right edge
    place.typedWidth = 20;
    EXPECT_FALSE(ghostFits(place));
    place.caret.moveLeft(116.5);
    EXPECT_TRUE(ghostFits(place));
}

TEST(GhostCompletion, NeedsMoreThanSixPixelsBesidesAllOfTheText)
{
    GhostPlace place = roomyPlace();
    place.typedWidth = 114;
    EXPECT_FALSE(ghostFits(place));
    place.typedWidth = 113.5;
    EXPECT_TRUE(ghostFits(place));
}

TEST(GhostCompletion, NeedsACaretInsideTheView)
{
    GhostPlace place = roomyPlace();
    place.caret.moveLeft(-1);
    EXPECT_FALSE(ghostFits(place));
    place = roomyPlace();
    place.caret.moveTop(28);
    EXPECT_FALSE(ghostFits(place));
    place = roomyPlace();
    place.caret.setWidth(-1);
    EXPECT_FALSE(ghostFits(place));
}

TEST(GhostCompletion, StandsAtTheCaretAndLevelWithIt)
{
    EXPECT_EQ(ghostOrigin(roomyPlace()), QPointF(40, 7));
    GhostPlace place = roomyPlace();
    place.completion.setHeight(20);
    EXPECT_EQ(ghostOrigin(place), QPointF(40, 4));
}

} // namespace
} // namespace Kestry
