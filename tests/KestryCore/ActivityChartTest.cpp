#include "ActivityChart.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

const Date march = dateInUtc(WallTime{CalendarDay{2026, 3, 1}});

/// Days of March 2026 with so many hours.
std::vector<DailyTotal> days(const std::vector<double>& hours)
{
    std::vector<DailyTotal> daily;
    for (const double each : hours) {
        const double day = 86400.0 * static_cast<double>(daily.size());
        daily.push_back({march + day, 3600.0 * each, 0.0});
    }
    return daily;
}

double scaleOf(double hours)
{
    return ActivityScale(days({1.0, hours, 0.0})).maximumHours;
}

ActivityBar bar(double hours, double maximumHours = 4.0)
{
    return {{march, 3600.0 * hours, 0.0}, maximumHours, 0};
}

TEST(ActivityScale, IsFourForAQuietMonth)
{
    EXPECT_EQ(ActivityScale({}).maximumHours, 4.0);
    EXPECT_EQ(scaleOf(0.0), 4.0);
    EXPECT_EQ(scaleOf(2.5), 4.0);
}

TEST(ActivityScale, IsTheNextEvenNumberOfHours)
{
    EXPECT_EQ(scaleOf(4.0), 4.0);
    EXPECT_EQ(scaleOf(4.1), 6.0);
    EXPECT_EQ(scaleOf(9.2), 10.0);
    EXPECT_EQ(scaleOf(24.0), 24.0);
    EXPECT_EQ(scaleOf(25.0), 26.0); // a day on which the clocks go back
}

TEST(ActivityScale, HasThreeLabelsFromTheTop)
{
    const std::array<std::string, 3> ten{"10h", "5h", "0h"};
    EXPECT_EQ(ActivityScale(days({9.2})).labels(), ten);
    const std::array<std::string, 3> four{"4h", "2h", "0h"};
    EXPECT_EQ(ActivityScale({}).labels(), four);
}

TEST(ActivityBar, IsAsHighAsItsPartOfTheScale)
{
    EXPECT_EQ(bar(4.0).height(), 138.0);
    EXPECT_EQ(bar(2.0).height(), 69.0);
    EXPECT_EQ(bar(2.0, 8.0).height(), 34.5);
}

TEST(ActivityBar, IsNeverTooLowToBeSeen)
{
    EXPECT_EQ(bar(0.0).height(), 3.0);
    EXPECT_EQ(bar(0.001).height(), 5.0);
}

TEST(ActivityBar, LooksLikeItsDay)
{
    const Date today = march + 86400.0;
    ActivityBar day = bar(1.0);
    EXPECT_EQ(day.look(today), ActivityLook::busy);
    day.day.date = today;
    EXPECT_EQ(day.look(today), ActivityLook::today);
    day.day.date = today + 86400.0;
    EXPECT_EQ(day.look(today), ActivityLook::later);
    EXPECT_EQ(bar(0.0).look(today), ActivityLook::idle);
}

TEST(ActivityBar, SaysItsDayAndItsTime)
{
    ActivityBar day = bar(2.5);
    day.day.date = march + 13 * 86400.0;
    EXPECT_EQ(day.text(DayText(ZoneCalendar("UTC", "en_US"))), "Mar 14: 2h 30m");
}

TEST(ActivityBars, AreOneForEachDayOnOneScale)
{
    const auto bars = activityBars(days({0.0, 5.0, 1.0}));
    ASSERT_EQ(bars.size(), 3U);
    EXPECT_EQ(bars[1].index, 1);
    EXPECT_EQ(bars[2].maximumHours, 6.0);
    EXPECT_EQ(bars[2].day.seconds, 3600.0);
    EXPECT_TRUE(activityBars({}).empty());
}

} // namespace
} // namespace KestryCore
