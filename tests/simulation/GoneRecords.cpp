#include "GoneRecords.h"

#include "RecordContents.h"

namespace KestryCore {

void GoneRecords::startFrom(const LedgerData& ledger)
{
    keys_.clear();
    if (!ledger.replication) {
        return;
    }
    for (const auto& [key, deletion] : ledger.replication->tombstones) {
        keys_.insert(key);
    }
}

std::optional<std::string> GoneRecords::observe(const LedgerData& before, const LedgerData& now)
{
    const std::map<std::string, std::string> contents = contentsOf(now);
    for (const auto& [key, content] : contentsOf(before)) {
        if (!contents.contains(key)) {
            keys_.insert(key);
        }
    }
    forgetDecided(*before.replication, *now.replication);
    forgetMadeHere(*before.replication, *now.replication);
    for (const std::string& key : keys_) {
        if (contents.contains(key)) {
            return key;
        }
    }
    return std::nullopt;
}

void GoneRecords::forgetDecided(const LedgerSyncState& before, const LedgerSyncState& now)
{
    for (const SyncConflict& conflict : before.conflicts) {
        if (now.conflicts.find(conflict.id) == nullptr) {
            keys_.erase(conflict.id);
        }
    }
}

void GoneRecords::forgetMadeHere(const LedgerSyncState& before, const LedgerSyncState& now)
{
    for (const auto& [key, record] : now.outbox) {
        const auto former = before.outbox.find(key);
        const bool isNew =
            former == before.outbox.end() || former->second.revision != record.revision;
        if (isNew && !record.isDeleted) {
            keys_.erase(key);
        }
    }
}

} // namespace KestryCore
