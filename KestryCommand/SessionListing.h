#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

/// The saved sessions that pass the command's filters, in its order. The session in progress is
/// in no list.
[[nodiscard]] CommandAnswer sessionListing(const KestryCore::LedgerData& ledger,
    const SessionsCommand& command, const CommandContext& context);

/// Titles that go on as a prefix does, the latest first, in the words of earlier sessions.
[[nodiscard]] CommandAnswer titleListing(
    const KestryCore::LedgerData& ledger, const std::string& prefix);

} // namespace Kestry
