#include "UtcText.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

#include "Calendar.h"

namespace KestryCore {
namespace {

std::string timestamp(TimestampWriter& writer, double seconds)
{
    std::array<char, TimestampWriter::size> room{};
    char* end = writer.write(room.data(), Date{seconds});
    return {room.data(), end};
}

std::string timestamp(double seconds)
{
    TimestampWriter writer;
    return timestamp(writer, seconds);
}

TEST(Timestamp, RoundsToTheNearestMillisecond)
{
    EXPECT_EQ(timestamp(795'173'213.589), "2026-03-14T09:26:53.589Z");
    EXPECT_EQ(timestamp(0.0625), "2001-01-01T00:00:00.063Z");
    EXPECT_EQ(timestamp(0.0004), "2001-01-01T00:00:00.000Z");
}

TEST(Timestamp, CarriesARoundedUpMillisecondIntoTheNextYear)
{
    EXPECT_EQ(timestamp(31'535'999.9996), "2002-01-01T00:00:00.000Z");
    EXPECT_EQ(timestamp(31'535'999.9994), "2001-12-31T23:59:59.999Z");
}

TEST(Timestamp, ReachesBackBefore2001And1970)
{
    EXPECT_EQ(timestamp(-0.25), "2000-12-31T23:59:59.750Z");
    EXPECT_EQ(timestamp(-0.0004), "2001-01-01T00:00:00.000Z");
    EXPECT_EQ(timestamp(-978'307'200.0), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(timestamp(-978'307'200.75), "1969-12-31T23:59:59.250Z");
}

TEST(Timestamp, ReachesTheLastDateOfALedger)
{
    EXPECT_EQ(timestamp(6'279'811'200.0), "2200-01-01T00:00:00.000Z");
    EXPECT_EQ(timestamp(6'279'811'199.999), "2199-12-31T23:59:59.999Z");
}

TEST(Timestamp, HasYearOneForTheDistantPast)
{
    EXPECT_EQ(timestamp(distantPast.seconds), "0001-01-01T00:00:00.000Z");
}

TEST(Timestamp, HasTheDayOfTheCalendarAllTheWay)
{
    CalendarDay day{1970, 1, 1};
    for (; day.year < 2201; day = daysAfter(day, 1)) {
        const Date noon = dateInUtc({day, 12, 34, 56.789});
        std::array<char, 32> expected{};
        std::snprintf(
            expected.data(), expected.size(), "%04d-%02d-%02d", day.year, day.month, day.day);
        ASSERT_EQ(timestamp(noon.seconds), std::string(expected.data()) + "T12:34:56.789Z");
        ASSERT_EQ(utcDayText(noon), expected.data());
    }
}

TEST(Timestamp, DoesNotDependOnTheOneBefore)
{
    TimestampWriter writer;
    for (const double seconds :
        {0.0, 86'399.9996, 86'400.0, -0.5, 0.5, 0.25, distantPast.seconds, 1.0}) {
        EXPECT_EQ(timestamp(writer, seconds), timestamp(seconds));
    }
}

TEST(UtcDayText, IsRoundedDown)
{
    EXPECT_EQ(utcDayText(Date{795'139'199.9999}), "2026-03-13");
    EXPECT_EQ(utcDayText(Date{-0.0001}), "2000-12-31");
}

} // namespace
} // namespace KestryCore
