#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Ledger.h"
#include "SyncState.h"
#include "Uuid.h"

namespace KestryCore {

// Taking records of the cloud into a copy of the ledger, which is of no use after a failure. Where
// the state is handed over beside the ledger, the one in the ledger is not looked at.

/// Takes one fetch into the ledger and its state: stages the records in their order, notes the
/// cloud's metadata of them, applies whatever can be applied, and moves the cursor. Fails while the
/// ledger was never connected, and on the first invalid record.
void applyRemoteSync(LedgerData& ledger, const std::vector<SyncRecord>& records,
    const std::map<std::string, std::string>& systemFields,
    const std::optional<std::string>& changeToken, const UuidSource& newUuid);

/// Applies what is staged, over and over until nothing more can be. What is left waits for what it
/// refers to to arrive, or for what refers to it to go.
void drainStaged(LedgerData& ledger, LedgerSyncState& state, const UuidSource& newUuid);

/// Decides on one valid record, and applies it when it is new and collides with nothing here.
/// False when it has to wait. A version that only the ledger holds takes the revision that the
/// cloud is known to have, or one from `newUuid`, when it goes into a conflict.
[[nodiscard]] bool applyRemoteRecord(const SyncRecord& record, LedgerData& ledger,
    LedgerSyncState& state, const UuidSource& newUuid);

} // namespace KestryCore
