#pragma once

#include <vector>

#include "Ledger.h"
#include "SyncState.h"

namespace KestryCore {

/// The state of a device that has just been connected, with nothing to deliver or known.
[[nodiscard]] LedgerSyncState connectedState();

/// The state of a device that has exchanged everything it has.
[[nodiscard]] LedgerSyncState inStep(const LedgerData& ledger);

/// The state of a device that was connected when its ledger was this one, and has delivered
/// nothing yet.
[[nodiscard]] LedgerSyncState allWaiting(const LedgerData& ledger);

/// A version of a saved session that another device has written.
[[nodiscard]] SyncRecord remoteVersion(const TimeEntry& entry);

} // namespace KestryCore
