#include "SyncStatusText.h"

#include "SyncState.h"

namespace KestryCore {

std::string syncStatusText(const LedgerData& ledger)
{
    if (!ledger.replication) {
        return "iCloud sync is off";
    }
    const LedgerSyncState& state = *ledger.replication;
    if (!state.conflicts.empty()) {
        return reviewText;
    }
    if (!state.staged.empty()) {
        return "Awaiting related records (" + std::to_string(state.staged.size()) + ")";
    }
    if (!state.outbox.empty()) {
        return "Changes pending (" + std::to_string(state.outbox.size()) + ")";
    }
    return "Up to date";
}

} // namespace KestryCore
