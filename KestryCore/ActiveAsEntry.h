#pragma once

#include "Ledger.h"

namespace KestryCore {

// The session in progress as a `TimeEntry`: the same identifier, project, title, rate, flags and
// source, and no `recordedDuration`. The three differ in what becomes of the open interval.

/// With the closed intervals alone, as the session would be saved once it is paused.
[[nodiscard]] TimeEntry closedEntry(const ActiveSession& session);

/// For sums. The open interval is the last span, up to `now`. It is left out unless `now` is later
/// than its start, so that no sum contains a negative length.
[[nodiscard]] TimeEntry countedEntry(const ActiveSession& session, Date now);

/// For lists. The open interval is always the last span, up to the later of its start and `now`,
/// so that a session that has only just begun, or a clock set back, still has a start to show.
[[nodiscard]] TimeEntry listedEntry(const ActiveSession& session, Date now);

} // namespace KestryCore
