#include "ListChanges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace Kestry {
namespace {

using KestryCore::Uuid;
using List = std::vector<Uuid>;

/// A list with an identifier for each letter.
List list(const std::string& letters)
{
    List result;
    for (const char letter : letters) {
        Uuid id;
        id.bytes[0] = static_cast<std::uint8_t>(letter);
        result.push_back(id);
    }
    return result;
}

/// What the steps make of a list.
List carriedOut(List rows, const std::vector<ListStep>& steps, const List& after)
{
    for (const ListStep& step : steps) {
        const auto row = rows.begin() + step.row;
        if (step.kind == ListStep::Kind::remove) {
            rows.erase(row, row + step.count);
        } else if (step.kind == ListStep::Kind::insert) {
            rows.insert(row, after.begin() + step.row, after.begin() + step.row + step.count);
        } else {
            const Uuid moved = *row;
            rows.erase(row);
            rows.insert(rows.begin() + step.to, moved);
        }
    }
    return rows;
}

std::vector<ListStep> steps(const std::string& before, const std::string& after)
{
    return listSteps(list(before), list(after), 1000).value();
}

TEST(ListChanges, EqualListsNeedNoStep)
{
    EXPECT_TRUE(steps("", "").empty());
    EXPECT_TRUE(steps("abc", "abc").empty());
}

TEST(ListChanges, RowsThatGoTogetherAreOneStep)
{
    const std::vector<ListStep> expected{{.kind = ListStep::Kind::remove, .row = 1, .count = 2}};
    EXPECT_EQ(steps("abcd", "ad"), expected);
}

TEST(ListChanges, RowsThatComeTogetherAreOneStep)
{
    const std::vector<ListStep> expected{{.kind = ListStep::Kind::insert, .row = 0, .count = 2}};
    EXPECT_EQ(steps("cd", "abcd"), expected);
}

TEST(ListChanges, ARowThatMovesFarIsOneStep)
{
    const std::vector<ListStep> down{{.kind = ListStep::Kind::move, .row = 0, .to = 4}};
    EXPECT_EQ(steps("abcde", "bcdea"), down);
    const std::vector<ListStep> up{{.kind = ListStep::Kind::move, .row = 4, .to = 0}};
    EXPECT_EQ(steps("abcde", "eabcd"), up);
}

TEST(ListChanges, TooManyStepsAreNoStepsAtAll)
{
    EXPECT_FALSE(listSteps(list("abcdef"), list("fedcba"), 4));
    EXPECT_EQ(listSteps(list("abcdef"), list("fedcba"), 5)->size(), 5U);
}

TEST(ListChanges, TheStepsLeadFromAnyListToAnyOther)
{
    const unsigned seed = std::random_device()();
    std::mt19937 random(seed);
    for (int round = 0; round < 500; ++round) {
        std::string before = "abcdefghijklmnopqrstuvwxyz";
        std::string after = before;
        std::ranges::shuffle(before, random);
        if (round % 2 == 0) {
            std::ranges::shuffle(after, random);
        }
        before.resize(random() % 26);
        after.resize(random() % 26);
        EXPECT_EQ(carriedOut(list(before), steps(before, after), list(after)), list(after))
            << before << " to " << after << ", seed " << seed;
    }
}

} // namespace
} // namespace Kestry
