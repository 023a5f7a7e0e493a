#include "ZoneTransitions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <vector>

#include "ZoneCalendar.h"

namespace KestryCore {
namespace {

constexpr double minute = 60.0;
constexpr double quarter = 15 * minute;
constexpr double hour = 3600.0;
constexpr double day = 24 * hour;

Date startOfYear(int year)
{
    return dateInUtc({{year, 1, 1}, 0, 0, 0.0});
}

/// Dates around a change of the clocks in their order: every quarter of an hour, at which days
/// begin, and every minute near a change between quarters.
std::vector<Date> datesAround(Date change)
{
    std::vector<Date> dates;
    const double first = std::floor((change.seconds - 2 * day) / quarter) * quarter;
    for (double date = first; date < change.seconds + 1.5 * day; date += quarter) {
        dates.push_back(Date{date});
    }
    if (std::fmod(change.seconds, quarter) != 0.0) {
        for (double later = -3 * hour; later <= 3 * hour; later += minute) {
            dates.push_back(change + later);
        }
    }
    std::ranges::sort(dates);
    return dates;
}

/// Follows a clock through a change: a day begins when its date is shown first, and lasts until a
/// later one is shown.
void followTheClock(const ZoneCalendar& calendar, Date change)
{
    CalendarDay latest;
    Date start;
    int begun = 0;
    for (const Date date : datesAround(change)) {
        if (const CalendarDay shown = calendar.day(date); begun == 0 || shown > latest) {
            latest = shown;
            start = date;
            ++begun;
        }
        // The day that the walk began in had begun before.
        if (begun > 1) {
            ASSERT_EQ(calendar.startOfDay(date), start) << date.seconds;
            ASSERT_EQ(calendar.dayOfMonth(date), latest.day) << date.seconds;
            ASSERT_GT(*calendar.startOfNextDay(date), date) << date.seconds;
        }
    }
    ASSERT_GT(begun, 2);
}

TEST(ZoneTransitions, NeverBreakTheSequenceOfDays)
{
    std::size_t count = 0;
    for (const ZoneTransitions& zone : allZoneTransitions(startOfYear(2000), startOfYear(2041))) {
        const ZoneCalendar calendar(zone.zone, "en_US");
        for (const auto& transition : zone.transitions) {
            SCOPED_TRACE(zone.zone + " " + std::to_string(transition.date.seconds));
            ASSERT_NO_FATAL_FAILURE(followTheClock(calendar, transition.date));
            ++count;
        }
    }
    std::cout << "Covered " << count << " transitions.\n";
    EXPECT_GT(count, 5'000U);
}

} // namespace
} // namespace KestryCore
