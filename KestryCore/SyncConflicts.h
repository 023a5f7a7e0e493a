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
/// With `keepLocal` this device's version, the newest if it was edited since, is delivered again
/// with a new revision, based on the version in the cloud.
///
/// With `useCloud` the local change is dropped and never delivered, and a timer that runs here with
/// this identifier is cleared. Otherwise the ledger keeps the local version until the cloud has a
/// newer one: the version that it has now counts as seen.
///
/// Throws LedgerError when there is no such conflict, or when the version from the cloud cannot be
/// applied.
void resolveSyncConflict(LedgerData& ledger, const std::string& recordID, ConflictChoice choice,
    const UuidSource& newUuid);

} // namespace KestryCore
