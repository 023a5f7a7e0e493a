#include "RecordList.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <vector>

namespace KestryCore {
namespace {

struct Entry {
    int id = 0;
    int value = 0;

    friend bool operator==(const Entry&, const Entry&) = default;
};

using Entries = RecordList<Entry>;

Entries listOf(int count)
{
    Entries list;
    for (int number = 0; number < count; ++number) {
        list.append({number, 0});
    }
    return list;
}

std::vector<Entry> contentOf(const Entries& list)
{
    return {list.begin(), list.end()};
}

constexpr int severalBlocks = 3 * static_cast<int>(Entries::blockCapacity) + 5;

TEST(RecordList, KeepsTheOrderOfAppending)
{
    const Entries list{{7, 1}, {3, 2}, {5, 3}};
    EXPECT_EQ(contentOf(list), (std::vector<Entry>{{7, 1}, {3, 2}, {5, 3}}));
    EXPECT_EQ(list.front().id, 7);
    EXPECT_EQ(list.back().id, 5);
}

TEST(RecordList, FindsTheFirstRecordWithAnIdentifier)
{
    const Entries list{{1, 10}, {2, 20}, {2, 21}};
    EXPECT_EQ(list.find(2)->value, 20);
    EXPECT_EQ(list.find(4), nullptr);
}

TEST(RecordList, ModifyingChangesTheFirstRecordOnly)
{
    Entries list{{1, 10}, {2, 20}, {2, 21}};
    EXPECT_TRUE(list.modify(2, [](Entry& entry) { entry.value = 5; }));
    EXPECT_EQ(contentOf(list), (std::vector<Entry>{{1, 10}, {2, 5}, {2, 21}}));
}

TEST(RecordList, ModifyingAnUnknownRecordChangesNothing)
{
    Entries list{{1, 10}};
    EXPECT_FALSE(list.modify(2, [](Entry& entry) { entry.value = 5; }));
    EXPECT_EQ(contentOf(list), (std::vector<Entry>{{1, 10}}));
}

TEST(RecordList, RemovingTakesEveryRecordWithTheIdentifier)
{
    Entries list{{2, 1}, {1, 2}, {2, 3}};
    list.remove(2);
    EXPECT_EQ(contentOf(list), (std::vector<Entry>{{1, 2}}));
    list.remove(1);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.begin(), list.end());
}

TEST(RecordList, ACopySharesEveryBlockUntilOneIsChanged)
{
    const Entries original = listOf(severalBlocks);
    Entries copy = original;
    copy.modify(0, [](Entry& entry) { entry.value = 1; });
    ASSERT_GT(original.blockCount(), 2U);
    EXPECT_NE(&copy.block(0), &original.block(0));
    for (std::size_t index = 1; index < original.blockCount(); ++index) {
        EXPECT_EQ(&copy.block(index), &original.block(index));
    }
}

/// What a block has once all about it was worked out.
Entries::Remembered remembrance()
{
    return {SharedBytes(std::string("json")), true};
}

TEST(RecordList, AChangeForgetsWhatWasRememberedOfItsBlockAlone)
{
    Entries list = listOf(severalBlocks);
    for (std::size_t index = 0; index < list.blockCount(); ++index) {
        list.block(index).remembered = remembrance();
    }
    list.modify(0, [](Entry& entry) { entry.value = 1; });
    EXPECT_FALSE(list.block(0).remembered.json);
    EXPECT_FALSE(list.block(0).remembered.soundByItself);
    EXPECT_TRUE(list.block(1).remembered.json);
    EXPECT_TRUE(list.block(1).remembered.soundByItself);
}

TEST(RecordList, ABlockAppendedWithItsJsonRemembersItUntilItChanges)
{
    Entries list = listOf(1);
    list.appendBlock({{7, 0}, {8, 0}}, SharedBytes(std::string("json")));
    EXPECT_EQ(list.size(), 3U);
    EXPECT_EQ(list.back().id, 8);
    EXPECT_EQ(list.block(1).remembered.json.view(), "json");
    list.append({9, 0});
    EXPECT_EQ(list.back().id, 9);
    EXPECT_FALSE(list.block(1).remembered.json);
}

TEST(RecordList, AChangeOfACopyLeavesWhatTheOriginalRemembers)
{
    const Entries original = listOf(1);
    original.block(0).remembered = remembrance();
    Entries copy = original;
    copy.append({1, 1});
    EXPECT_TRUE(original.block(0).remembered.json);
    EXPECT_FALSE(copy.block(0).remembered.json);
}

TEST(RecordList, WhatIsRememberedTakesNoPartInEquality)
{
    const Entries list = listOf(3);
    list.block(0).remembered = remembrance();
    EXPECT_EQ(list, listOf(3));
    EXPECT_NE(list, listOf(4));
}

TEST(RecordList, EqualityDoesNotDependOnHowRecordsLieInBlocks)
{
    Entries list = listOf(severalBlocks);
    list.remove(3);
    Entries anew;
    for (const Entry& entry : list) {
        anew.append(entry);
    }
    EXPECT_EQ(list, anew);
}

/// One random operation, done to a list and to the plain sequence that it should equal.
void operate(Entries& list, std::vector<Entry>& plain)
{
    const int id = *rc::gen::inRange(0, 400);
    const int value = *rc::gen::arbitrary<int>();
    const auto hasIdentifier = [&](const Entry& entry) { return entry.id == id; };
    switch (*rc::gen::inRange(0, 4)) {
    case 0:
        list.append({id, value});
        plain.push_back({id, value});
        return;
    case 1:
        list.remove(id);
        std::erase_if(plain, hasIdentifier);
        return;
    case 2:
        list.modify(id, [&](Entry& entry) { entry.value = value; });
        if (const auto found = std::ranges::find_if(plain, hasIdentifier); found != plain.end()) {
            found->value = value;
        }
        return;
    default:
        for (int number = 0; number < 100; ++number) {
            list.append({number * 3, value});
            plain.push_back({number * 3, value});
        }
    }
}

RC_GTEST_PROP(RecordList, BehavesLikeAPlainSequenceAndCopiesStayAsTheyWere, ())
{
    Entries list;
    std::vector<Entry> plain;
    std::vector<std::pair<Entries, std::vector<Entry>>> copies;
    const int count = *rc::gen::inRange(0, 30);
    for (int step = 0; step < count; ++step) {
        operate(list, plain);
        RC_ASSERT(contentOf(list) == plain);
        RC_ASSERT(list.size() == plain.size());
        RC_ASSERT(list.empty() == plain.empty());
        copies.emplace_back(list, plain);
    }
    for (const auto& [copy, content] : copies) {
        RC_ASSERT(contentOf(copy) == content);
    }
}

} // namespace
} // namespace KestryCore
