#include "SharedMap.h"

#include <gtest/gtest.h>

#include <random>

namespace KestryCore {
namespace {

using Texts = SharedMap<std::string>;

/// As if the first block had been encoded and judged.
void remember(const Texts& texts)
{
    const auto& block = texts.block(0);
    block.json = SharedBytes(std::string("json"));
    block.soundByItself = true;
    for (const auto& entry : block.entries) {
        entry->soundByItself = true;
    }
}

TEST(SharedMap, ReadsLikeTheMapItWasMadeOf)
{
    const Texts texts{{"b", "2"}, {"a", "1"}};
    EXPECT_EQ(texts.size(), 2U);
    EXPECT_EQ(texts.begin()->first, "a");
    EXPECT_EQ(texts.at("b"), "2");
    EXPECT_TRUE(texts.contains("a"));
    EXPECT_EQ(texts.find("c"), texts.end());
    EXPECT_TRUE(Texts().empty());
}

TEST(SharedMap, AChangeOfACopyLeavesTheOriginal)
{
    const Texts original{{"a", "1"}, {"b", "2"}};
    Texts copy = original;
    copy["a"] = "changed";
    copy.erase("b");
    copy["c"] = "3";
    EXPECT_EQ(original, (Texts{{"a", "1"}, {"b", "2"}}));
    EXPECT_EQ(copy, (Texts{{"a", "changed"}, {"c", "3"}}));
    copy.clear();
    EXPECT_EQ(copy, Texts());
}

TEST(SharedMap, AChangeForgetsWhatWasRememberedOfTheChangedCopyAlone)
{
    const Texts original{{"a", "1"}, {"b", "2"}};
    remember(original);
    Texts copy = original;
    EXPECT_EQ(copy.block(0).json.view(), "json");
    copy["a"] = "2";
    EXPECT_FALSE(copy.block(0).json);
    EXPECT_FALSE(copy.block(0).soundByItself);
    EXPECT_EQ(original.block(0).json.view(), "json");
    EXPECT_TRUE(original.block(0).soundByItself);
}

TEST(SharedMap, AChangeKeepsWhatWasRememberedOfOtherEntries)
{
    const Texts original{{"a", "1"}, {"b", "2"}};
    remember(original);
    Texts copy = original;
    copy["a"] = "2";
    EXPECT_FALSE(copy.block(0).entries[0]->soundByItself);
    EXPECT_TRUE(copy.block(0).entries[1]->soundByItself);
    EXPECT_EQ(copy.block(0).entries[1], original.block(0).entries[1]);
    EXPECT_TRUE(original.block(0).entries[0]->soundByItself);
}

TEST(SharedMap, RemovingWhatIsNotThereChangesNothing)
{
    Texts texts{{"a", "1"}};
    remember(texts);
    texts.erase("b");
    texts.erase("");
    EXPECT_EQ(texts.block(0).json.view(), "json");
}

TEST(SharedMap, EqualityLooksAtTheValuesAlone)
{
    const Texts texts{{"a", "1"}};
    remember(texts);
    EXPECT_EQ(texts, (Texts{{"a", "1"}}));
    EXPECT_NE(texts, (Texts{{"a", "2"}}));
    EXPECT_NE(texts, (Texts{{"b", "1"}}));
    EXPECT_NE(texts, Texts());
}

TEST(SharedMap, AMapMadeInOrderHasFullBlocks)
{
    const std::size_t count = 3 * Texts::blockCapacity;
    Texts texts;
    for (std::size_t number = 0; number < count; ++number) {
        texts[std::to_string(1000 + number)] = "x";
    }
    EXPECT_EQ(texts.blockCount(), 3U);
    EXPECT_EQ(texts.size(), count);
}

TEST(SharedMap, AChangeTouchesOneBlockAlone)
{
    Texts texts;
    for (int number = 1000; number < 2000; ++number) {
        texts[std::to_string(number)] = "x";
    }
    const Texts before = texts;
    texts["1000"] = "y";
    EXPECT_NE(&texts.block(0), &before.block(0));
    EXPECT_EQ(&texts.block(1), &before.block(1));
}

/// Long enough for blocks to be cut in two and to become empty.
TEST(SharedMap, BehavesAsAPlainMapWhateverIsDoneToIt)
{
    std::mt19937 random(7);
    std::map<std::string, std::string> plain;
    Texts texts;
    for (int step = 0; step < 20'000; ++step) {
        const std::string key = std::to_string(random() % 2'000);
        const bool shrinks = step > 10'000;
        if (random() % 3 == 0 || (shrinks && random() % 2 == 0)) {
            plain.erase(key);
            texts.erase(key);
        } else {
            plain[key] = texts[key] = std::to_string(step);
        }
        ASSERT_EQ(texts.contains(key), plain.contains(key));
    }
    EXPECT_EQ(Texts::Map(texts.begin(), texts.end()), plain);
    EXPECT_EQ(texts.size(), plain.size());
    EXPECT_EQ(texts, Texts(plain));
}

TEST(SharedMap, CanBeEmptiedEntryByEntry)
{
    Texts texts;
    for (int number = 1000; number < 1500; ++number) {
        texts[std::to_string(number)] = "x";
    }
    for (int number = 1000; number < 1500; ++number) {
        texts.erase(std::to_string(number));
    }
    EXPECT_EQ(texts, Texts());
    EXPECT_EQ(texts.begin(), texts.end());
}

TEST(SharedMap, AskingForAMissingKeyIsAMistake)
{
    EXPECT_THROW((void)Texts().at("a"), std::out_of_range);
}

TEST(SharedMap, WhatWasMovedFromCanStillBeUsed)
{
    Texts texts{{"a", "1"}};
    const Texts moved = std::move(texts);
    EXPECT_EQ(texts.size(), static_cast<std::size_t>(std::distance(texts.begin(), texts.end())));
    texts = Texts{{"b", "2"}};
    EXPECT_EQ(moved.at("a"), "1");
    EXPECT_EQ(texts.at("b"), "2");
}

} // namespace
} // namespace KestryCore
