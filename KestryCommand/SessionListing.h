#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

/// The saved sessions that match the command's filters, in its order. The session in progress is
/// never listed.
[[nodiscard]] CommandAnswer sessionListing(const KestryCore::LedgerData& ledger,
    const SessionsCommand& command, const CommandContext& context);

/// The titles of earlier sessions that begin with the prefix, the latest first.
[[nodiscard]] CommandAnswer titleListing(
    const KestryCore::LedgerData& ledger, const std::string& prefix);

} // namespace Kestry
