#pragma once

#include <cstddef>
#include <string>

#include "Date.h"

namespace KestryCore {

// Dates as text for machines, in UTC; for dates of a ledger and `distantPast`.

/// "2026-03-14"
[[nodiscard]] std::string utcDayText(Date date);

/// Characters of the text that follows.
inline constexpr std::size_t timestampSize = 24;

/// Writes "2026-03-14T09:26:53.589Z", rounded to the nearest millisecond, at `place`, and returns
/// the end of it.
char* writeTimestamp(char* place, Date date);

} // namespace KestryCore
