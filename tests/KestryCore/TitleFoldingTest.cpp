#include "TitleFolding.h"

#include <gtest/gtest.h>

#include "AllCodePoints.h"

namespace KestryCore {
namespace {

TEST(TitleFolding, ForgetsCase)
{
    EXPECT_EQ(foldedTitle("Design REVIEW 2"), "design review 2");
    EXPECT_EQ(foldedTitle("ÀÉ ПРИВЕТ Σίσυφος"), "ae привет σισυφοσ");
}

TEST(TitleFolding, ForgetsAccentsComposedOrNot)
{
    EXPECT_EQ(foldedTitle("Café"), "cafe");
    EXPECT_EQ(foldedTitle("Cafe\u0301"), "cafe");
    EXPECT_EQ(foldedTitle("Việt Nam, Ångström, Çelik, й"), "viet nam, angstrom, celik, и");
}

TEST(TitleFolding, TakesNoAccountOfTheTurkishAlphabet)
{
    EXPECT_EQ(foldedTitle("Iİ"), "ii");
    EXPECT_EQ(foldedTitle("ı"), "ı");
}

TEST(TitleFolding, KeepsLettersThatHaveNoAccentToLose)
{
    EXPECT_EQ(foldedTitle("Øre"), "øre");
    EXPECT_EQ(foldedTitle("Łódź"), "łodz");
}

TEST(TitleFolding, ChangesLengths)
{
    EXPECT_EQ(foldedTitle("Straße"), "strasse");
    EXPECT_EQ(foldedTitle("\uFB03x"), "ffix");
    EXPECT_EQ(foldedTitle("\u212A\u212B"), "ka"); // the signs of kelvin and angstrom
}

TEST(TitleFolding, KeepsMarksThatMakeAnotherLetter)
{
    EXPECT_EQ(foldedTitle("が"), "が");
    EXPECT_EQ(foldedTitle("か\u3099"), "が");
    EXPECT_EQ(foldedTitle("किताब"), "किताब");
    EXPECT_EQ(foldedTitle("ก่า"), "ก่า");
}

TEST(TitleFolding, ForgetsThePointsOfHebrewAndArabic)
{
    EXPECT_EQ(foldedTitle("שָׁלוֹם"), "שלום");
    EXPECT_EQ(foldedTitle("كِتَاب"), "كتاب");
}

TEST(TitleFolding, KeepsBlanksAndLineEnds)
{
    EXPECT_EQ(foldedTitle("  A\u00A0\r\nB "), "  a\u00A0\r\nb ");
}

TEST(TitleFolding, GivesAsciiTheSameWhateverFollows)
{
    forEachCodePoint([](char32_t codePoint) {
        const std::string next = utf8(codePoint);
        ASSERT_EQ(foldedTitle("E" + next).substr(0, 1), "e") << static_cast<unsigned>(codePoint);
    });
}

TEST(TitleFolding, LeavesWhatItHasFolded)
{
    forEachCodePoint([](char32_t codePoint) {
        const std::string once = foldedTitle(utf8(codePoint));
        ASSERT_EQ(foldedTitle(once), once) << static_cast<unsigned>(codePoint);
    });
}

} // namespace
} // namespace KestryCore
