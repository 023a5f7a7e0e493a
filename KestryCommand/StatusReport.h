#pragma once

#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

/// The session in progress as it is in the ledger, and the store's condition.
[[nodiscard]] CommandAnswer statusReport(
    const KestryCore::TimeStore& store, const CommandContext& context);

} // namespace Kestry
