#pragma once

#include "Ledger.h"
#include "Uuid.h"

namespace KestryCore {

/// Which differences between two ledgers count as changes to deliver.
struct ChangeTracking {
    bool trackDeletions = true; ///< A record gone from the new ledger becomes a deletion.
    bool forceAll = false;      ///< Every record of the new ledger counts as changed.
};

/// Puts what differs between two ledgers into the outbox of the new one's replication state, each
/// record with a fresh revision from `newUuid`: deletions are retained as tombstones, live records
/// end theirs, and open conflicts follow the newest local version. Does nothing while there is no
/// state. Both ledgers must have unique identifiers, or the result is of no use.
/// Whether replication is enabled plays no part: changes made while it is off wait.
/// Fails, with the new ledger unusable, when a record cannot be encoded.
void recordLedgerChange(const LedgerData& before, LedgerData& after, ChangeTracking tracking,
    const UuidSource& newUuid);

} // namespace KestryCore
