#include "TitlePrefix.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "AllCodePoints.h"
#include "ArbitraryTitle.h"
#include "Text.h"
#include "TitleFolding.h"

namespace KestryCore {
namespace {

bool mayBegin(std::string_view title, std::string_view prefix)
{
    return TitlePrefix(foldedTitle(prefix)).mayBegin(title);
}

/// The rule that the quick answer must never contradict.
bool begins(std::string_view title, std::string_view prefix)
{
    return foldedTitle(trimmed(title)).starts_with(foldedTitle(prefix));
}

TEST(TitlePrefix, RejectsWhatBeginsOtherwise)
{
    EXPECT_FALSE(mayBegin("Review", "des"));
    EXPECT_FALSE(mayBegin("De", "des"));
    EXPECT_FALSE(mayBegin("", "d"));
    EXPECT_FALSE(mayBegin("Überweisung", "des"));
    EXPECT_FALSE(mayBegin("Привет", "про"));
    EXPECT_FALSE(mayBegin("한국", "하"));
    EXPECT_FALSE(mayBegin("会議", "会計"));
    EXPECT_FALSE(mayBegin("हिन्दी", "हिन्दा"));
    EXPECT_FALSE(mayBegin("প্রকল্প", "কাজ"));
}

TEST(TitlePrefix, AcceptsWhatBeginsSo)
{
    EXPECT_TRUE(mayBegin("Design review", "DES"));
    EXPECT_TRUE(mayBegin(" \t\u3000Design", "des"));
    EXPECT_TRUE(mayBegin("CAFÉ", "café"));
    EXPECT_TRUE(mayBegin("Cafe\u0301", "café"));
    EXPECT_TRUE(mayBegin("Straße", "STRASS"));
    EXPECT_TRUE(mayBegin("Strasse", "straß"));
    EXPECT_TRUE(mayBegin("ΠΡΟΣ", "προς"));
    EXPECT_TRUE(mayBegin("か\u3099っこう", "が"));
    EXPECT_TRUE(mayBegin("\u1112\u1161\u11ABX", "한x"));
    EXPECT_TRUE(mayBegin("क\u094D\u093C", "क\u093C\u094D"));
}

TEST(TitlePrefix, IsRightForEveryCodePointThatATitleBeginsWith)
{
    std::vector<std::pair<std::string, TitlePrefix>> prefixes;
    for (const char* prefix : {"s", "é", "ss", "k", "и", "한", "が", "क"}) {
        prefixes.emplace_back(foldedTitle(prefix), TitlePrefix(foldedTitle(prefix)));
    }
    forEachCodePoint([&](char32_t codePoint) {
        const std::string title = utf8(codePoint) + "s";
        const std::string folded = foldedTitle(trimmed(title));
        for (auto& [prefix, quick] : prefixes) {
            ASSERT_TRUE(quick.mayBegin(title) || !folded.starts_with(prefix))
                << prefix << ' ' << static_cast<unsigned>(codePoint);
        }
    });
}

RC_GTEST_PROP(TitlePrefix, NeverRejectsATitleThatBeginsWithThePrefix, ())
{
    const std::string title = *arbitraryTitle();
    const std::string prefix = *startOf(title);
    const std::string words(trimmed(prefix));
    RC_ASSERT(mayBegin(title, words) || !begins(title, words));
}

RC_GTEST_PROP(TitlePrefix, AnswersForOneTitleAsIfItHadSeenNoOther, ())
{
    TitlePrefix quick(foldedTitle(trimmed(*arbitraryTitle())));
    TitlePrefix fresh = quick;
    const std::string title = *arbitraryTitle();
    for (const std::string& other :
        *rc::gen::container<std::vector<std::string>>(arbitraryTitle())) {
        (void)quick.mayBegin(other);
    }
    RC_ASSERT(quick.mayBegin(title) == fresh.mayBegin(title));
}

} // namespace
} // namespace KestryCore
