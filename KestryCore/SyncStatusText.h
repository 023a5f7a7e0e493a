#pragma once

#include <string>

#include "Ledger.h"

namespace KestryCore {

/// How far replication of a ledger has come, in one line: what the user has to do first, then what
/// is waiting.
[[nodiscard]] std::string syncStatusText(const LedgerData& ledger);

} // namespace KestryCore
