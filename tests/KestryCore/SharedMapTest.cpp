#include "SharedMap.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

using Texts = SharedMap<std::string>;

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

TEST(SharedMap, AChangeForgetsTheJsonOfTheChangedCopyAlone)
{
    const Texts original{{"a", "1"}};
    original.rememberedJson() = SharedBytes(std::string("json"));
    Texts copy = original;
    EXPECT_EQ(copy.rememberedJson().view(), "json");
    copy["a"] = "2";
    EXPECT_FALSE(copy.rememberedJson());
    EXPECT_EQ(original.rememberedJson().view(), "json");
}

TEST(SharedMap, RemovingWhatIsNotThereChangesNothing)
{
    Texts texts{{"a", "1"}};
    texts.rememberedJson() = SharedBytes(std::string("json"));
    texts.erase("b");
    EXPECT_EQ(texts.rememberedJson().view(), "json");
}

TEST(SharedMap, EqualityLooksAtTheValuesAlone)
{
    const Texts texts{{"a", "1"}};
    texts.rememberedJson() = SharedBytes(std::string("json"));
    EXPECT_EQ(texts, (Texts{{"a", "1"}}));
    EXPECT_NE(texts, (Texts{{"a", "2"}}));
}

TEST(SharedMap, WhatWasMovedFromCanStillBeUsed)
{
    Texts texts{{"a", "1"}};
    const Texts moved = std::move(texts);
    texts = Texts{{"b", "2"}};
    EXPECT_EQ(moved.at("a"), "1");
    EXPECT_EQ(texts.at("b"), "2");
}

} // namespace
} // namespace KestryCore
