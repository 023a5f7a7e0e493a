#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

// Replication, as far as the ledger itself tells of it and the user decides on it.

CommandAnswer run(const SyncStatusCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const SyncConflictsCommand&, KestryCore::TimeStore&, const CommandContext&);
/// Fails as the store's operation does.
CommandAnswer run(const SyncResolveCommand&, KestryCore::TimeStore&, const CommandContext&);

} // namespace Kestry
