#include "DashboardFigures.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

using KestryCore::ClientMetrics;

class DashboardFiguresTest : public ::testing::Test {
protected:
    [[nodiscard]] DashboardFigures figures() const
    {
        return dashboardFigures(metrics, "March 2026", KestryCore::MoneyText("en_US"));
    }

    ClientMetrics metrics;
};

TEST_F(DashboardFiguresTest, ANewClientHasNoTrackedTimeYetAndZeros)
{
    EXPECT_EQ(figures().earnings.value, "$0.00");
    EXPECT_EQ(figures().hours.value, "0h 0m");
    EXPECT_EQ(figures().monthHours.value, "0h 0m");
    EXPECT_EQ(figures().average.value, "0h 0m");
    EXPECT_EQ(figures().average.line, "No tracked time yet");
    EXPECT_EQ(figures().unpriced, "");
}

TEST_F(DashboardFiguresTest, EachCardHasItsTitleAndItsLine)
{
    metrics.monthCount = 2;
    EXPECT_EQ(figures().earnings.title, "Total earnings");
    EXPECT_EQ(figures().earnings.line, "All-time billable value");
    EXPECT_EQ(figures().hours.title, "Total hours");
    EXPECT_EQ(figures().hours.line, "All time");
    EXPECT_EQ(figures().monthHours.title, "Hours this month");
    EXPECT_EQ(figures().monthHours.line, "March 2026");
    EXPECT_EQ(figures().average.title, "Avg. hours / month");
    EXPECT_EQ(figures().average.line, "Across 2 calendar months");
}

TEST_F(DashboardFiguresTest, AmountsAndLengthsHaveTheirForms)
{
    metrics.earnedCents = 123456.0;
    metrics.seconds = 45300.0;
    metrics.monthSeconds = 3599.0;
    metrics.averageMonthlySeconds = 22650.0;
    EXPECT_EQ(figures().earnings.value, "$1,234.56");
    EXPECT_EQ(figures().hours.value, "12h 35m");
    EXPECT_EQ(figures().monthHours.value, "0h 59m");
    EXPECT_EQ(figures().average.value, "6h 17m");
}

TEST_F(DashboardFiguresTest, OneMonthIsInTheSingular)
{
    metrics.monthCount = 1;
    EXPECT_EQ(figures().average.line, "Across 1 calendar month");
}

TEST_F(DashboardFiguresTest, OnlyUnpricedTimeHasNoRateInPlaceOfAnAmount)
{
    metrics.unpricedSeconds = 5400.0;
    EXPECT_EQ(figures().earnings.value, "Rate not set");
    EXPECT_EQ(
        figures().unpriced, "1h 30m of billable time has no rate and is excluded from earnings.");
}

TEST_F(DashboardFiguresTest, UnpricedTimeBesidesEarningsLeavesTheAmount)
{
    metrics.unpricedSeconds = 60.0;
    metrics.earnedCents = 0.25;
    EXPECT_EQ(figures().earnings.value, "$0.00");
    EXPECT_EQ(
        figures().unpriced, "0h 1m of billable time has no rate and is excluded from earnings.");
}

TEST_F(DashboardFiguresTest, AKnownRateOfZeroIsARate)
{
    metrics.seconds = 3600.0;
    EXPECT_EQ(figures().earnings.value, "$0.00");
}

TEST_F(DashboardFiguresTest, OnlyTheAverageHasAHelpText)
{
    EXPECT_EQ(figures().average.help,
        "Total hours divided by calendar months from the first session through this month, "
        "including months with no time and the current partial month.");
    EXPECT_EQ(figures().earnings.help + figures().hours.help + figures().monthHours.help, "");
}

TEST_F(DashboardFiguresTest, ACardSaysAllOfItInWords)
{
    metrics.seconds = 9000.0;
    metrics.earnedCents = 37500.0;
    EXPECT_EQ(figures().hours.spoken, "Total hours, 2 hours 30 minutes, All time");
    EXPECT_EQ(figures().earnings.spoken, "Total earnings, $375.00, All-time billable value");
}

} // namespace
} // namespace Kestry
