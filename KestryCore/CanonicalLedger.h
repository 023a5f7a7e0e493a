#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Ledger.h"

namespace KestryCore {

/// Reads a ledger document that has the very bytes in which the ledger would be written, but for
/// the replication state, which may have any form. The blocks of records remember their part of
/// the text. None for any other text, be it a good ledger in another form or none at all: whoever
/// wants to know reads it as any JSON.
[[nodiscard]] std::optional<LedgerData> readCanonicalLedger(
    const std::shared_ptr<const std::string>& text);

} // namespace KestryCore
