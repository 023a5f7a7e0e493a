#include "Instants.h"

#include <gmock/gmock.h>

#include "UsageError.h"

namespace Kestry {
namespace {

using KestryCore::CalendarDay;
using KestryCore::Date;
using KestryCore::dateInUtc;
using KestryCore::WallTime;
using KestryCore::ZoneCalendar;
using testing::ThrowsMessage;

Date utc(int month, int day, int hour, int minute, double second = 0.0)
{
    return dateInUtc(WallTime{CalendarDay{2026, month, day}, hour, minute, second});
}

/// Read at 23:30 UTC on 14 March, which is half past midnight of the 15th in Berlin.
Date read(const char* text)
{
    static const ZoneCalendar berlin("Europe/Berlin", "de_DE");
    return readInstant(text, utc(3, 14, 23, 30), berlin);
}

TEST(ReadInstant, ReadsAMomentInUtcToItsFraction)
{
    EXPECT_EQ(read("2026-03-14T09:26:53.589Z"), utc(3, 14, 9, 26, 53.589));
    EXPECT_EQ(read("2026-03-14T09:26:53Z"), utc(3, 14, 9, 26, 53.0));
    EXPECT_EQ(read("2026-03-14t09:26z"), utc(3, 14, 9, 26));
}

TEST(ReadInstant, ReadsAMomentWithItsDistanceFromUtc)
{
    EXPECT_EQ(read("2026-03-14T10:26+01:00"), utc(3, 14, 9, 26));
    EXPECT_EQ(read("2026-03-14T10:26+0100"), utc(3, 14, 9, 26));
    EXPECT_EQ(read("2026-03-14T10:26+01"), utc(3, 14, 9, 26));
    EXPECT_EQ(read("2026-03-14 04:26:00-05:00"), utc(3, 14, 9, 26));
    EXPECT_EQ(read("2026-03-14T00:11+05:45"), utc(3, 13, 18, 26));
    EXPECT_EQ(read("2026-03-14T09:56+0030"), utc(3, 14, 9, 26));
}

TEST(ReadInstant, ReadsALocalMoment)
{
    EXPECT_EQ(read("2026-03-14 10:26"), utc(3, 14, 9, 26));
    EXPECT_EQ(read("2026-07-14T10:26:30"), utc(7, 14, 8, 26, 30.0));
    EXPECT_EQ(read(" 2026-03-14 9:26 "), utc(3, 14, 8, 26));
}

TEST(ReadInstant, TakesATimeAloneForTodayOnTheLocalClocks)
{
    EXPECT_EQ(read("10:26"), utc(3, 15, 9, 26));
    EXPECT_EQ(read("0:00"), utc(3, 14, 23, 0));
}

TEST(ReadInstant, TakesATimeOfTodayOrYesterdayByItsName)
{
    EXPECT_EQ(read("yesterday 14:30"), utc(3, 14, 13, 30));
    EXPECT_EQ(read("Yesterday,  9:05:30"), utc(3, 14, 8, 5, 30.0));
    EXPECT_EQ(read("today 0:10"), utc(3, 14, 23, 10));
}

TEST(ReadInstant, ReadsAClockOfTwelveHours)
{
    EXPECT_EQ(read("yesterday 2:30pm"), utc(3, 14, 13, 30));
    EXPECT_EQ(read("2026-03-14 2:30 PM"), utc(3, 14, 13, 30));
    EXPECT_EQ(read("9 a.m."), utc(3, 15, 8, 0));
    EXPECT_EQ(read("12 pm"), utc(3, 15, 11, 0));
    EXPECT_EQ(read("12:15am"), utc(3, 14, 23, 15));
}

TEST(ReadInstant, CountsBackFromNow)
{
    EXPECT_EQ(read("-15m"), utc(3, 14, 23, 15));
    EXPECT_EQ(read("-1h30m"), utc(3, 14, 22, 0));
    EXPECT_EQ(read("-0s"), utc(3, 14, 23, 30));
}

TEST(ReadInstant, TakesTheFirstOfATimeThatComesTwice)
{
    EXPECT_EQ(read("2026-10-25 02:30"), utc(10, 25, 0, 30));
}

TEST(ReadInstant, RefusesATimeThatTheClocksSkip)
{
    EXPECT_THAT([] { (void)read("2026-03-29 02:30"); },
        ThrowsMessage<UsageError>("The clocks of Europe/Berlin skip 02:30 on that day. Give a time "
                                  "before or after it."));
}

TEST(ReadInstant, NamesTheFormsToOnesThatItCannotRead)
{
    EXPECT_THAT([] { (void)read("soon"); },
        ThrowsMessage<UsageError>(
            "\"soon\" is no moment. Give one as in 2026-03-14T09:26:53.589Z, "
            "2026-03-14T10:26+01:00, \"2026-03-14 10:26\", 10:26 (today), \"yesterday 14:30\" "
            "or -1h30m (before now)."));
}

TEST(ReadInstant, RefusesWhatNoCalendarAndNoClockShows)
{
    for (const char* text : {"2026-02-29 10:00", "2026-13-01 10:00", "2026-00-10 10:00",
             "2026-04-31 10:00", "2026-03-14 24:00", "2026-03-14 10:60", "2026-03-14 10:26:60",
             "25:00", "10:5", "2026-03-14T10:26+24:00", "2026-03-14T10:26+01:60"}) {
        EXPECT_THROW((void)read(text), UsageError) << text;
    }
}

TEST(ReadInstant, RefusesOtherShapes)
{
    for (const char* text :
        {"", " ", "now", "2026-03-14", "26-03-14 10:26", "14.03.2026 10:26", "2026-3-14 10:26",
            "2026-03-14T10:26 Z", "2026-03-14T10:26Zx", "2026-03-14T10:26+1", "2026-03-14T10:26+",
            "2026-03-14T10:26:53.", "2026-03-14T10:26+010", "2026-03-14T10:26+01:0", "10", "1e9",
            "10:26Z", "+15m", "15m", "-15", "--15m", "-1:30", "-", "2026-03-1410:26", "yesterday",
            "yesterday14:30", "yesterdays 14:30", "tomorrow 9:00", "13 pm", "0:30 am",
            "yesterday 9", "9 xm", "9:30 ampm", "today 9:00Z"}) {
        EXPECT_THROW((void)read(text), UsageError) << text;
    }
}

} // namespace
} // namespace Kestry
