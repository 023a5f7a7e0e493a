#pragma once

#include <string>

#include "Ledger.h"

namespace KestryCore {

/// The line while conflicts wait for the user.
inline constexpr const char* reviewText = "Review sync conflicts";

/// The state of replication in one line: first what the user has to do, then what is waiting.
[[nodiscard]] std::string syncStatusText(const LedgerData& ledger);

} // namespace KestryCore
