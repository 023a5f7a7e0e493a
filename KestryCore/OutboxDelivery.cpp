#include "OutboxDelivery.h"

#include <set>
#include <string_view>

#include "LedgerError.h"
#include "SyncRecords.h"

namespace KestryCore {

std::vector<SyncRecord> pendingSyncRecords(const LedgerData& ledger, std::size_t most)
{
    std::vector<SyncRecord> pending;
    if (!ledger.replication || !ledger.replication->enabled) {
        return pending;
    }
    std::set<std::string_view> inConflict;
    for (const SyncConflict& conflict : ledger.replication->conflicts) {
        inConflict.insert(conflict.id);
    }
    for (const auto& [key, record] : ledger.replication->outbox) {
        if (pending.size() == most) {
            break;
        }
        if (!inConflict.contains(record.recordID)) {
            pending.push_back(record);
        }
    }
    return pending;
}

void acknowledgeDelivery(
    LedgerData& ledger, const SyncRecord& record, const std::string& systemFields)
{
    if (!ledger.replication) {
        throw LedgerError("Sync is not connected.");
    }
    validateRecord(record);
    LedgerSyncState& state = ledger.replication.edit();
    state.baseRevisions[record.recordID] = record.revision;
    state.systemFields[record.recordID] = systemFields;
    const auto waiting = state.outbox.find(record.recordID);
    if (waiting != state.outbox.end() && waiting->second.revision == record.revision) {
        state.outbox.erase(record.recordID);
    }
}

} // namespace KestryCore
