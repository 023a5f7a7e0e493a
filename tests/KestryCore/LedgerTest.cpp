#include "Ledger.h"

#include <gtest/gtest.h>

#include "SampleLedger.h"

namespace KestryCore {
namespace {

using namespace Sample;

TEST(TimeEntry, LastsAsLongAsItsSpansTogether)
{
    TimeEntry entry = Sample::entry();
    entry.spans = {span(noon, noon + 10), span(noon + 60, noon + 90.5)};
    EXPECT_EQ(entry.duration(), 40.5);
}

TEST(TimeEntry, ARecordedDurationReplacesTheSumOfTheSpans)
{
    TimeEntry entry = Sample::entry();
    entry.recordedDuration = 1800.0;
    EXPECT_EQ(entry.duration(), 1800.0);
}

TEST(TimeEntry, ARecordedDurationOfZeroCountsEvenWhenTheSpansHoldTime)
{
    TimeEntry entry = Sample::entry();
    entry.recordedDuration = 0.0;
    EXPECT_EQ(entry.duration(), 0.0);
}

TEST(TimeEntry, LastsNothingWithoutSpans)
{
    EXPECT_EQ(TimeEntry{}.duration(), 0.0);
}

TEST(TimeEntry, SpansAreAddedUpInTheirOrder)
{
    TimeEntry entry = Sample::entry();
    entry.spans = {span(0, 0.1), span(1, 1.2), span(2, 2.3)};
    EXPECT_EQ(entry.duration(), 0.0 + (0.1 - 0.0) + (1.2 - 1.0) + (2.3 - 2.0));
}

TEST(TimeEntry, AnHourAndAHalfAt150DollarsEarns225Dollars)
{
    TimeEntry entry = Sample::entry();
    entry.recordedDuration = 5400.0;
    EXPECT_EQ(entry.earnedCents(), 22'500.0);
}

TEST(TimeEntry, EarningsAreNotRounded)
{
    TimeEntry entry = Sample::entry();
    entry.recordedDuration = 1.0;
    EXPECT_NEAR(entry.earnedCents(), 4.1666, 0.0001);
}

TEST(TimeEntry, EarningsAreHoursTimesRateInThatOrder)
{
    TimeEntry entry = Sample::entry();
    entry.recordedDuration = 7.0;
    entry.hourlyRateCents = 4'999;
    EXPECT_EQ(entry.earnedCents(), 7.0 / 3600.0 * 4999.0);
}

TEST(TimeEntry, EarnsExactlyNothingWhenNotBillable)
{
    TimeEntry entry = Sample::entry();
    entry.isBillable = false;
    EXPECT_EQ(entry.earnedCents(), 0.0);
}

TEST(TimeEntry, EarnsExactlyNothingAtAnUnknownRate)
{
    TimeEntry entry = Sample::entry();
    entry.rateIsKnown = false;
    EXPECT_EQ(entry.earnedCents(), 0.0);
}

TEST(TimeEntry, BeginsWithItsFirstSpanAndEndsWithItsLast)
{
    TimeEntry entry = Sample::entry();
    entry.spans = {span(noon, noon + 1), span(noon + 5, noon + 9)};
    EXPECT_EQ(entry.startedAt(), Date{noon});
    EXPECT_EQ(entry.endedAt(), Date{noon + 9});
}

TEST(TimeEntry, WithoutSpansItBeginsAndEndsInTheDistantPast)
{
    EXPECT_EQ(TimeEntry{}.startedAt(), distantPast);
    EXPECT_EQ(TimeEntry{}.endedAt(), distantPast);
}

TEST(ActiveSession, IsPausedWithoutAnOpenInterval)
{
    EXPECT_TRUE(pausedSession().isPaused());
    EXPECT_FALSE(runningSession().isPaused());
}

TEST(ActiveSession, ElapsedAddsTheOpenIntervalToTheSpans)
{
    const ActiveSession session = runningSession();
    EXPECT_EQ(session.elapsed(*session.runningSince + 25.5), hour + 25.5);
}

TEST(ActiveSession, ElapsedBeforeTheOpenIntervalIsTheSumOfTheSpans)
{
    const ActiveSession session = runningSession();
    EXPECT_EQ(session.elapsed(*session.runningSince + -1000), hour);
}

TEST(ActiveSession, ElapsedOfAPausedSessionDoesNotDependOnTheDate)
{
    const ActiveSession session = pausedSession();
    EXPECT_EQ(session.elapsed(Date{noon - 1e9}), hour);
    EXPECT_EQ(session.elapsed(Date{noon + 1e9}), hour);
}

TEST(ActiveSession, ElapsedIsNotCapped)
{
    const ActiveSession session = runningSession();
    EXPECT_EQ(session.elapsed(*session.runningSince + 1e9), hour + 1e9);
}

TEST(LedgerData, ACopyIsIndependent)
{
    const LedgerData original = connectedLedger();
    LedgerData copy = original;
    copy.clients.modify(clientID(), [](Client& client) { client.name = "Other"; });
    copy.replication.edit().enabled = false;
    EXPECT_EQ(original, connectedLedger());
    EXPECT_NE(copy, original);
}

TEST(LedgerData, ReplicationTakesPartInEquality)
{
    LedgerData other = connectedLedger();
    other.replication.edit().deviceName = "attic";
    EXPECT_NE(other, connectedLedger());
    EXPECT_NE(runningLedger(), connectedLedger());
}

} // namespace
} // namespace KestryCore
