#include "MonthCards.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

class MonthCardsTest : public testing::Test {
protected:
    MonthCardsTest()
    {
        metrics.sessionCount = 2;
        metrics.earnedCents = 123450.0;
        metrics.seconds = 45000.0;
        metrics.projectedCents = 246850.0;
        metrics.projectedSeconds = 90000.0;
    }
    [[nodiscard]] MonthCards current() const
    {
        return monthCards(metrics, ShownMonth::current, words);
    }
    [[nodiscard]] MonthCards other() const { return monthCards(metrics, ShownMonth::other, words); }

    MonthMetrics metrics;
    const MoneyText words{"en_US"};
};

TEST_F(MonthCardsTest, AnEmptyMonthHasZeros)
{
    metrics = {};
    const MonthCards cards = current();
    EXPECT_EQ(cards.billableEarnings, (MonthCard{"$0.00", "Recorded billable value"}));
    EXPECT_EQ(cards.trackedTime, (MonthCard{"0h 0m", "Across 0 sessions"}));
    EXPECT_EQ(cards.projectedEarnings, (MonthCard{"$0", "At your daily pace"}));
    EXPECT_EQ(cards.projectedTime, (MonthCard{"0h 0m", "At your daily pace"}));
}

TEST_F(MonthCardsTest, TheCurrentMonthIsCarriedForwardInWholeDollars)
{
    const MonthCards cards = current();
    EXPECT_EQ(cards.billableEarnings.value, "$1,234.50");
    EXPECT_EQ(cards.trackedTime.value, "12h 30m");
    EXPECT_EQ(cards.projectedEarnings, (MonthCard{"$2,469", "At your daily pace"}));
    EXPECT_EQ(cards.projectedTime, (MonthCard{"25h 0m", "At your daily pace"}));
}

TEST_F(MonthCardsTest, AnotherMonthEndsWithWhatWasRecorded)
{
    const MonthCards cards = other();
    EXPECT_EQ(cards.projectedEarnings, (MonthCard{"$1,234.50", "Final billable value"}));
    EXPECT_EQ(cards.projectedTime, (MonthCard{"12h 30m", "Final tracked time"}));
    EXPECT_EQ(cards.projectedEarnings.value, cards.billableEarnings.value);
    EXPECT_EQ(cards.projectedTime.value, cards.trackedTime.value);
}

TEST_F(MonthCardsTest, OneSessionIsInTheSingular)
{
    metrics.sessionCount = 1;
    EXPECT_EQ(current().trackedTime.line, "Across 1 session");
    metrics.sessionCount = 2;
    EXPECT_EQ(current().trackedTime.line, "Across 2 sessions");
}

TEST_F(MonthCardsTest, UnpricedTimeAloneHasNoRateInBothCards)
{
    metrics.earnedCents = 0.0;
    metrics.projectedCents = 0.0;
    metrics.unpricedSeconds = 5400.0;
    const MonthCards cards = current();
    EXPECT_EQ(cards.billableEarnings.value, "Rate not set");
    EXPECT_EQ(cards.billableEarnings.line, "1h 30m still unpriced");
    EXPECT_EQ(cards.projectedEarnings.value, "Rate not set");
    EXPECT_EQ(cards.projectedEarnings.line, "Rate needed to estimate");
}

TEST_F(MonthCardsTest, AnyUnpricedTimeStopsTheEstimateOfMoneyAlone)
{
    metrics.unpricedSeconds = 60.0;
    for (const MonthCards& cards : {current(), other()}) {
        EXPECT_EQ(cards.billableEarnings.value, "$1,234.50");
        EXPECT_EQ(cards.billableEarnings.line, "0h 1m still unpriced");
        EXPECT_EQ(cards.projectedEarnings.value, "Rate not set");
        EXPECT_EQ(cards.projectedEarnings.line, "Rate needed to estimate");
    }
    EXPECT_EQ(current().projectedTime.value, "25h 0m");
    EXPECT_EQ(other().projectedTime.value, "12h 30m");
}

} // namespace
} // namespace KestryCore
