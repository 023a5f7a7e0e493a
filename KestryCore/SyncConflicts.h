#pragma once

#include <string>

#include "Ledger.h"
#include "SyncState.h"
#include "Uuid.h"

namespace KestryCore {

/// Which version of a record in conflict the user has chosen.
enum class ConflictChoice { keepLocal, useCloud };

/// Ends a conflict on a copy of the ledger, which is of no use after a failure.
///
/// With `keepLocal` this device's version, the newest if it was edited since, goes out again under
/// a fresh revision, based on what the cloud holds.
///
/// With `useCloud` the local change is given up and never goes out, and a timer that runs here
/// under this identity is cleared. The ledger keeps the local version otherwise, until the cloud
/// has a newer one: the version that it has now counts as seen.
///
/// Fails when there is no such conflict, or when what the cloud sent cannot be applied.
void resolveSyncConflict(LedgerData& ledger, const std::string& recordID, ConflictChoice choice,
    const UuidSource& newUuid);

} // namespace KestryCore
