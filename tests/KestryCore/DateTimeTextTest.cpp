#include "DateTimeText.h"

#include <gtest/gtest.h>

#include "Calendar.h"

namespace KestryCore {
namespace {

/// With plain blanks for the narrow ones that newer data has before AM and PM.
std::string plain(std::string text)
{
    const std::string narrow = "\u202F";
    for (std::size_t at = text.find(narrow); at != std::string::npos; at = text.find(narrow)) {
        text.replace(at, narrow.size(), " ");
    }
    return text;
}

std::string shown(const char* locale, const char* timeZone, const WallTime& utc)
{
    return plain(DateTimeText(ZoneCalendar(timeZone, locale)).dateAndTime(dateInUtc(utc)));
}

const WallTime morning{CalendarDay{2026, 3, 14}, 9, 26, 53.0};

TEST(DateTimeText, HasAnAbbreviatedDateAndATimeWithoutSeconds)
{
    EXPECT_EQ(shown("en_US", "UTC", morning), "Mar 14, 2026, 9:26 AM");
}

TEST(DateTimeText, FollowsTheLocale)
{
    EXPECT_EQ(shown("de_DE", "UTC", morning), "14.03.2026, 09:26");
}

TEST(DateTimeText, FollowsTheTimeZone)
{
    EXPECT_EQ(shown("en_US", "Asia/Tokyo", morning), "Mar 14, 2026, 6:26 PM");
    EXPECT_EQ(shown("en_US", "America/Los_Angeles", WallTime{CalendarDay{2026, 1, 1}, 0, 0, 0.0}),
        "Dec 31, 2025, 4:00 PM");
}

TEST(DateTimeText, TellsTheTimeOfDayAlone)
{
    const auto time = [](const char* locale) {
        return plain(
            DateTimeText(ZoneCalendar("Asia/Tokyo", locale)).timeOfDay(dateInUtc(morning)));
    };
    EXPECT_EQ(time("en_US"), "6:26 PM");
    EXPECT_EQ(time("de_DE"), "18:26");
}

TEST(DateTimeText, DaysOfTheFarPastHaveTheNamesByWhichTheyAreCounted)
{
    const WallTime first{CalendarDay{1500, 3, 1}, 9, 26, 53.0};
    EXPECT_EQ(shown("en_US", "UTC", first), "Mar 1, 1500, 9:26 AM");
}

} // namespace
} // namespace KestryCore
