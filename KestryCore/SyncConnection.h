#pragma once

#include <string>

#include "Ledger.h"
#include "SyncState.h"
#include "Uuid.h"

namespace KestryCore {

// Connecting a ledger with a cloud account. Each works on a copy of the ledger, which is of no use
// after a failure.

/// Fails when the ledger's records live in another environment than that of this build. A ledger
/// that was never connected passes.
void validateSyncEnvironment(const LedgerData& ledger, CloudSyncEnvironment environment);

/// Turns replication on: of a ledger that was never connected all records enter the outbox; of one
/// that was, nothing changes but `enabled`. Fails on another environment or account than the
/// ledger's, and on blank names. The names are kept as they are given.
void beginSync(LedgerData& ledger, const std::string& accountID, const std::string& deviceName,
    CloudSyncEnvironment environment, const UuidSource& newUuid);

/// Fails while the ledger was never connected.
void setSyncEnabled(LedgerData& ledger, bool isEnabled);

} // namespace KestryCore
