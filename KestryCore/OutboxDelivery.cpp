#include "OutboxDelivery.h"

#include <algorithm>

#include "LedgerError.h"
#include "SyncRecords.h"

namespace KestryCore {

namespace {

std::set<std::string> recordsInConflict(const LedgerData& ledger)
{
    std::set<std::string> inConflict;
    for (const SyncConflict& conflict : ledger.replication->conflicts) {
        inConflict.insert(conflict.id);
    }
    return inConflict;
}

} // namespace

PendingDelivery::PendingDelivery(const LedgerData& ledger)
{
    if (ledger.replication && ledger.replication->enabled) {
        outbox_ = ledger.replication->outbox;
        inConflict_ = recordsInConflict(ledger);
    }
    next_ = outbox_.begin();
    skipConflicts();
}

void PendingDelivery::skipConflicts()
{
    while (next_ != outbox_.end() && inConflict_.contains(next_->first)) {
        ++next_;
    }
}

std::vector<const SyncRecord*> PendingDelivery::take(std::size_t most)
{
    std::vector<const SyncRecord*> taken;
    while (!isEmpty() && taken.size() < most) {
        taken.push_back(&next_->second);
        ++next_;
        skipConflicts();
    }
    return taken;
}

bool PendingDelivery::isBehind(const LedgerData& ledger) const
{
    const PendingDelivery later(ledger);
    return std::ranges::any_of(later.outbox_, [&](const auto& waiting) {
        const auto known = outbox_.find(waiting.first);
        const bool isKnown =
            known != outbox_.end() && known->second.revision == waiting.second.revision;
        return !isKnown && !later.inConflict_.contains(waiting.first);
    });
}

std::vector<SyncRecord> pendingSyncRecords(const LedgerData& ledger, std::size_t most)
{
    PendingDelivery delivery(ledger);
    std::vector<SyncRecord> records;
    for (const SyncRecord* const record : delivery.take(most)) {
        records.push_back(*record);
    }
    return records;
}

std::map<std::string, std::string> outboxRevisions(const LedgerData& ledger)
{
    std::map<std::string, std::string> revisions;
    if (ledger.replication) {
        for (const auto& [key, record] : ledger.replication->outbox) {
            revisions.emplace_hint(revisions.end(), key, record.revision);
        }
    }
    return revisions;
}

void acknowledgeDelivery(
    LedgerData& ledger, const SyncRecord& record, const std::string& systemFields)
{
    if (!ledger.replication) {
        throw LedgerError("Sync is not connected.");
    }
    if (!ledger.replication->outbox.hasSound(record.recordID, record)) {
        validateRecord(record);
    }
    LedgerSyncState& state = ledger.replication.edit();
    state.baseRevisions[record.recordID] = record.revision;
    state.systemFields[record.recordID] = systemFields;
    const auto waiting = state.outbox.find(record.recordID);
    if (waiting != state.outbox.end() && waiting->second.revision == record.revision) {
        state.outbox.erase(record.recordID);
    }
}

} // namespace KestryCore
