#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Date.h"
#include "Ledger.h"

namespace KestryCore {

/// All saved sessions of a sound ledger as comma-separated values, the earliest start first: UTF-8
/// without a byte order mark, lines ended by CR LF, one header line. The session in progress is
/// left out. Times are in UTC and numbers have a decimal point, so that the same ledger gives the
/// same bytes everywhere. No cell is read as a formula by a spreadsheet.
[[nodiscard]] std::string exportCSV(const LedgerData& ledger);

/// The file name to propose, with the day of `now` in UTC: "Kestry-sessions-2026-03-14.csv".
[[nodiscard]] std::string csvFileName(Date now);

/// The sentence after an export of this many sessions. `fileName` has no directory.
[[nodiscard]] std::string exportMessage(std::size_t sessionCount, std::string_view fileName);

} // namespace KestryCore
