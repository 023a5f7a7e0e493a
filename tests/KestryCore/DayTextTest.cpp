#include "DayText.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace KestryCore
