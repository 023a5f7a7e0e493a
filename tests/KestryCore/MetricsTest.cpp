#include <gmock/gmock.h>

#include "MetricsFixture.h"

namespace KestryCore {
namespace {

using Sample::hour;
using testing::AllOf;
using testing::Each;
using testing::Field;

class Metrics : public MetricsFixture { };

TEST_F(Metrics, HoldAZeroForEveryDayOfAnEmptyMonth)
{
    const MonthMetrics february = month(local(2, 10));
    EXPECT_EQ(february.daily.size(), 28U);
    EXPECT_EQ(february.daily.front().date, local(2, 1));
    EXPECT_EQ(february.daily.back().date, local(2, 28));
    EXPECT_THAT(february.daily,
        Each(AllOf(Field(&DailyTotal::seconds, 0.0), Field(&DailyTotal::earnedCents, 0.0))));
    MonthMetrics zeros;
    zeros.daily = february.daily;
    EXPECT_EQ(february, zeros);
}

TEST_F(Metrics, CountASessionAcrossMidnightOnBothDays)
{
    work(local(3, 10, 23), local(3, 11, 2));
    const MonthMetrics march = month(local(3, 31));
    EXPECT_EQ(march.daily[9].seconds, hour);
    EXPECT_EQ(march.daily[10].seconds, 2 * hour);
    EXPECT_EQ(march.daily[10].earnedCents, 30'000.0);
    EXPECT_EQ(march.sessionCount, 1);
}

TEST_F(Metrics, DivideASessionAcrossTheEndOfAMonth)
{
    work(local(4, 30, 23), local(5, 1, 1));
    const MonthMetrics april = month(local(4, 2));
    const MonthMetrics may = month(local(5, 2));
    EXPECT_EQ(april.daily.back().seconds, hour);
    EXPECT_EQ(may.daily.front().seconds, hour);
    EXPECT_EQ(april.seconds, hour);
    EXPECT_EQ(may.seconds, hour);
    EXPECT_EQ(april.sessionCount, 1);
    EXPECT_EQ(may.sessionCount, 1);
}

TEST_F(Metrics, SpreadARecordedDurationOverTheSpansInProportion)
{
    TimeEntry entry = session(local(3, 10, 23), local(3, 11, 0));
    entry.spans.push_back({local(3, 11, 9), local(3, 11, 10)});
    entry.recordedDuration = hour;
    ledger.entries.append(entry);
    const MonthMetrics march = month(local(3, 31));
    EXPECT_EQ(march.seconds, hour);
    EXPECT_EQ(march.daily[9].seconds, hour / 2);
    EXPECT_EQ(march.daily[10].seconds, hour / 2);
    EXPECT_EQ(march.earnedCents, 15'000.0);
}

TEST_F(Metrics, TellARecordedDurationWithoutSpansToNoMonth)
{
    TimeEntry entry = session(local(3, 10), local(3, 10));
    entry.spans.clear();
    entry.recordedDuration = hour;
    entry.rateIsKnown = false;
    ledger.entries.append(entry);
    EXPECT_EQ(month(local(3, 31)).seconds, 0.0);
    EXPECT_EQ(month(local(3, 31)).sessionCount, 0);
}

TEST_F(Metrics, CountNothingOfSpansWithoutLength)
{
    TimeEntry entry = session(local(3, 10, 9), local(3, 10, 9));
    entry.recordedDuration = hour;
    ledger.entries.append(entry);
    const MonthMetrics march = month(local(3, 31));
    EXPECT_EQ(march.sessionCount, 0);
    EXPECT_EQ(march.seconds, 0.0);
    EXPECT_EQ(march.daily.size(), 31U);
}

TEST_F(Metrics, CountNoSessionWhoseRecordedDurationIsZero)
{
    TimeEntry entry = session(local(3, 10, 9), local(3, 10, 10));
    entry.recordedDuration = 0.0;
    ledger.entries.append(entry);
    EXPECT_EQ(month(local(3, 31)).sessionCount, 0);
    EXPECT_EQ(month(local(3, 31)).seconds, 0.0);
}

TEST_F(Metrics, CountNothingOfSpansThatTakeBackTheirTime)
{
    TimeEntry entry = session(local(3, 10, 9), local(3, 10, 10));
    entry.spans.push_back({local(3, 10, 12), local(3, 10, 11)});
    ledger.entries.append(entry);
    EXPECT_EQ(month(local(3, 31)).sessionCount, 0);
    EXPECT_EQ(month(local(3, 31)).seconds, 0.0);
}

TEST_F(Metrics, CountABillableSessionWithoutAKnownRateAsUnpriced)
{
    TimeEntry entry = session(local(3, 10, 9), local(3, 10, 10));
    entry.rateIsKnown = false;
    ledger.entries.append(entry);
    const MonthMetrics march = month(local(3, 31));
    EXPECT_EQ(march.seconds, hour);
    EXPECT_EQ(march.billableSeconds, hour);
    EXPECT_EQ(march.unpricedSeconds, hour);
    EXPECT_EQ(march.earnedCents, 0.0);
}

TEST_F(Metrics, CountOnlySecondsOfANonbillableSessionWhateverItsRate)
{
    for (const bool rateIsKnown : {true, false}) {
        TimeEntry entry = session(local(3, 10, 9), local(3, 10, 10));
        entry.isBillable = false;
        entry.rateIsKnown = rateIsKnown;
        ledger.entries.append(entry);
    }
    const MonthMetrics march = month(local(3, 31));
    EXPECT_EQ(march.seconds, 2 * hour);
    EXPECT_EQ(march.billableSeconds, 0.0);
    EXPECT_EQ(march.unpricedSeconds, 0.0);
    EXPECT_EQ(march.earnedCents, 0.0);
}

TEST_F(Metrics, EarnNothingAtAKnownRateOfZeroAndCallNoneOfItUnpriced)
{
    TimeEntry entry = session(local(3, 10, 9), local(3, 10, 10));
    entry.hourlyRateCents = 0;
    ledger.entries.append(entry);
    const MonthMetrics march = month(local(3, 31));
    EXPECT_EQ(march.billableSeconds, hour);
    EXPECT_EQ(march.earnedCents, 0.0);
    EXPECT_EQ(march.unpricedSeconds, 0.0);
}

TEST_F(Metrics, PriceEverySessionAtItsOwnRate)
{
    TimeEntry cheap = session(local(3, 10, 9), local(3, 10, 11));
    cheap.hourlyRateCents = 4'000;
    ledger.entries.append(cheap);
    work(local(3, 10, 11), local(3, 10, 12));
    EXPECT_EQ(month(local(3, 31)).daily[9].earnedCents, 2 * 4'000.0 + 15'000.0);
}

TEST_F(Metrics, CarryTheFirstDayForwardAsTheWholeMonthsPace)
{
    work(local(3, 1, 9), local(3, 1, 11));
    EXPECT_EQ(month(local(3, 1, 12)).projectedSeconds, 62 * hour);
    EXPECT_EQ(month(local(3, 1, 12)).projectedCents, 62 * 15'000.0);
    EXPECT_EQ(month(local(3, 31, 12)).projectedSeconds, 2 * hour);
}

TEST_F(Metrics, ProjectAFinishedMonthToWhatWasRecorded)
{
    work(local(3, 1, 9), local(3, 1, 11));
    work(local(3, 20, 22), local(3, 21, 3));
    const Date anchor = monthAnchor(local(3, 7), local(6, 1), berlin()).value();
    const MonthMetrics march = month(anchor, local(6, 1));
    EXPECT_EQ(march.projectedSeconds, march.seconds);
    EXPECT_EQ(march.projectedCents, march.earnedCents);
    EXPECT_EQ(march.seconds, 7 * hour);
}

TEST_F(Metrics, ProjectNothingMoreOnTheLastDayToTheLastBit)
{
    work(local(2, 3, 9), local(2, 3, 11)); // a number that 28 does not divide and give back
    ASSERT_NE(2 * hour / 28 * 28, 2 * hour);
    EXPECT_EQ(month(local(2, 28), local(3, 1)).projectedSeconds, 2 * hour);
}

TEST_F(Metrics, TakeThePaceFromTheMonthAskedForAndNotFromNow)
{
    work(local(3, 1, 9), local(3, 1, 11));
    EXPECT_EQ(month(local(3, 31), local(4, 2)).projectedSeconds, 2 * hour);
    EXPECT_EQ(month(local(3, 1), local(4, 2)).projectedSeconds, 62 * hour);
}

TEST_F(Metrics, GiveDaysOfAClockChangeTheirOwnLength)
{
    work(local(3, 28, 12), local(3, 30, 12));
    work(local(10, 24, 12), local(10, 26, 12));
    EXPECT_EQ(month(local(3, 31)).daily[28].seconds, 23 * hour);
    EXPECT_EQ(month(local(10, 31)).daily[24].seconds, 25 * hour);
}

TEST_F(Metrics, GrowWithARunningSession)
{
    runSince(local(3, 10, 9));
    EXPECT_EQ(month(local(3, 10, 10)).seconds, hour);
    EXPECT_EQ(month(local(3, 10, 12)).seconds, 3 * hour);
    EXPECT_EQ(month(local(3, 10, 12)).earnedCents, 45'000.0);
    EXPECT_EQ(client(local(3, 10, 12)).seconds, 3 * hour);
}

TEST_F(Metrics, StandStillWithAPausedSession)
{
    ledger.active = Sample::pausedSession();
    ledger.active->spans = {{local(3, 10, 9), local(3, 10, 10)}};
    EXPECT_EQ(month(local(3, 10, 12)).seconds, hour);
    EXPECT_EQ(month(local(3, 20, 12)).seconds, hour);
    EXPECT_EQ(client(local(3, 20, 12)).seconds, hour);
}

TEST_F(Metrics, LeaveOutAnOpenSpanThatHasNotBegun)
{
    runSince(local(3, 10, 9));
    for (const Date now : {local(3, 10, 9), local(3, 10, 8)}) {
        EXPECT_EQ(month(now).seconds, 0.0);
        EXPECT_EQ(month(now).sessionCount, 0);
        EXPECT_EQ(client(now).seconds, 0.0);
        EXPECT_EQ(client(now).firstSessionDate, std::nullopt);
    }
}

TEST_F(Metrics, LetARunningSessionReachOnlyToTheMomentAskedFor)
{
    runSince(local(3, 31, 23));
    EXPECT_EQ(month(local(3, 1), local(4, 1, 2)).seconds, hour);
    EXPECT_EQ(month(local(4, 1), local(4, 1, 2)).seconds, 2 * hour);
    EXPECT_EQ(month(local(3, 31, 23, 30)).seconds, hour / 2);
}

TEST_F(Metrics, AreOfOneClientsProjectsWhenAskedForThem)
{
    Project other = Sample::project(2);
    other.clientID = Sample::clientID(2);
    ledger.projects.append(other);
    work(local(3, 10, 9), local(3, 10, 10));
    TimeEntry elsewhere = session(local(3, 10, 9), local(3, 10, 14));
    elsewhere.projectID = other.id;
    ledger.entries.append(elsewhere);
    const Date now = local(3, 31);
    EXPECT_EQ(metrics(ledger, now, berlin(), Sample::clientID()).seconds, hour);
    EXPECT_EQ(metrics(ledger, now, berlin(), Sample::clientID(2)).seconds, 5 * hour);
    EXPECT_EQ(month(now).seconds, 6 * hour);
}

TEST_F(Metrics, CountASessionWithoutAProjectInTheWholeAlone)
{
    TimeEntry orphan = session(local(3, 10, 9), local(3, 10, 10));
    orphan.projectID = Sample::projectID(7);
    ledger.entries.append(orphan);
    runSince(local(3, 10, 12));
    ledger.active->projectID = Sample::projectID(7);
    const Date now = local(3, 10, 14);
    EXPECT_EQ(month(now).seconds, 3 * hour);
    EXPECT_EQ(metrics(ledger, now, berlin(), Sample::clientID()).seconds, 0.0);
    EXPECT_EQ(client(now), ClientMetrics{});
}

TEST_F(Metrics, AskForAMonthAtNowOrElseAtItsLastSecond)
{
    const Date now = local(3, 10, 9);
    EXPECT_EQ(monthAnchor(local(3, 1), now, berlin()), now);
    EXPECT_EQ(monthAnchor(local(2, 3), now, berlin()), local(3, 1) + -1.0);
    EXPECT_EQ(monthAnchor(local(4, 3), now, berlin()), local(5, 1) + -1.0);
    EXPECT_EQ(monthAnchor(local(3, 3), local(3, 1), berlin()), local(3, 1));
    EXPECT_EQ(monthAnchor(local(3, 3), local(4, 1), berlin()), local(4, 1) + -1.0);
}

TEST_F(Metrics, OfAMonthToComeHoldItsDaysAndNoTime)
{
    runSince(local(3, 10, 9));
    const Date now = local(3, 10, 12);
    const Date anchor = monthAnchor(local(7, 1), now, berlin()).value();
    const MonthMetrics july = month(anchor, now);
    EXPECT_EQ(july.daily.size(), 31U);
    EXPECT_EQ(july.seconds, 0.0);
    EXPECT_EQ(july.projectedSeconds, 0.0);
}

} // namespace
} // namespace KestryCore
