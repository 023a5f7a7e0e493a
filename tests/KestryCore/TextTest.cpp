#include "Text.h"

#include <gtest/gtest.h>

#include <string>

namespace KestryCore {
namespace {

TEST(Text, SpaceSeparatorsAreBlank)
{
    for (const char32_t codePoint : {U' ', U'\u00A0', U'\u1680', U'\u2000', U'\u2005', U'\u200A',
             U'\u202F', U'\u205F', U'\u3000'}) {
        EXPECT_TRUE(isBlank(codePoint)) << static_cast<unsigned>(codePoint);
    }
}

TEST(Text, LineAndParagraphEndsAreBlank)
{
    for (const char32_t codePoint :
        {U'\t', U'\n', U'\v', U'\f', U'\r', char32_t{0x85}, U'\u2028', U'\u2029'}) {
        EXPECT_TRUE(isBlank(codePoint)) << static_cast<unsigned>(codePoint);
    }
}

TEST(Text, InformationSeparatorsAndZeroWidthCharactersAreNotBlank)
{
    for (const char32_t codePoint :
        {char32_t{0x08}, char32_t{0x0E}, char32_t{0x1C}, char32_t{0x1D}, char32_t{0x1E},
            char32_t{0x1F}, U'\u180E', U'\u200B', U'\u200D', U'\u2060', U'\uFEFF'}) {
        EXPECT_FALSE(isBlank(codePoint)) << static_cast<unsigned>(codePoint);
    }
}

TEST(Text, TrimmingTakesBlanksFromBothEndsOnly)
{
    EXPECT_EQ(trimmed(" \t a b \r\n"), "a b");
    EXPECT_EQ(trimmed("\u3000\u2028x\u00A0"), "x");
    EXPECT_EQ(trimmed("x"), "x");
}

TEST(Text, TrimmingBlanksAloneLeavesNothing)
{
    EXPECT_EQ(trimmed(""), "");
    EXPECT_EQ(trimmed("\u2003\n \u0085"), "");
}

TEST(Text, TrimmingKeepsIllFormedBytes)
{
    EXPECT_EQ(trimmed(" \x80 "), "\x80");
    EXPECT_EQ(trimmed("\xE2\x80"), "\xE2\x80");
}

TEST(Text, CaseFoldingComparesBeyondAscii)
{
    EXPECT_TRUE(equalsIgnoringCase("STRASSE", "straße"));
    EXPECT_TRUE(equalsIgnoringCase("ÉTÉ", "été"));
    EXPECT_FALSE(equalsIgnoringCase("ete", "été"));
    EXPECT_FALSE(equalsIgnoringCase("a", "a "));
}

TEST(Text, OverlongSurrogateAndCutOffSequencesAreNotWellFormed)
{
    EXPECT_TRUE(isWellFormedUtf8("Ж€𝄞"));
    EXPECT_TRUE(isWellFormedUtf8(std::string_view("\0", 1)));
    for (const char* text : {"\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82", "\xFF"}) {
        EXPECT_FALSE(isWellFormedUtf8(text));
    }
}

} // namespace
} // namespace KestryCore
