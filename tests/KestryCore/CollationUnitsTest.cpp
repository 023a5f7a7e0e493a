#include "CollationUnits.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "LocaleCollator.h"

namespace KestryCore {
namespace {

using Units = std::vector<std::uint8_t>;

/// The units of a text in a language; none when it is left to the collator.
std::optional<Units> unitsOf(const std::string& text, const std::string& locale = "en_US")
{
    const LocaleCollator collator(locale);
    Units units(CollationUnits::most(text.size()) + 1);
    const auto length = CollationUnits(collator.library()).write(text, units.data());
    if (!length) {
        return std::nullopt;
    }
    units.resize(*length);
    return units;
}

TEST(CollationUnits, TheAlphabetsOfEuropeHaveThem)
{
    EXPECT_TRUE(
        unitsOf("Zwölf Boxkämpfer jagen Viktor quer über den großen Sylter Deich", "de_DE"));
    EXPECT_TRUE(unitsOf("Yxskaftbud, ge vår wc-zonmö IQ-hjälp", "sv_SE"));
    EXPECT_TRUE(unitsOf("Dès Noël, où un zéphyr haï me vêt; cœur, æther", "fr_FR"));
    EXPECT_TRUE(unitsOf("Pijamalı hasta yağız şoföre çabucak güvendi", "tr_TR"));
    EXPECT_TRUE(unitsOf("Zażółć gęślą jaźń", "pl_PL"));
    EXPECT_TRUE(unitsOf("Și țară", "ro_RO"));
    EXPECT_TRUE(unitsOf("Съешь же ещё этих мягких французских булок", "ru_RU"));
    EXPECT_TRUE(unitsOf("Ξεσκεπάζω την ψυχοφθόρα βδελυγμία", "el_GR"));
}

TEST(CollationUnits, TheSignsOfAsciiAndOfBooksHaveThem)
{
    std::string signs = "“Draft” – ‘v2’ … „x“ • 5 % § © × ÷ ¿ ¡ « »";
    for (char sign = ' '; sign < 0x7F; ++sign) {
        signs += sign;
    }
    EXPECT_TRUE(unitsOf(signs));
}

TEST(CollationUnits, AccentsAndCapitalsDoNotShowInThem)
{
    EXPECT_EQ(unitsOf("RÉSUMÉ"), unitsOf("resume"));
    EXPECT_EQ(unitsOf("Straße", "de_DE"), unitsOf("STRASSE", "de_DE"));
    EXPECT_EQ(unitsOf("Item 007"), unitsOf("item 7"));
    EXPECT_NE(unitsOf("Ö", "sv_SE"), unitsOf("O", "sv_SE"));
}

TEST(CollationUnits, ALongerNumberIsHigher)
{
    EXPECT_LT(unitsOf("99"), unitsOf("100"));
    EXPECT_LT(unitsOf("0"), unitsOf("1"));
    EXPECT_LT(unitsOf("1 "), unitsOf("10"));
}

TEST(CollationUnits, LettersThatMayBeOneWithTheirNeighbourAreLeftToTheCollator)
{
    EXPECT_FALSE(unitsOf("chata", "cs_CZ"));
    EXPECT_TRUE(unitsOf("cena hrad", "cs_CZ"));
    EXPECT_TRUE(unitsOf("chata", "en_US"));
    EXPECT_FALSE(unitsOf("Aarhus", "da_DK"));
    EXPECT_FALSE(unitsOf("l·l"));
}

TEST(CollationUnits, WhatIsBeyondTheTableIsLeftToTheCollator)
{
    EXPECT_FALSE(unitsOf("cafe\u0301"));
    EXPECT_FALSE(unitsOf("\u65E5\u672C"));
    EXPECT_FALSE(unitsOf("\U0001F600"));
    EXPECT_FALSE(unitsOf("\u0663"));
    EXPECT_FALSE(unitsOf("ill \xFF formed"));
    EXPECT_FALSE(unitsOf(std::string(300, '7')));
}

TEST(CollationUnits, ZerosBeforeANumberDoNotMakeItLong)
{
    EXPECT_EQ(unitsOf(std::string(300, '0') + "7"), unitsOf("7"));
}

} // namespace
} // namespace KestryCore
