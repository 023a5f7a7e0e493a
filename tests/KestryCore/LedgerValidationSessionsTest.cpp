// What a sound ledger asks of saved sessions, their intervals, and the session in progress.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "LedgerValidationFixture.h"

namespace KestryCore {
namespace {

using namespace Sample;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr const char* unordered =
    "Time intervals must be ordered, with dates between 1970 and 2200.";
constexpr const char* overlapping = "Time intervals overlap or are out of order.";

std::string verdictOn(const std::vector<TimeSpan>& spans)
{
    return refusalOf([&] { validateIntervals(spans); });
}

// Entries

TEST_F(LedgerValidation, AnEntryNeedsAKnownProjectARateAndIntervals)
{
    const char* message = "Invalid entry project, rate, or intervals.";
    changeEntry([](TimeEntry& entry) { entry.projectID = projectID(2); });
    EXPECT_EQ(verdict(), message);
    ledger = runningLedger();
    changeEntry([](TimeEntry& entry) { entry.hourlyRateCents = -1; });
    EXPECT_EQ(verdict(), message);
    ledger = runningLedger();
    setEntrySpans({});
    EXPECT_EQ(verdict(), message);
}

TEST_F(LedgerValidation, AnEntryOfExactly744HoursIsSoundAndOneSecondMoreIsNot)
{
    setEntrySpans({span(noon, noon + 2'678'400)});
    EXPECT_EQ(verdict(), accepted);
    setEntrySpans({span(noon, noon + 2'678'401)});
    EXPECT_EQ(verdict(), sessionTooLong);
}

TEST_F(LedgerValidation, ARecordedDurationPast744HoursIsTooLong)
{
    setEntrySpans({span(noon, noon + 2'678'400)});
    setRecordedDuration(2'678'400);
    EXPECT_EQ(verdict(), accepted);
    setRecordedDuration(2'678'401);
    EXPECT_EQ(verdict(), sessionTooLong);
}

TEST_F(LedgerValidation, TheIntervalsAloneAreHeldToTheLimitToo)
{
    setEntrySpans({span(noon, noon + 800 * hour)});
    setRecordedDuration(10);
    EXPECT_EQ(verdict(), sessionTooLong);
}

TEST_F(LedgerValidation, ARecordedDurationIsNeitherNegativeNorNotANumber)
{
    for (const double seconds : {-0.5, nan, HUGE_VAL, -HUGE_VAL}) {
        setRecordedDuration(seconds);
        EXPECT_EQ(verdict(), sessionTooLong) << seconds;
    }
}

TEST_F(LedgerValidation, ARecordedDurationOfNegativeZeroPasses)
{
    setRecordedDuration(-0.0);
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, ARecordedDurationMayBeShorterThanItsIntervals)
{
    setRecordedDuration(1);
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, ARecordedDurationMayExceedItsIntervalsByAMicrosecondAtMost)
{
    setRecordedDuration(hour + 0.0000005);
    EXPECT_EQ(verdict(), accepted);
    setRecordedDuration(hour + 0.000002);
    EXPECT_EQ(verdict(), "Recorded duration cannot exceed its work intervals.");
}

TEST_F(LedgerValidation, SessionsMayOverlapOneAnother)
{
    appendEntry(std::nullopt);
    active.spans = ledger.entries.front().spans;
    EXPECT_EQ(verdict(), accepted);
}

// Intervals

TEST_F(LedgerValidation, IntervalsMayTouchAndBeEmpty)
{
    EXPECT_EQ(verdictOn({}), accepted);
    EXPECT_EQ(verdictOn({span(10, 10), span(10, 20), span(20, 20), span(20, 21)}), accepted);
}

TEST_F(LedgerValidation, IntervalsReachFrom1970To2200)
{
    EXPECT_EQ(verdictOn({{earliestDate, earliestDate}, {latestDate, latestDate}}), accepted);
    EXPECT_EQ(verdictOn({{earliestDate + -1, Date{0}}}), unordered);
    EXPECT_EQ(verdictOn({{Date{0}, latestDate + 1}}), unordered);
}

TEST_F(LedgerValidation, AnIntervalMustNotEndBeforeItBegins)
{
    EXPECT_EQ(verdictOn({span(10, 9.999)}), unordered);
}

TEST_F(LedgerValidation, AnIntervalMustHaveFiniteEnds)
{
    for (const double seconds : {nan, HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(verdictOn({span(seconds, 10)}), unordered);
        EXPECT_EQ(verdictOn({span(0, seconds)}), unordered);
    }
}

TEST_F(LedgerValidation, IntervalsMustBeInOrderWithoutOverlap)
{
    EXPECT_EQ(verdictOn({span(0, 10), span(9, 20)}), overlapping);
    EXPECT_EQ(verdictOn({span(10, 20), span(0, 5)}), overlapping);
    EXPECT_EQ(verdictOn({span(10, 20), span(10, 10)}), overlapping);
}

TEST_F(LedgerValidation, AnIntervalIsCheckedByItselfBeforeItsOrder)
{
    EXPECT_EQ(verdictOn({span(10, 20), span(5, 4)}), unordered);
    EXPECT_EQ(verdictOn({span(10, 20), span(5, 6), span(5, 4)}), overlapping);
}

// The active session

TEST_F(LedgerValidation, TheActiveSessionNeedsAKnownProjectARateAndACheckpointInRange)
{
    const char* message = "Invalid active session.";
    active.projectID = projectID(2);
    EXPECT_EQ(verdict(), message);
    active = runningSession();
    active.hourlyRateCents = -1;
    EXPECT_EQ(verdict(), message);
    for (const Date date : {earliestDate + -1, latestDate + 1, Date{nan}}) {
        active = runningSession();
        active.checkpointAt = date;
        EXPECT_EQ(verdict(), message);
    }
}

TEST_F(LedgerValidation, TheActiveSessionMustNotHaveTheIdentifierOfASavedOne)
{
    active.id = sessionID();
    EXPECT_EQ(verdict(), "Invalid active session.");
}

TEST_F(LedgerValidation, TheIntervalsOfTheActiveSessionAreChecked)
{
    active.spans = {span(noon, noon - 1)};
    EXPECT_EQ(verdict(), unordered);
    active.spans = {span(noon, noon + 10), span(noon + 9, noon + 20)};
    EXPECT_EQ(verdict(), overlapping);
}

TEST_F(LedgerValidation, APausedSessionWithoutIntervalsIsSound)
{
    active = pausedSession();
    active.spans = {};
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, ARunningSessionCheckpointedAtItsStartIsSound)
{
    active.checkpointAt = *active.runningSince;
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, ARunningSessionMayReach744HoursByItsCheckpointAndNoMore)
{
    active.spans = {};
    active.checkpointAt = *active.runningSince + 2'678'400;
    EXPECT_EQ(verdict(), accepted);
    active.checkpointAt = active.checkpointAt + 1;
    EXPECT_EQ(verdict(), sessionTooLong);
}

TEST_F(LedgerValidation, AStartLongBefore1970IsTooLongBeforeItIsOutOfRange)
{
    active.spans = {};
    active.runningSince = earliestDate + -1e9;
    EXPECT_EQ(verdict(), sessionTooLong);
}

TEST_F(LedgerValidation, AStartJustBefore1970IsOutOfRange)
{
    active.spans = {};
    active.runningSince = earliestDate + -1;
    active.checkpointAt = earliestDate;
    EXPECT_EQ(verdict(), "Invalid running session checkpoint.");
}

TEST_F(LedgerValidation, TheCheckpointMustNotLieBeforeTheLastInterval)
{
    active = pausedSession();
    active.checkpointAt = active.spans.back().end + -0.001;
    EXPECT_EQ(verdict(), "Invalid session checkpoint.");
}

TEST_F(LedgerValidation, TheCheckpointMustNotLieBeforeTheStartOfTheOpenInterval)
{
    active.checkpointAt = *active.runningSince + -0.001;
    EXPECT_EQ(verdict(), "Invalid running session checkpoint.");
}

TEST_F(LedgerValidation, TheOpenIntervalMayTouchTheLastOneButNotOverlapIt)
{
    active.runningSince = active.spans.back().end;
    EXPECT_EQ(verdict(), accepted);
    active.runningSince = active.spans.back().end + -0.001;
    EXPECT_EQ(verdict(), "Running interval overlaps saved time.");
}

} // namespace
} // namespace KestryCore
