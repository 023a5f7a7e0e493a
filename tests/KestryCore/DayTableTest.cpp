#include "DayTable.h"

#include "MetricsFixture.h"
#include "StandInCalendar.h"

namespace KestryCore {
namespace {

using Sample::hour;

/// Sessions of an hour each at noon of the 9th to the 12th of March, and a calendar to break.
class BrokenCalendar : public MetricsFixture {
protected:
    BrokenCalendar()
    {
        for (const int day : {9, 10, 11, 12}) {
            work(local(3, day, 12), local(3, day, 13));
        }
    }

    /// Whatever day holds the date has none after it that the calendar knows.
    void forgetDayAfter(Date date, std::optional<Date> answer)
    {
        calendar.startOfNextDayAnswer = [=](Date asked) {
            return berlin().startOfDay(asked) == date ? answer : berlin().startOfNextDay(asked);
        };
    }

    [[nodiscard]] MonthMetrics march() const { return metrics(ledger, local(3, 31), calendar); }
    [[nodiscard]] ClientMetrics totals(Date now) const
    {
        return clientMetrics(ledger, Sample::clientID(), now, calendar);
    }

    StandInCalendar calendar{berlin()};
};

TEST_F(BrokenCalendar, WithoutTheMonthYieldsNoFiguresAndNoDays)
{
    calendar.monthAnswer = [](Date) { return std::nullopt; };
    EXPECT_EQ(march(), MonthMetrics{});
    EXPECT_EQ(monthAnchor(local(3, 31), local(3, 1), calendar), std::nullopt);
}

TEST_F(BrokenCalendar, WithoutTheNumberOfDaysYieldsNoFiguresAndNoDays)
{
    calendar.daysInMonthAnswer = [](Date) { return std::nullopt; };
    EXPECT_EQ(march(), MonthMetrics{});
}

TEST_F(BrokenCalendar, WithoutTheMonthOfNowCountsNoMonthsOfAClient)
{
    const Date now = local(5, 1);
    calendar.monthAnswer = [=](Date date) {
        return date == now ? std::nullopt : berlin().month(date);
    };
    EXPECT_EQ(totals(now).seconds, 4 * hour);
    EXPECT_EQ(totals(now).firstSessionDate, local(3, 9, 12));
    EXPECT_EQ(totals(now).monthCount, 0);
    EXPECT_EQ(totals(now).averageMonthlySeconds, 0.0);
    EXPECT_EQ(totals(now).monthSeconds, 0.0);
}

TEST_F(BrokenCalendar, WithoutTheMonthOfTheFirstSessionCountsNoMonthsOfAClient)
{
    calendar.monthAnswer = [](Date date) {
        return date == local(3, 9, 12) ? std::nullopt : berlin().month(date);
    };
    EXPECT_EQ(totals(local(3, 31)).monthCount, 0);
    EXPECT_EQ(totals(local(3, 31)).monthSeconds, 4 * hour);
}

TEST_F(BrokenCalendar, WithoutANextDayFillsInNoMoreDaysButFindsLaterOnes)
{
    forgetDayAfter(local(3, 10), std::nullopt);
    const MonthMetrics figures = march();
    EXPECT_EQ(figures.seconds, 3 * hour);
    EXPECT_EQ(figures.sessionCount, 3);
    ASSERT_EQ(figures.daily.size(), 12U);
    EXPECT_EQ(figures.daily[9], DailyTotal{local(3, 10)});
    EXPECT_EQ(figures.daily[10].date, local(3, 11));
    EXPECT_EQ(figures.daily[11].seconds, hour);
}

TEST_F(BrokenCalendar, WithANextDayThatIsNotLaterEndsAllTheSame)
{
    for (const Date answer : {local(3, 10), local(3, 2)}) {
        forgetDayAfter(local(3, 10), answer);
        EXPECT_EQ(march().seconds, 3 * hour);
        EXPECT_EQ(march().daily.size(), 12U);
        EXPECT_EQ(march().daily[9].seconds, 0.0);
    }
}

TEST_F(BrokenCalendar, LeavesTheRestOfASpanButNotTheNextOne)
{
    TimeEntry entry = session(local(3, 9, 22), local(3, 11, 12));
    entry.spans.push_back({local(3, 11, 14), local(3, 11, 15)});
    ledger.entries = {entry};
    forgetDayAfter(local(3, 10), std::nullopt);
    const MonthMetrics figures = march();
    EXPECT_EQ(figures.daily[8].seconds, 2 * hour);
    EXPECT_EQ(figures.daily[9].seconds, 0.0);
    EXPECT_EQ(figures.daily[10].seconds, hour);
    EXPECT_EQ(figures.sessionCount, 1);
}

TEST_F(BrokenCalendar, AddsUpLaterDaysInTheOrderOfTheirDates)
{
    calendar.startOfNextDayAnswer = [](Date date) {
        return date < local(3, 2) ? std::nullopt : berlin().startOfNextDay(date);
    };
    work(local(3, 5, 12), local(3, 5, 13));
    const MonthMetrics figures = march();
    std::vector<Date> dates;
    for (const DailyTotal& day : figures.daily) {
        dates.push_back(day.date);
    }
    EXPECT_EQ(dates,
        (std::vector{
            local(3, 1), local(3, 5), local(3, 9), local(3, 10), local(3, 11), local(3, 12)}));
    EXPECT_EQ(figures.seconds, 5 * hour);
}

TEST_F(BrokenCalendar, WhoseMonthBeginsWithinADayTellsTheTimeToThatDay)
{
    calendar.monthAnswer = [](Date) { return MonthInterval{local(3, 9, 12), local(3, 11)}; };
    ledger.entries = {session(local(3, 9, 6), local(3, 9, 18))};
    const MonthMetrics figures = march();
    ASSERT_EQ(figures.daily.size(), 3U);
    EXPECT_EQ(figures.daily[0], (DailyTotal{local(3, 9), 6 * hour, 90'000.0}));
    EXPECT_EQ(figures.daily[1], DailyTotal{local(3, 9, 12)});
    EXPECT_EQ(figures.daily[2], DailyTotal{local(3, 10)});
}

TEST_F(BrokenCalendar, ThatCountsDaysFromZeroStillHasOneDayElapsed)
{
    calendar.dayOfMonthAnswer = [](Date) { return 0; };
    EXPECT_EQ(march().projectedSeconds, 31 * 4 * hour);
}

TEST_F(BrokenCalendar, IsAskedForNoDayThatTheTableHolds)
{
    int questions = 0;
    calendar.startOfNextDayAnswer = [&](Date date) {
        ++questions;
        return berlin().startOfNextDay(date);
    };
    DayTable table(berlin().month(local(3, 1)).value(), calendar);
    EXPECT_EQ(questions, 31);
    for (Date date = local(3, 1); date < local(4, 1); date = date + hour) {
        ASSERT_EQ(table.dayOf(date)->total.date, berlin().startOfDay(date));
    }
    EXPECT_EQ(questions, 31);
}

} // namespace
} // namespace KestryCore
