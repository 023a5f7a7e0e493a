#include "SessionValue.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

TimeEntry entryOf(double seconds)
{
    TimeEntry entry;
    entry.hourlyRateCents = 15000;
    entry.recordedDuration = seconds;
    return entry;
}

TEST(SessionValue, IsItsMoney)
{
    EXPECT_EQ(valueText(entryOf(5400), MoneyText("en_US")), "$225.00");
}

TEST(SessionValue, OfANonbillableSessionIsThatWordWhateverItsRate)
{
    TimeEntry entry = entryOf(5400);
    entry.isBillable = false;
    EXPECT_EQ(valueText(entry, MoneyText("en_US")), "Nonbillable");
    entry.rateIsKnown = false;
    EXPECT_EQ(valueText(entry, MoneyText("en_US")), "Nonbillable");
}

TEST(SessionValue, WithoutAKnownRateIsNeverShownAsNothing)
{
    TimeEntry entry = entryOf(5400);
    entry.rateIsKnown = false;
    EXPECT_EQ(valueText(entry, MoneyText("en_US")), "Rate not set");
}

TEST(SessionValue, OfASessionInProgressIsThatOfTheSameTimeSaved)
{
    ActiveSession session;
    session.hourlyRateCents = 15000;
    EXPECT_EQ(valueText(session, 5400, MoneyText("en_US")), "$225.00");
    EXPECT_EQ(session.earnedCents(5400), entryOf(5400).earnedCents());
    session.rateIsKnown = false;
    EXPECT_EQ(valueText(session, 5400, MoneyText("en_US")), "Rate not set");
    EXPECT_EQ(session.earnedCents(5400), 0.0);
}

} // namespace
} // namespace KestryCore
