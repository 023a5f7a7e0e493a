#pragma once

#include <gtest/gtest.h>

#include "Metrics.h"
#include "SampleLedger.h"
#include "ZoneCalendar.h"

namespace KestryCore {

/// A ledger to fill with sessions of one client and project, on the clocks of Berlin in 2026.
class MetricsFixture : public testing::Test {
protected:
    MetricsFixture() { ledger.entries = {}; }

    [[nodiscard]] static Date local(int month, int day, int hour = 0, int minute = 0)
    {
        return berlin().date({{2026, month, day}, hour, minute, 0.0}).value();
    }

    [[nodiscard]] static const ZoneCalendar& berlin()
    {
        static const ZoneCalendar calendar("Europe/Berlin", "de_DE");
        return calendar;
    }

    /// A session of its own number at 150 USD an hour.
    [[nodiscard]] TimeEntry session(Date start, Date end) const
    {
        TimeEntry entry = Sample::entry(static_cast<unsigned>(ledger.entries.size()) + 1);
        entry.spans = {{start, end}};
        return entry;
    }

    void work(Date start, Date end) { ledger.entries.append(session(start, end)); }

    /// Makes the session in progress run since a date, with no time before.
    void runSince(Date start)
    {
        ledger.active = Sample::runningSession();
        ledger.active->spans.clear();
        ledger.active->runningSince = start;
        ledger.active->checkpointAt = start;
    }

    [[nodiscard]] MonthMetrics month(Date date, std::optional<Date> asOf = {}) const
    {
        return metrics(ledger, date, berlin(), std::nullopt, asOf);
    }

    [[nodiscard]] ClientMetrics client(Date now) const
    {
        return clientMetrics(ledger, Sample::clientID(), now, berlin());
    }

    LedgerData ledger = Sample::ledger();
};

} // namespace KestryCore
