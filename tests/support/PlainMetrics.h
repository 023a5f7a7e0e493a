#pragma once

#include <optional>

#include "Metrics.h"

namespace KestryCore {

// The figures once more, as plainly as the rules put them and without a thought for speed: every
// session is copied into one list, and the calendar is asked about every slice of every span. They
// share no code with what they are compared with, and take their sums in the same order, so that
// both must agree to the last bit.

[[nodiscard]] MonthMetrics plainMetrics(const LedgerData& ledger, Date month,
    const Calendar& calendar, const std::optional<Uuid>& clientID, std::optional<Date> asOf);

[[nodiscard]] ClientMetrics plainClientMetrics(
    const LedgerData& ledger, const Uuid& clientID, Date now, const Calendar& calendar);

/// The sessions that both take their figures from: of one client's projects, or all.
[[nodiscard]] std::vector<TimeEntry> plainSessions(
    const LedgerData& ledger, Date now, const std::optional<Uuid>& clientID);

/// Seconds of the session for each second of its spans.
[[nodiscard]] double plainScale(const TimeEntry& entry);

} // namespace KestryCore
