#pragma once

#include <optional>
#include <string>

#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

/// Exports all saved sessions, to the standard output or to a file, which is replaced whole or
/// not at all; a symbolic link stays and its target is replaced. Refuses what is no regular file,
/// and in the ledger's folder all names that might be those of its own files.
[[nodiscard]] CommandAnswer exportSessions(const KestryCore::TimeStore& store,
    const std::optional<std::string>& file, const CommandContext& context);

} // namespace Kestry
