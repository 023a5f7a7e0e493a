#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "TimeStore.h"

namespace Kestry {

// Commands for the state of replication that is in the ledger, and for decisions on conflicts.

CommandAnswer run(const SyncStatusCommand&, KestryCore::TimeStore&, const CommandContext&);
CommandAnswer run(const SyncConflictsCommand&, KestryCore::TimeStore&, const CommandContext&);
/// Turns replication off in the ledger, of which no application knows. Throws what the store's
/// operation throws.
CommandAnswer run(const SyncOffCommand&, KestryCore::TimeStore&, const CommandContext&);
/// Throws what the store's operation throws.
CommandAnswer run(const SyncResolveCommand&, KestryCore::TimeStore&, const CommandContext&);

} // namespace Kestry
