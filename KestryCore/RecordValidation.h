#pragma once

#include <vector>

#include "Ledger.h"

namespace KestryCore {

/// Seconds from 2001-01-01 to 1970-01-01T00:00:00Z, the earliest valid date.
inline constexpr Date earliestDate{-978307200.0};
/// 2200-01-01T00:00:00Z, the latest valid date.
inline constexpr Date latestDate{6279811200.0};
/// Seconds in the longest session: 744 hours, 31 days.
inline constexpr double maximumSessionDuration = 2'678'400.0;
/// Seconds by which a recorded length may exceed its intervals.
inline constexpr double recordedDurationTolerance = 0.000001;

/// Whether a date is finite and from `earliestDate` to `latestDate`, both included.
[[nodiscard]] bool isValidDate(Date date);

/// Whether a length in seconds is finite, not negative and at most `maximumSessionDuration`.
[[nodiscard]] bool isAcceptableDuration(double seconds);

/// Checks that intervals are valid, ordered and do not overlap; touching and empty ones pass.
void validateIntervals(const std::vector<TimeSpan>& spans);

/// Checks clients, projects, sessions and the session in progress against every rule of a sound
/// ledger, in the order of `validate`. Ignores the replication state.
void validateRecords(const LedgerData& ledger);

/// The same check, with the same result, of a ledger that was made by changing a sound one. Skips
/// what both share.
void validateChangedRecords(const LedgerData& sound, const LedgerData& changed);

} // namespace KestryCore
