#pragma once

#include <cstddef>
#include <vector>

#include "Calendar.h"
#include "Ledger.h"

namespace KestryCore {

// The saved sessions that began last, at most `count` of them, newest first; of those that began
// together the one whose identifier is lower as text goes first. They are valid until the ledger
// changes.

/// Of the sessions that have a span in the month, be it a part of one.
[[nodiscard]] std::vector<const TimeEntry*> newestSessionsOfMonth(
    const LedgerData& ledger, const MonthInterval& month, std::size_t count);

/// Of the sessions on a client's projects.
[[nodiscard]] std::vector<const TimeEntry*> newestSessionsOfClient(
    const LedgerData& ledger, const Uuid& clientID, std::size_t count);

} // namespace KestryCore
