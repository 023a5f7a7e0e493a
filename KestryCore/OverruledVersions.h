#pragma once

#include "Ledger.h"
#include "SyncState.h"
#include "Uuid.h"

namespace KestryCore {

/// Takes a version back that this device had delivered, and that the cloud has put behind another
/// writer's since. In the ledger and the outbox it is an undelivered local version again, so that
/// it meets the other one as an ordinary conflict.
///
/// Returns whether the version, or one that was made of it, is undelivered here now: only then may
/// the cloud's copy go. Otherwise nothing has changed, because there is another undelivered version
/// or the record cannot be applied; the cloud tells of the version again after the next change of
/// the record. Throws LedgerError for an invalid record, and when the ledger was never connected.
[[nodiscard]] bool takeBack(
    LedgerData& ledger, const SyncRecord& version, const UuidSource& newUuid);

} // namespace KestryCore
