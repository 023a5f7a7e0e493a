#pragma once

#include <optional>
#include <string>

#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

/// Exports all saved sessions, to the standard output or to a file that the receiver of the answer
/// writes. On a terminal, control characters are made visible.
[[nodiscard]] CommandAnswer exportSessions(const KestryCore::TimeStore& store,
    const std::optional<std::string>& file, const CommandContext& context);

} // namespace Kestry
