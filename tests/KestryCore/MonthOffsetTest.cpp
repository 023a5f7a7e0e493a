#include "MonthOffset.h"

#include <gtest/gtest.h>

#include <limits>

namespace KestryCore {
namespace {

class MonthOffset : public testing::Test {
protected:
    [[nodiscard]] Date at(
        int year, int month, int day, int hour = 0, int minute = 0, double second = 0.0) const
    {
        return *calendar.date({CalendarDay{year, month, day}, hour, minute, second});
    }
    [[nodiscard]] WallTime anchor(int offset, Date now) const
    {
        return calendar.wallTime(monthAnchor(offset, now, calendar));
    }

    const ZoneCalendar calendar{"Europe/Berlin", "de_DE"};
};

TEST_F(MonthOffset, ThePresentMonthIsAskedForNow)
{
    const Date now = at(2026, 3, 14, 9);
    EXPECT_EQ(monthAnchor(0, now, calendar), now);
}

TEST_F(MonthOffset, AnotherMonthIsAskedForItsLastSecond)
{
    const WallTime lastOfFebruary{CalendarDay{2026, 2, 28}, 23, 59, 59.0};
    EXPECT_EQ(anchor(-1, at(2026, 3, 14, 9)), lastOfFebruary);
    EXPECT_EQ(anchor(-1, at(2026, 3, 31, 23, 59, 59.0)), lastOfFebruary);
    EXPECT_EQ(anchor(-25, at(2026, 3, 14)), (WallTime{CalendarDay{2024, 2, 29}, 23, 59, 59.0}));
    EXPECT_EQ(anchor(-3, at(2026, 3, 14)), (WallTime{CalendarDay{2025, 12, 31}, 23, 59, 59.0}));
}

TEST_F(MonthOffset, EachMonthFollowsTheOneBefore)
{
    const Date now = at(2026, 3, 14, 9);
    for (int offset = -1; offset > -400; --offset) {
        const Date earlier = monthAnchor(offset - 1, now, calendar);
        EXPECT_EQ(calendar.month(earlier)->end,
            calendar.month(monthAnchor(offset, now, calendar))->start);
    }
}

TEST_F(MonthOffset, BeyondTheCalendarItIsThePresentMonth)
{
    const Date now = at(2026, 3, 14);
    EXPECT_EQ(monthAnchor(-2'000'000, now, calendar), now);
    EXPECT_EQ(monthAnchor(std::numeric_limits<int>::min(), now, calendar), now);
}

} // namespace
} // namespace KestryCore
