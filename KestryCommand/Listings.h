#pragma once

#include <optional>

#include "CommandContext.h"
#include "Ledger.h"

namespace Kestry {

/// All clients in the ledger's order.
[[nodiscard]] CommandAnswer clientListing(
    const KestryCore::LedgerData& ledger, const CommandContext& context);

/// All projects, or one client's, in the ledger's order. The text leaves out the hidden
/// default projects.
[[nodiscard]] CommandAnswer projectListing(const KestryCore::LedgerData& ledger,
    const std::optional<KestryCore::Uuid>& clientID, const CommandContext& context);

} // namespace Kestry
