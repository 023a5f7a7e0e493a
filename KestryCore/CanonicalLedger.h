#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Ledger.h"

namespace KestryCore {

/// Where the replication state begins in a document that is in the form in which it is written, or
/// its end when it has none. In a document in another form it may be anywhere.
[[nodiscard]] std::size_t replicationOffset(std::string_view document);

/// Reads a ledger document that is exactly in the form in which it is written; only the replication
/// state may have any form. `records` is the document up to `replicationOffset`, and `replication`
/// what follows. The blocks of records remember their parts of `records`. Returns nullopt for every
/// other text, whether it is a ledger or not; then read it as any JSON.
[[nodiscard]] std::optional<LedgerData> readCanonicalLedger(
    const std::shared_ptr<const std::string>& records, std::string_view replication);

} // namespace KestryCore
