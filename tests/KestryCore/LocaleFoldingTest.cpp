#include "LocaleFolding.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "AllCodePoints.h"
#include "ArbitraryText.h"

namespace KestryCore {
namespace {

std::u16string folded(std::string_view text, const std::string& locale = "en_US")
{
    std::u16string result = u"of another text";
    LocaleFolding(locale).fold(text, result);
    return result;
}

TEST(LocaleFolding, LettersBecomeSmallAndTheirAccentsStandBehindThem)
{
    EXPECT_EQ(folded("CAFÉ 24"), u"cafe\u0301 24");
    EXPECT_EQ(folded("e\u0301"), folded("É"));
    EXPECT_EQ(folded(""), u"");
}

TEST(LocaleFolding, AccentsAreInOneOrder)
{
    EXPECT_EQ(folded("s\u0307\u0323"), folded("s\u0323\u0307"));
    EXPECT_EQ(folded("\u1E69"), u"s\u0323\u0307");
}

TEST(LocaleFolding, OneLetterMayBecomeSeveral)
{
    EXPECT_EQ(folded("ß"), u"ss");
    EXPECT_EQ(folded("ΐ"), u"\u03B9\u0308\u0301");
}

TEST(LocaleFolding, TheLanguageDecidesOnI)
{
    EXPECT_EQ(folded("Iİıi"), u"ii\u0307\u0131i");
    EXPECT_EQ(folded("Iİıi", "tr_TR"), u"\u0131i\u0131i");
    EXPECT_EQ(folded("I\u0307", "az"), u"i");
    EXPECT_EQ(folded("i\u0307\u0300", "lt_LT"), folded("Ì", "lt_LT"));
}

TEST(LocaleFolding, IllFormedBytesAreReplaced)
{
    EXPECT_EQ(folded("A\xFF"), u"a\uFFFD");
}

/// A character that is never folded letter by letter, and changes nothing before it.
constexpr const char* whole = "\u65E5";

TEST(LocaleFolding, LetterByLetterIsAsAWholeForEveryLetter)
{
    for (const std::string locale : {"en_US", "tr_TR", "lt_LT"}) {
        LocaleFolding folding(locale);
        std::u16string alone;
        std::u16string together;
        for (char32_t character = 0; character < 0x2100; ++character) {
            folding.fold(utf8(character), alone);
            folding.fold(utf8(character) + whole, together);
            EXPECT_EQ(together, alone + u"\u65E5") << locale << ' ' << utf8(character);
        }
    }
}

RC_GTEST_PROP(AnyFolding, IsTheSameLetterByLetterAndAsAWhole, ())
{
    const auto letter = rc::gen::map(
        rc::gen::oneOf(rc::gen::inRange<char32_t>(0, 0x250), rc::gen::inRange<char32_t>(0, 0x480),
            rc::gen::inRange<char32_t>(0x2000, 0x2080)),
        [](char32_t character) { return utf8(character); });
    std::string text;
    for (const std::string& next : *rc::gen::container<std::vector<std::string>>(letter)) {
        text += next;
    }
    const std::string locale = *rc::gen::element<std::string>("de_DE", "tr_TR", "lt_LT");
    RC_ASSERT(folded(text + whole, locale) == folded(text, locale) + u"\u65E5");
}

} // namespace
} // namespace KestryCore
