#pragma once

#include <string>

#include "CommandContext.h"

namespace Kestry {

/// Reads and validates both ledger files of a data directory and names the damaged ledgers that
/// restores have kept there. Changes nothing. The answer is not sound when a file that exists is
/// not valid, or when the directory can't be listed.
[[nodiscard]] CommandAnswer checkLedgers(
    const std::string& directory, const CommandContext& context);

} // namespace Kestry
