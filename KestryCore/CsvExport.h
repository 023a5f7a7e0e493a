#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Date.h"
#include "Ledger.h"

namespace KestryCore {

/// All saved sessions of a sound ledger as one file of comma-separated values, the earliest start
/// first: UTF-8 without a byte order mark, lines ended by CR LF, one header line. The session in
/// progress is not in it. Times are UTC and numbers have a point, so that the same ledger gives
/// the same bytes everywhere, and no cell is one that a spreadsheet would take for a formula.
[[nodiscard]] std::string exportCSV(const LedgerData& ledger);

/// The name to propose for the file, with the day in UTC: "Kestry-sessions-2026-03-14.csv".
[[nodiscard]] std::string csvFileName(Date now);

/// What to say once so many sessions are in the file of this name, which is given without its
/// directory.
[[nodiscard]] std::string exportMessage(std::size_t sessionCount, std::string_view fileName);

} // namespace KestryCore
