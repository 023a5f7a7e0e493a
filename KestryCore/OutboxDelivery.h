#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

#include "Ledger.h"
#include "SyncState.h"

namespace KestryCore {

/// The records to deliver, ascending by identity so that parents come first: all that wait in the
/// outbox but those in conflict, which wait for the user. None while replication is off or was
/// never connected. No more than `most`: a whole ledger may be waiting.
[[nodiscard]] std::vector<SyncRecord> pendingSyncRecords(
    const LedgerData& ledger, std::size_t most = std::numeric_limits<std::size_t>::max());

/// Notes that the cloud holds a record, and its metadata of it. The record leaves the outbox
/// unless a newer version waits there. Fails, with nothing changed, while the ledger was never
/// connected and on an invalid record.
void acknowledgeDelivery(
    LedgerData& ledger, const SyncRecord& record, const std::string& systemFields);

} // namespace KestryCore
