#include "KeySort.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <functional>

namespace KestryCore {
namespace {

struct Item {
    std::uint64_t key;
    std::size_t number;

    friend auto operator<=>(const Item&, const Item&) = default;
};

/// More than are sorted by comparing them, unless the numbers are few.
std::vector<Item> items(std::size_t count, const std::function<std::uint64_t(std::size_t)>& key)
{
    std::vector<Item> result;
    for (std::size_t number = 0; number < count; ++number) {
        result.push_back({key(number), number});
    }
    return result;
}

void expectSorted(std::vector<Item> items)
{
    std::vector<Item> expected = items;
    std::ranges::sort(expected);
    std::vector<Item> spare;
    sortByKey(std::span(items), spare);
    EXPECT_TRUE(std::ranges::is_sorted(items, {}, &Item::key));
    std::ranges::sort(items);
    EXPECT_EQ(items, expected);
}

/// Numbers that look random, in all 64 bits.
std::uint64_t scattered(std::size_t number)
{
    return (number + 1) * 0x9E3779B97F4A7C15U;
}

TEST(KeySort, SortsAnyNumberOfItems)
{
    for (const std::size_t count : {0, 1, 2, 255, 256, 257, 5000}) {
        expectSorted(items(count, scattered));
    }
}

TEST(KeySort, SortsWhatIsInOrderAlreadyOrBackwards)
{
    expectSorted(items(1000, [](std::size_t number) { return number / 3; }));
    expectSorted(items(1000, [](std::size_t number) { return ~std::uint64_t{number / 3}; }));
}

TEST(KeySort, SortsKeysThatDifferInAFewBytes)
{
    for (const unsigned shift : {0U, 8U, 20U, 40U, 56U}) {
        expectSorted(
            items(1000, [&](std::size_t number) { return scattered(number) % 256 << shift; }));
    }
}

TEST(KeySort, TellsTheItemsOfEqualKeysTogether)
{
    std::vector<Item> sorted = items(7, [](std::size_t number) { return number / 3; });
    std::vector<std::size_t> sizes;
    forEachEqualKey(
        std::span(sorted), [&](std::span<Item> equals) { sizes.push_back(equals.size()); });
    EXPECT_EQ(sizes, (std::vector<std::size_t>{3, 3, 1}));
}

RC_GTEST_PROP(AnyKeys, AreSorted, (const std::vector<std::uint64_t>& keys))
{
    expectSorted(items(keys.size() * 50,
        [&](std::size_t number) { return keys[number % keys.size()] + scattered(number) % 3; }));
}

} // namespace
} // namespace KestryCore
