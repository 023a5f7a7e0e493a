#pragma once

#include <optional>

#include "Metrics.h"
#include "TimeStore.h"

namespace Kestry {

/// The totals of a month of all clients, with the session in progress. Those of the saved sessions
/// are kept until the sessions, the day or the calendar change, so that asking every second does
/// not walk through all that was ever saved.
class MonthTotals {
public:
    /// The store must outlive this.
    explicit MonthTotals(const KestryCore::TimeStore& store) : store_(store) { }

    /// Of the month of `anchor`, as `metrics` has them. A running session counts up to `now`.
    [[nodiscard]] KestryCore::MonthMetrics of(
        KestryCore::Date anchor, KestryCore::Date now, const KestryCore::Calendar& calendar);
    /// Drops what is kept; call it when the calendar changes.
    void forget() { saved_.reset(); }

private:
    struct Saved {
        KestryCore::RecordList<KestryCore::TimeEntry> entries;
        KestryCore::Date dayStart; ///< Of the anchor: another day is carried forward differently.
        KestryCore::Date dayEnd;
        KestryCore::MonthMetrics metrics;
    };

    [[nodiscard]] const KestryCore::MonthMetrics& savedMetrics(
        KestryCore::Date anchor, const KestryCore::Calendar& calendar);
    [[nodiscard]] bool isStillTrue(const Saved& saved, KestryCore::Date anchor) const;

    const KestryCore::TimeStore& store_;
    std::optional<Saved> saved_;
};

} // namespace Kestry
