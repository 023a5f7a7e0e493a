#pragma once

#include <optional>
#include <string>

#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

/// Exports all saved sessions, to the standard output or to a file, which is left to whoever takes
/// the answer. Where the standard output is a terminal nothing in them can act on it.
[[nodiscard]] CommandAnswer exportSessions(const KestryCore::TimeStore& store,
    const std::optional<std::string>& file, const CommandContext& context);

} // namespace Kestry
