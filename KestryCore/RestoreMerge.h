#pragma once

#include "Ledger.h"

namespace KestryCore {

/// Adds to a restored ledger, which already has the current replication state, what a restore must
/// not lose: clients, projects and saved sessions that it lacks, the active session, and the live
/// records in the outbox. Does nothing when `current` has no state. Throws LedgerError when a
/// record in the outbox is invalid.
void mergePendingIntoRestored(const LedgerData& current, LedgerData& restored);

} // namespace KestryCore
