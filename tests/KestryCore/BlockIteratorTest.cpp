#include "BlockIterator.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

struct Numbers {
    using Item = int;
    std::vector<int> numbers;

    [[nodiscard]] std::size_t size() const { return numbers.size(); }
    [[nodiscard]] const int& operator[](std::size_t index) const { return numbers[index]; }
};

using Iterator = BlockIterator<Numbers>;
using Blocks = std::vector<std::shared_ptr<Numbers>>;

Blocks blocksOf(const std::vector<std::vector<int>>& contents)
{
    Blocks blocks;
    for (const std::vector<int>& numbers : contents) {
        blocks.push_back(std::make_shared<Numbers>(Numbers{numbers}));
    }
    return blocks;
}

TEST(BlockIterator, VisitsTheItemsOfEachBlockInOrder)
{
    const Blocks blocks = blocksOf({{1}, {2, 3}, {4}});
    const std::vector<int> visited(Iterator(blocks.begin(), 0), Iterator(blocks.end(), 0));
    EXPECT_EQ(visited, (std::vector{1, 2, 3, 4}));
}

TEST(BlockIterator, StartsInTheMiddleOfABlock)
{
    const Blocks blocks = blocksOf({{1}, {2, 3}, {4}});
    const std::vector<int> visited(Iterator(blocks.begin() + 1, 1), Iterator(blocks.end(), 0));
    EXPECT_EQ(visited, (std::vector{3, 4}));
}

TEST(BlockIterator, IsAtTheEndWhereThereIsNoBlock)
{
    const Blocks blocks;
    EXPECT_EQ(Iterator(blocks.begin(), 0), Iterator(blocks.end(), 0));
}

TEST(BlockIterator, ReturnsWhereItWasWhenIncrementedAfterwards)
{
    const Blocks blocks = blocksOf({{1}, {2}});
    Iterator position(blocks.begin(), 0);
    EXPECT_EQ(*position++, 1);
    EXPECT_EQ(*position, 2);
}

} // namespace
} // namespace KestryCore
