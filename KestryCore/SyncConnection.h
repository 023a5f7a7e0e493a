#pragma once

#include <string>

#include "Ledger.h"
#include "SyncBeginning.h"
#include "SyncState.h"
#include "Uuid.h"

namespace KestryCore {

// Connecting a ledger to a cloud account. Each function works on a copy of the ledger, which is of
// no use after a failure.

/// Throws LedgerError when the records of the ledger belong to another environment than that of
/// this build. A ledger that was never connected passes.
void validateSyncEnvironment(const LedgerData& ledger, CloudSyncEnvironment environment);

/// Turns replication on. When the ledger was never connected, all records enter the outbox;
/// otherwise only `enabled` changes. Throws LedgerError for another environment or account than the
/// ledger's, and for blank names. The names are stored unchanged.
void beginSync(LedgerData& ledger, const std::string& accountID, const std::string& deviceName,
    CloudSyncEnvironment environment, const UuidSource& newUuid);

/// The same with a state that was made before, which spares the time. When the ledger has changed
/// since, that state is of no use and all is done now.
void beginSync(LedgerData& ledger, const SyncBeginning& beginning, const UuidSource& newUuid);

/// Forgets what the cloud was known to have, and puts every record of the ledger and every deletion
/// into the outbox: the cloud lost some of it, or is another one. Versions that were delivered keep
/// their revision, so that the cloud recognises those that it still has; any other version there
/// becomes a conflict. Throws LedgerError when the ledger was never connected, and while a conflict
/// is open: who chooses the cloud's version of it takes the record out of the outbox, though the
/// cloud may have lost that version.
void deliverAllAgain(LedgerData& ledger, const UuidSource& newUuid);

/// Throws LedgerError when the ledger was never connected.
void setSyncEnabled(LedgerData& ledger, bool isEnabled);

} // namespace KestryCore
