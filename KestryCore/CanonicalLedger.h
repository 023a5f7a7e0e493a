#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Ledger.h"

namespace KestryCore {

/// Reads a ledger document that is exactly in the form in which it is written; only the replication
/// state may have any form. The blocks of records remember their parts of the text. Returns nullopt
/// for every other text, whether it is a ledger or not; then read it as any JSON.
[[nodiscard]] std::optional<LedgerData> readCanonicalLedger(
    const std::shared_ptr<const std::string>& text);

} // namespace KestryCore
