#include "ElapsedText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Kestry {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(ElapsedText, HasTwoDigitsEach)
{
    EXPECT_EQ(elapsedText(0), "00:00:00");
    EXPECT_EQ(elapsedText(7 * 3600 + 4 * 60 + 9), "07:04:09");
}

TEST(ElapsedText, SecondsAreNeverRoundedUp)
{
    EXPECT_EQ(elapsedText(59.9), "00:00:59");
}

TEST(ElapsedText, HoursGrowBeyondTwoDigits)
{
    EXPECT_EQ(elapsedText(123 * 3600 + 5), "123:00:05");
}

TEST(ElapsedText, NegativeCountsAsZero)
{
    EXPECT_EQ(elapsedText(-5), "00:00:00");
}

TEST(ElapsedText, WhatIsNotFiniteOrBeyondCountingIsADash)
{
    for (const double seconds : {infinity, -infinity, std::nan(""), 9223372036854775808.0}) {
        EXPECT_EQ(elapsedText(seconds), "—") << seconds;
    }
}

TEST(SpokenElapsed, LeavesOutWhatIsZero)
{
    EXPECT_EQ(spokenElapsed(3600 + 2 * 60 + 3), "1 hour, 2 minutes, 3 seconds");
    EXPECT_EQ(spokenElapsed(7200), "2 hours");
    EXPECT_EQ(spokenElapsed(61), "1 minute, 1 second");
}

TEST(SpokenElapsed, ZeroIsStillSaid)
{
    EXPECT_EQ(spokenElapsed(0.4), "0 seconds");
    EXPECT_EQ(spokenElapsed(std::nan("")), "unknown");
}

} // namespace
} // namespace Kestry
