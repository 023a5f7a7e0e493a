#include "Spelling.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

TEST(EditDistance, CountsLettersAddedLeftOutAndReplaced)
{
    EXPECT_EQ(editDistance("", "abc"), 3U);
    EXPECT_EQ(editDistance("abc", ""), 3U);
    EXPECT_EQ(editDistance("stp", "stop"), 1U);
    EXPECT_EQ(editDistance("kitten", "sitting"), 3U);
}

TEST(EditDistance, CountsASwapOfNeighboursOnce)
{
    EXPECT_EQ(editDistance("statsu", "status"), 1U);
}

TEST(EditDistance, IgnoresCase)
{
    EXPECT_EQ(editDistance("STATUS", "status"), 0U);
}

TEST(NearestWord, IsTheLeastChanged)
{
    EXPECT_EQ(nearestWord("rename", {"resume", "rename", "restore"}), "rename");
    EXPECT_EQ(nearestWord("restroe", {"resume", "restore"}), "restore");
}

TEST(NearestWord, IsTheFirstOfEquallyNear)
{
    EXPECT_EQ(nearestWord("ad", {"add", "aid"}), "add");
}

TEST(NearestWord, IsNoneWhenAllAreFarAway)
{
    EXPECT_EQ(nearestWord("frobnicate", {"status", "stop"}), std::nullopt);
    EXPECT_EQ(nearestWord("", {"a"}), std::nullopt);
    EXPECT_EQ(nearestWord(std::string(100'000, 'a'), {std::string(100'000, 'a')}), std::nullopt);
}

} // namespace
} // namespace KestryCore
