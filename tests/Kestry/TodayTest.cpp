#include "Today.h"

#include <gtest/gtest.h>

#include "VirtualScheduler.h"

namespace Kestry {
namespace {

using KestryCore::CalendarDay;
using KestryCore::Date;
using KestryCore::ZoneCalendar;

constexpr double hour = 3600.0;

/// A clock that shows 22:00 on October 31, 2025 in Berlin, until it is set.
class TodayTest : public ::testing::Test {
protected:
    [[nodiscard]] Date now() const { return evening + scheduler.now() + ahead; }
    [[nodiscard]] CalendarDay day() const { return calendar->day(*today.start()); }

    KestryCore::VirtualScheduler scheduler;
    KestryCore::Observable<ZoneCalendar> calendar{ZoneCalendar("Europe/Berlin", "de_DE")};
    const Date evening = *calendar->date({CalendarDay{2025, 10, 31}, 22, 0, 0.0});
    double ahead = 0.0;
    Today today{scheduler, [this] { return now(); }, calendar};
    int days = 0;
    KestryCore::Subscription changes = today.start().observe([this](Date) { ++days; });
};

TEST_F(TodayTest, BeginsAtTheFirstMomentOfTheDay)
{
    EXPECT_EQ(*today.start(), evening + -22.0 * hour);
}

TEST_F(TodayTest, EndsAtMidnightAndWithItTheMonth)
{
    scheduler.advance(2.0 * hour - 1.0);
    EXPECT_EQ(day(), (CalendarDay{2025, 10, 31}));
    scheduler.advance(1.0);
    EXPECT_EQ(day(), (CalendarDay{2025, 11, 1}));
    EXPECT_EQ(days, 1);
}

TEST_F(TodayTest, FollowsEachMidnightAlsoOfADayThatIsLonger)
{
    calendar.assign(ZoneCalendar("America/New_York", "en_US")); // 25 hours on November 2
    days = 0;
    scheduler.advance(3.0 * 24.0 * hour);
    EXPECT_EQ(days, 3);
    EXPECT_EQ(day(), (CalendarDay{2025, 11, 3}));
}

TEST_F(TodayTest, FollowsTheTimeZone)
{
    calendar.assign(ZoneCalendar("Asia/Tokyo", "ja_JP"));
    EXPECT_EQ(day(), (CalendarDay{2025, 11, 1}));
    EXPECT_EQ(days, 1);
    scheduler.advance(18.0 * hour);
    EXPECT_EQ(day(), (CalendarDay{2025, 11, 2}));
}

TEST_F(TodayTest, FollowsAClockThatWasSetOnceItLooks)
{
    ahead = 72.0 * hour;
    today.look();
    EXPECT_EQ(day(), (CalendarDay{2025, 11, 3}));
    ahead = -24.0 * hour;
    today.look();
    EXPECT_EQ(day(), (CalendarDay{2025, 10, 30}));
    scheduler.advance(2.0 * hour);
    EXPECT_EQ(day(), (CalendarDay{2025, 10, 31}));
}

TEST_F(TodayTest, WaitsForMidnightOnAClockThatIsLate)
{
    ahead = -60.0;
    scheduler.advance(2.0 * hour);
    EXPECT_EQ(days, 0);
    scheduler.advance(60.0);
    EXPECT_EQ(days, 1);
}

TEST_F(TodayTest, LookingTwiceOnOneDayTellsNothing)
{
    scheduler.advance(1.0 * hour);
    today.look();
    EXPECT_EQ(days, 0);
}

} // namespace
} // namespace Kestry
