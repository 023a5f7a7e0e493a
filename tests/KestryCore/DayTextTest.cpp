#include "DayText.h"

#include <gtest/gtest.h>

#include <string>

#include "Calendar.h"

namespace KestryCore {
namespace {

DayText words(const char* locale, const char* timeZone = "UTC")
{
    return DayText(ZoneCalendar(timeZone, locale));
}

const Date morning = dateInUtc(WallTime{CalendarDay{2026, 3, 14}, 9, 26, 53.0});
const Date newYear = dateInUtc(WallTime{CalendarDay{2026, 1, 1}, 0, 0, 0.0});

TEST(DayText, AShortDayIsTheAbbreviatedMonthAndTheDay)
{
    EXPECT_EQ(words("en_US").shortDay(morning), "Mar 14");
    EXPECT_EQ(words("de_DE").shortDay(morning), "14. März");
}

TEST(DayText, ALongDayHasTheFullMonth)
{
    EXPECT_EQ(words("en_US").longDay(morning), "March 14");
}

TEST(DayText, AMonthHasItsFullNameAndTheYear)
{
    EXPECT_EQ(words("en_US").month(morning), "March 2026");
    EXPECT_EQ(words("de_DE").month(morning), "März 2026");
}

TEST(DayText, AShortMonthStandsAlone)
{
    EXPECT_EQ(words("en_US").shortMonth(morning), "Mar");
    EXPECT_EQ(words("de_DE").shortMonth(morning), "Mär");
}

TEST(DayText, FollowsTheTimeZone)
{
    EXPECT_EQ(words("en_US", "America/Los_Angeles").shortDay(newYear), "Dec 31");
    EXPECT_EQ(words("en_US", "America/Los_Angeles").month(newYear), "December 2025");
}

TEST(DayText, DaysOfTheFarPastHaveTheNamesByWhichTheyAreCounted)
{
    for (const int year : {1582, 1500, 1000, 3}) {
        const Date first = dateInUtc(WallTime{CalendarDay{year, 3, 1}, 12, 0, 0.0});
        EXPECT_EQ(words("en_US").shortDay(first), "Mar 1") << year;
        EXPECT_EQ(words("en_US").month(first), "March " + std::to_string(year));
    }
}

} // namespace
} // namespace KestryCore
