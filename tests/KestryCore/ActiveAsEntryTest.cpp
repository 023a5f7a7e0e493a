#include "ActiveAsEntry.h"

#include <gtest/gtest.h>

#include "SampleLedger.h"

namespace KestryCore {
namespace {

using Sample::hour;
using Sample::noon;

const TimeSpan closed = Sample::span(noon, noon + hour);
const Date resumed{noon + 2 * hour};

TEST(ActiveAsEntry, KeepsAllThatTheSessionIsKnownBy)
{
    ActiveSession session = Sample::pausedSession();
    session.isBillable = false;
    session.rateIsKnown = false;
    session.sourceID = "imported-7";
    TimeEntry expected = Sample::entry(9);
    expected.title = "Index";
    expected.isBillable = false;
    expected.rateIsKnown = false;
    expected.sourceID = "imported-7";
    EXPECT_EQ(closedEntry(session), expected);
    EXPECT_EQ(countedEntry(session, resumed), expected);
    EXPECT_EQ(listedEntry(session, resumed), expected);
}

TEST(ActiveAsEntry, EndsWithTheOpenIntervalUpToNow)
{
    const Date now = resumed + 90.0;
    const std::vector<TimeSpan> expected{closed, TimeSpan{resumed, now}};
    EXPECT_EQ(countedEntry(Sample::runningSession(), now).spans, expected);
    EXPECT_EQ(listedEntry(Sample::runningSession(), now).spans, expected);
}

TEST(ActiveAsEntry, HoldsNoOpenIntervalAsItWouldBeSaved)
{
    EXPECT_EQ(closedEntry(Sample::runningSession()).spans, std::vector{closed});
}

TEST(ActiveAsEntry, CountsNoOpenIntervalAtOrBeforeItsStart)
{
    for (const double later : {0.0, -1.0, -hour}) {
        const TimeEntry entry = countedEntry(Sample::runningSession(), resumed + later);
        EXPECT_EQ(entry.spans, std::vector{closed}) << later;
    }
}

TEST(ActiveAsEntry, ListsAnEmptyOpenIntervalAtOrBeforeItsStart)
{
    const std::vector<TimeSpan> expected{closed, TimeSpan{resumed, resumed}};
    for (const double later : {0.0, -1.0, -hour}) {
        const TimeEntry entry = listedEntry(Sample::runningSession(), resumed + later);
        EXPECT_EQ(entry.spans, expected) << later;
    }
}

TEST(ActiveAsEntry, AddsNothingToAPausedSession)
{
    const Date now = resumed + hour;
    EXPECT_EQ(countedEntry(Sample::pausedSession(), now).spans, std::vector{closed});
    EXPECT_EQ(listedEntry(Sample::pausedSession(), now).spans, std::vector{closed});
}

} // namespace
} // namespace KestryCore
