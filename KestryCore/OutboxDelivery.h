#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "Ledger.h"
#include "SyncState.h"

namespace KestryCore {

/// The records to deliver, in ascending order of `recordID` so that parents come first: all in the
/// outbox except those in conflict, which wait for the user; at most `most`, because a whole ledger
/// may be waiting. Empty while replication is off or was never connected.
[[nodiscard]] std::vector<SyncRecord> pendingSyncRecords(
    const LedgerData& ledger, std::size_t most = std::numeric_limits<std::size_t>::max());

/// Records that the cloud has a version, with the cloud's metadata. It leaves the outbox unless
/// that has a newer version. Throws LedgerError, with nothing changed, for an invalid record and
/// when the ledger was never connected.
void acknowledgeDelivery(
    LedgerData& ledger, const SyncRecord& record, const std::string& systemFields);

} // namespace KestryCore
