#pragma once

#include "Ledger.h"

namespace KestryCore {

/// Brings into a restored ledger, which already carries the current replication state, what going
/// back must not drop: clients, projects and saved sessions that it lacks, the active session, and
/// the live records that still wait in the outbox. Does nothing while `current` has no state.
/// Fails when a waiting record is invalid.
void mergePendingIntoRestored(const LedgerData& current, LedgerData& restored);

} // namespace KestryCore
