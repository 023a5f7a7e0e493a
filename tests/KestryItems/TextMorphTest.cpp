#include "TextMorph.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

constexpr bool moves = false;
constexpr bool reducesMotion = true;

std::vector<RunChange> changes(const QString& before, const QString& after)
{
    return runChanges(morphRuns(before), morphRuns(after));
}

TEST(TextMorph, NothingMovesForThoseWhoWantLessMotion)
{
    EXPECT_EQ(morphEffect({"00:01"}, {"00:02"}, reducesMotion), MorphEffect::none);
    EXPECT_EQ(morphEffect({"$1", 1.0}, {"$2", 2.0}, reducesMotion), MorphEffect::none);
    EXPECT_EQ(morphEffect({"a"}, {"b"}, reducesMotion), MorphEffect::none);
}

TEST(TextMorph, DigitsRollInTheDirectionOfTheValue)
{
    EXPECT_EQ(morphEffect({"$1", 1.0}, {"$2", 2.0}, moves), MorphEffect::rollUp);
    EXPECT_EQ(morphEffect({"$2", 2.0}, {"$1", 1.0}, moves), MorphEffect::rollDown);
}

TEST(TextMorph, AValueRollsEvenWhereItsTextHasNoDigit)
{
    EXPECT_EQ(morphEffect({"1", 1.0}, {"none", 0.0}, moves), MorphEffect::rollDown);
}

TEST(TextMorph, AFirstValueRollsUp)
{
    EXPECT_EQ(morphEffect({"—"}, {"$1", 1.0}, moves), MorphEffect::rollUp);
}

TEST(TextMorph, WithoutAValueDigitsCountUpwards)
{
    EXPECT_EQ(morphEffect({"00:00:09"}, {"00:00:10"}, moves), MorphEffect::rollUp);
    EXPECT_EQ(morphEffect({"00:00:10"}, {"00:00:09"}, moves), MorphEffect::rollUp);
}

TEST(TextMorph, ADashInPlaceOfANumberFadesIn)
{
    EXPECT_EQ(morphEffect({"00:00:09"}, {"—"}, moves), MorphEffect::crossFade);
    EXPECT_EQ(morphEffect({"Nonbillable"}, {"Rate not set"}, moves), MorphEffect::crossFade);
}

TEST(TextMorph, WhatStaysTheSameDoesNotMove)
{
    EXPECT_EQ(morphEffect({"00:01"}, {"00:01"}, moves), MorphEffect::none);
}

TEST(TextMorph, EachDigitIsARunOfItsOwn)
{
    const std::vector<MorphRun> expected{
        {"US$", false}, {"1", true}, {",", false}, {"2", true}, {"5", true}};
    EXPECT_EQ(morphRuns("US$1,25"), expected);
    EXPECT_TRUE(morphRuns("").empty());
}

TEST(TextMorph, RunsStandAsTheyAreSeenInEveryScript)
{
    const auto seen = [](const QString& text) {
        QStringList runs;
        for (const MorphRun& run : morphRuns(text)) {
            runs << run.text;
        }
        return runs;
    };
    EXPECT_EQ(seen("نوفمبر ٢٠٢٦"), QStringList({"٢", "٠", "٢", "٦", "نوفمبر "}));
    EXPECT_EQ(seen("\u200f٩٫٥\u00a0US$"), QStringList({"\u00a0US$", "٩", "٫", "٥", "\u200f"}));
    EXPECT_EQ(seen("٩٫٥ US$"), QStringList({"٩", "٫", "٥", " US$"}));
    EXPECT_TRUE(morphRuns("نوفمبر ٢٠٢٦").front().isRightToLeft);
    EXPECT_FALSE(morphRuns("٩٫٥ US$").front().isRightToLeft);
}

TEST(TextMorph, OnlyTheDigitsThatChangeRoll)
{
    using enum RunChange;
    EXPECT_EQ(changes("00:09", "00:10"), (std::vector{still, still, still, roll, roll}));
    EXPECT_EQ(changes("00:10", "00:11"), (std::vector{still, still, still, still, roll}));
}

TEST(TextMorph, ANumberThatGrowsKeepsItsOnesInPlace)
{
    using enum RunChange;
    EXPECT_EQ(changes("99:00", "100:00"), (std::vector{fade, roll, roll, still, still, still}));
    EXPECT_EQ(changes("100:00", "99:00"), (std::vector{roll, roll, still, still, still}));
}

TEST(TextMorph, ADigitInPlaceOfAnotherSignFades)
{
    using enum RunChange;
    EXPECT_EQ(changes("$9", "$10"), (std::vector{fade, fade, roll}));
}

} // namespace
} // namespace Kestry
