#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "FetchedRecords.h"
#include "Ledger.h"
#include "SyncState.h"
#include "Uuid.h"

namespace KestryCore {

// Applying records from the cloud to a copy of the ledger, which is of no use after a failure.
// Where the state is an argument besides the ledger, the state in the ledger is ignored.

/// Applies one fetch to the ledger and its state: stages the records in order, stores the cloud's
/// metadata of them, applies all that can be applied, and moves the cursor. Throws LedgerError for
/// the first invalid record, and when the ledger was never connected.
void applyRemoteSync(LedgerData& ledger, const FetchedRecords& fetched,
    const std::optional<std::string>& changeToken, const UuidSource& newUuid);
/// The same for records that were not checked yet.
void applyRemoteSync(LedgerData& ledger, const std::vector<SyncRecord>& records,
    const std::map<std::string, std::string>& systemFields,
    const std::optional<std::string>& changeToken, const UuidSource& newUuid);

/// Applies staged records until none can be applied. The rest wait for a parent to arrive or for
/// children to be deleted.
void drainStaged(LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid);

/// Applies one valid record when it is new and has no collision here, and records a conflict when
/// it has. Returns false when it must wait. In a conflict, a version that only the ledger has gets
/// the revision that the cloud is known to have, or one from `newUuid`.
[[nodiscard]] bool applyRemoteRecord(const SyncRecord& record, LedgerData& ledger,
    LedgerSyncState& state, const UuidSource& newUuid);

} // namespace KestryCore
