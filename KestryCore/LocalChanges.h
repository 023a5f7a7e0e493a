#pragma once

#include "Ledger.h"
#include "Uuid.h"

namespace KestryCore {

/// Which differences between two ledgers count as changes to deliver.
struct ChangeTracking {
    bool trackDeletions = true; ///< A record gone from the new ledger becomes a deletion.
    bool forceAll = false;      ///< Every record of the new ledger counts as changed.
};

/// Puts what differs between two ledgers into the outbox of the replication state of `after`, each
/// record with a new revision from `newUuid`: deletions are kept as tombstones, live records remove
/// theirs, and open conflicts get the newest local version. Does nothing while there is no state.
/// Changes made while replication is off are recorded too.
/// Both ledgers must have unique identifiers. Throws LedgerError when a record cannot be encoded;
/// then `after` is of no use.
void recordLedgerChange(const LedgerData& before, LedgerData& after, ChangeTracking tracking,
    const UuidSource& newUuid);

} // namespace KestryCore
