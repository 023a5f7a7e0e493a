#include "LocalizedSearch.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "ArbitraryText.h"

namespace KestryCore {
namespace {

bool contains(std::string_view text, std::string_view wanted, const std::string& locale = "en_US")
{
    return LocalizedSearch(wanted, locale).isFoundIn(text);
}

TEST(LocalizedSearch, ACapitalFindsItsSmallLetterAndTheOtherWayRound)
{
    EXPECT_TRUE(contains("annual report", "REPORT"));
    EXPECT_TRUE(contains("ANNUAL REPORT", "report"));
    EXPECT_TRUE(contains("ÜBERSETZUNG", "über"));
    EXPECT_TRUE(contains("ἈΘΗ͂ΝΑΙ ΣΟΦΟΣ", "σοφος"));
    EXPECT_TRUE(contains("привет", "ПРИ"));
    EXPECT_FALSE(contains("annual", "report"));
}

TEST(LocalizedSearch, ALetterWithAnAccentDoesNotFindThePlainLetter)
{
    EXPECT_FALSE(contains("resume", "é"));
    EXPECT_FALSE(contains("Uber", "über"));
    EXPECT_FALSE(contains("Malaga", "Málaga"));
}

TEST(LocalizedSearch, APlainLetterDoesNotFindOneWithAnAccent)
{
    EXPECT_FALSE(contains("é", "e"));
    EXPECT_FALSE(contains("e\u0301", "e"));
    EXPECT_FALSE(contains("m\u0308 x", "m"));
    EXPECT_FALSE(contains("cafe\u0301", "cafe"));
    EXPECT_TRUE(contains("cafe\u0301 cafe", "cafe"));
}

TEST(LocalizedSearch, ComposedAndDecomposedAreTheSameLetter)
{
    EXPECT_TRUE(contains("cafe\u0301", "CAFÉ"));
    EXPECT_TRUE(contains("café", "E\u0301"));
    EXPECT_TRUE(contains("\u1E69", "s\u0307\u0323"));
    EXPECT_TRUE(contains("\uAC00", "\u1100\u1161"));
    EXPECT_TRUE(contains("\u212Bngström", "ångström"));
}

TEST(LocalizedSearch, AnAccentAloneIsNoPartOfALetter)
{
    EXPECT_FALSE(contains("é", "\u0301"));
    EXPECT_TRUE(contains("\u0301e", "\u0301"));
    EXPECT_FALSE(contains("e\u0301\u0323", "e\u0323"));
}

TEST(LocalizedSearch, AKoreanSyllableIsFoundAsAWhole)
{
    EXPECT_TRUE(contains("\uAC01\uAC00", "\uAC00"));
    EXPECT_FALSE(contains("\uAC01", "\uAC00"));
    EXPECT_FALSE(contains("\uAC01", "\u11A8"));
}

TEST(LocalizedSearch, ASharpSIsTwoSInSmallAndCapitalLetters)
{
    EXPECT_TRUE(contains("Hauptstraße", "STRASSE", "de_DE"));
    EXPECT_TRUE(contains("HAUPTSTRASSE", "straße", "de_DE"));
}

TEST(LocalizedSearch, TurkishHasTwoPairsOfI)
{
    for (const std::string locale : {"tr_TR", "tr", "az_AZ"}) {
        EXPECT_TRUE(contains("ISPARTA", "ısparta", locale));
        EXPECT_TRUE(contains("İzmir", "izmir", locale));
        EXPECT_TRUE(contains("I\u0307zmir", "izmir", locale));
        EXPECT_FALSE(contains("ISPARTA", "isparta", locale));
        EXPECT_FALSE(contains("izmir", "IZMIR", locale));
    }
}

TEST(LocalizedSearch, ElsewhereIIsTheCapitalOfI)
{
    EXPECT_TRUE(contains("ISPARTA", "isparta"));
    EXPECT_FALSE(contains("ISPARTA", "ısparta"));
    EXPECT_FALSE(contains("İzmir", "izmir"));
    EXPECT_TRUE(contains("İzmir", "i\u0307ZMIR"));
}

TEST(LocalizedSearch, LithuanianKeepsTheDotBelowAnAccentInSmallLettersOnly)
{
    EXPECT_TRUE(contains("\u00CD", "i\u0307\u0301", "lt_LT"));
    EXPECT_TRUE(contains("i\u0307\u0301", "\u00ED", "lt_LT"));
    EXPECT_FALSE(contains("\u00CD", "i\u0307\u0301", "en_US"));
}

TEST(LocalizedSearch, TheKelvinSignIsAK)
{
    EXPECT_TRUE(contains("300 \u212A", "k"));
    EXPECT_TRUE(contains("300 k", "\u212A"));
}

TEST(LocalizedSearch, NothingIsFoundEverywhere)
{
    EXPECT_TRUE(contains("", ""));
    EXPECT_TRUE(contains("text", ""));
    EXPECT_FALSE(contains("", "x"));
}

TEST(LocalizedSearch, BlanksAndSignsCountAsTheyStand)
{
    EXPECT_TRUE(contains("a  b", "  "));
    EXPECT_FALSE(contains("a b", "  "));
    EXPECT_FALSE(contains("ab", "a b"));
    EXPECT_TRUE(contains("50 % (net)", "% ("));
    EXPECT_TRUE(contains(std::string("a\0b", 3), std::string("\0B", 2)));
}

TEST(LocalizedSearch, ALaterPlaceIsFoundWhereAnEarlierOneIsPartOfALetter)
{
    EXPECT_TRUE(contains("aae\u0301aae", "aae"));
    EXPECT_TRUE(contains("aaab", "aab"));
}

RC_GTEST_PROP(AnySearch, FindsEveryTextInItselfBetweenOthers, ())
{
    const std::string wanted = "n" + *arbitraryText(); // a mark would belong to what is before it
    const std::string locale = *rc::gen::element<std::string>("en_US", "tr_TR", "lt_LT");
    RC_ASSERT(contains(wanted, wanted, locale));
    RC_ASSERT(contains("x " + wanted + " y", wanted, locale));
}

RC_GTEST_PROP(AnySearch, FindsWhatAMoreSpecificOneFinds, ())
{
    const std::string text = *arbitraryText();
    const std::string first = "n" + *arbitraryText();
    const std::string joined = first + " n" + *arbitraryText();
    RC_ASSERT(contains(text + " " + joined, joined));
    RC_ASSERT(contains(text + " " + joined, first + " "));
}

} // namespace
} // namespace KestryCore
