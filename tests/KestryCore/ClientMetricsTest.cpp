#include "MetricsFixture.h"

namespace KestryCore {
namespace {

using Sample::hour;

class ClientTotals : public MetricsFixture { };

TEST_F(ClientTotals, AreZerosForAnEmptyLedger)
{
    EXPECT_EQ(client(local(3, 10)), ClientMetrics{});
    EXPECT_EQ(clientMetrics({}, Sample::clientID(), local(3, 10), berlin()), ClientMetrics{});
}

TEST_F(ClientTotals, AddUpAllSessionsWholeAndThoseOfTheMonthApart)
{
    work(local(1, 31, 23), local(2, 1, 1));
    work(local(3, 10, 9), local(3, 10, 12));
    const ClientMetrics totals = client(local(3, 10, 18));
    EXPECT_EQ(totals.seconds, 5 * hour);
    EXPECT_EQ(totals.earnedCents, 75'000.0);
    EXPECT_EQ(totals.monthSeconds, 3 * hour);
    EXPECT_EQ(totals.monthCount, 3);
    EXPECT_EQ(totals.averageMonthlySeconds, 5 * hour / 3);
    EXPECT_EQ(totals.firstSessionDate, local(1, 31, 23));
}

TEST_F(ClientTotals, CountRecordedDurationsInPlaceOfSpans)
{
    TimeEntry entry = session(local(3, 10, 9), local(3, 10, 11));
    entry.recordedDuration = hour;
    ledger.entries.append(entry);
    EXPECT_EQ(client(local(3, 31)).seconds, hour);
    EXPECT_EQ(client(local(3, 31)).earnedCents, 15'000.0);
    EXPECT_EQ(client(local(3, 31)).monthSeconds, hour);
}

TEST_F(ClientTotals, HoldARecordedDurationThatHasNoSpans)
{
    TimeEntry entry = session(local(3, 10), local(3, 10));
    entry.spans.clear();
    entry.recordedDuration = hour;
    ledger.entries.append(entry);
    entry.rateIsKnown = false;
    ledger.entries.append(entry);
    const ClientMetrics totals = client(local(3, 31));
    EXPECT_EQ(totals.seconds, 2 * hour);
    EXPECT_EQ(totals.earnedCents, 15'000.0);
    EXPECT_EQ(totals.unpricedSeconds, hour);
    EXPECT_EQ(totals.monthSeconds, 0.0);
    EXPECT_EQ(totals.firstSessionDate, std::nullopt);
    EXPECT_EQ(totals.monthCount, 0);
    EXPECT_EQ(totals.averageMonthlySeconds, 0.0);
}

TEST_F(ClientTotals, CallOnlyBillableTimeUnpriced)
{
    for (const bool isBillable : {true, false}) {
        TimeEntry entry = session(local(3, 10, 9), local(3, 10, 10));
        entry.isBillable = isBillable;
        entry.rateIsKnown = false;
        ledger.entries.append(entry);
    }
    EXPECT_EQ(client(local(3, 31)).seconds, 2 * hour);
    EXPECT_EQ(client(local(3, 31)).unpricedSeconds, hour);
    EXPECT_EQ(client(local(3, 31)).earnedCents, 0.0);
}

TEST_F(ClientTotals, BeginWithTheEarliestSpanThatHasALength)
{
    TimeEntry entry = session(local(1, 5, 9), local(1, 5, 9));
    entry.spans.push_back({local(2, 5, 9), local(2, 5, 10)});
    work(local(3, 10, 9), local(3, 10, 10));
    ledger.entries.append(entry);
    const ClientMetrics totals = client(local(3, 31));
    EXPECT_EQ(totals.firstSessionDate, local(2, 5, 9));
    EXPECT_EQ(totals.monthCount, 2);
}

TEST_F(ClientTotals, CountMonthsInWhichNothingWasDone)
{
    work(local(1, 31, 23), local(1, 31, 23, 30));
    EXPECT_EQ(client(local(1, 31, 23, 59)).monthCount, 1);
    EXPECT_EQ(client(local(2, 1)).monthCount, 2);
    EXPECT_EQ(client(local(12, 1)).monthCount, 12);
    EXPECT_EQ(client(local(12, 1)).averageMonthlySeconds, hour / 2 / 12);
}

TEST_F(ClientTotals, CountAtLeastOneMonthWhenTheFirstSessionIsYetToCome)
{
    work(local(8, 10, 9), local(8, 10, 10));
    const ClientMetrics totals = client(local(3, 10));
    EXPECT_EQ(totals.monthCount, 1);
    EXPECT_EQ(totals.averageMonthlySeconds, hour);
    EXPECT_EQ(totals.monthSeconds, 0.0);
}

TEST_F(ClientTotals, BeginWithTheRunningSessionWhenThereIsNoOther)
{
    runSince(local(3, 10, 9));
    const ClientMetrics totals = client(local(3, 10, 10));
    EXPECT_EQ(totals.firstSessionDate, local(3, 10, 9));
    EXPECT_EQ(totals.monthCount, 1);
    EXPECT_EQ(totals.monthSeconds, hour);
}

} // namespace
} // namespace KestryCore
