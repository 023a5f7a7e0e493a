#include "ByteStringOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <string>

namespace KestryCore {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

OrderedClasses sorted(const std::vector<std::string>& strings)
{
    ByteStringOrder order;
    for (std::uint32_t member = 0; member < strings.size(); ++member) {
        const std::string& bytes = strings[member];
        std::ranges::copy(bytes, order.room(bytes.size() + 3));
        order.add(member, bytes.size());
    }
    return std::move(order).sorted();
}

/// The classes in their order, each with its members in rising order.
std::vector<std::vector<std::uint32_t>> classes(const std::vector<std::string>& strings)
{
    const OrderedClasses ordered = sorted(strings);
    std::vector<std::vector<std::uint32_t>> result;
    bool isNew = true;
    for (std::size_t place = 0; place < ordered.members.size(); ++place) {
        if (isNew) {
            result.emplace_back();
        }
        result.back().push_back(ordered.members[place]);
        std::ranges::sort(result.back());
        isNew = ordered.isLastOfClass[place] != 0;
    }
    return result;
}

using Class = std::vector<std::uint32_t>;

TEST(ByteStringOrder, NothingHasNoClasses)
{
    EXPECT_THAT(sorted({}).members, IsEmpty());
}

TEST(ByteStringOrder, TheLowerByteGoesFirst)
{
    EXPECT_THAT(
        classes({"b", "\xFF", "\x01", "a"}), ElementsAre(Class{2}, Class{3}, Class{0}, Class{1}));
}

TEST(ByteStringOrder, TheBeginningOfAStringGoesBeforeIt)
{
    EXPECT_THAT(classes({"12345678a", "12345678", "1234567", ""}),
        ElementsAre(Class{3}, Class{2}, Class{1}, Class{0}));
}

TEST(ByteStringOrder, EqualStringsAreOneClass)
{
    const std::string longOne(100, 'x');
    EXPECT_THAT(classes({longOne, "", longOne + "y", longOne, ""}),
        ElementsAre(Class{1, 4}, Class{0, 3}, Class{2}));
}

TEST(ByteStringOrder, VeryLongStringsAreNoTrouble)
{
    const std::string longOne(3'000'000, 'x');
    EXPECT_THAT(classes({longOne + "b", longOne, longOne + "a"}),
        ElementsAre(Class{1}, Class{2}, Class{0}));
}

RC_GTEST_PROP(AnyByteStrings, AreOrderedAsTheirTexts, ())
{
    const auto byte = rc::gen::element('\x01', 'a', 'b', '\xFF');
    const auto strings = *rc::gen::container<std::vector<std::string>>(
        rc::gen::scale(0.2, rc::gen::container<std::string>(byte)));
    std::map<std::string, Class> expected;
    for (std::uint32_t member = 0; member < strings.size(); ++member) {
        expected[strings[member]].push_back(member);
    }
    const auto ordered = classes(strings);
    RC_ASSERT(ordered.size() == expected.size());
    RC_ASSERT(std::ranges::equal(
        ordered, expected, {}, {}, [](const auto& each) { return each.second; }));
}

} // namespace
} // namespace KestryCore
