#include "SyncBeginning.h"

#include <algorithm>
#include <utility>

#include "LedgerCoding.h"
#include "LedgerError.h"
#include "LocalChanges.h"
#include "SyncRecords.h"
#include "Text.h"

namespace KestryCore {

namespace {

constexpr std::size_t entriesInPart = 1'000;

/// In the order in which the outbox has them, so that no part comes between others.
std::vector<const TimeEntry*> inOrder(const RecordList<TimeEntry>& entries)
{
    std::vector<const TimeEntry*> ordered;
    ordered.reserve(entries.size());
    for (const TimeEntry& entry : entries) {
        ordered.push_back(&entry);
    }
    std::ranges::stable_sort(ordered, {}, [](const TimeEntry* entry) { return entry->id; });
    return ordered;
}

} // namespace

void requireSyncNames(const std::string& accountID, const std::string& deviceName)
{
    if (accountID.empty() || trimmed(deviceName).empty()) {
        throw LedgerError("Sync needs an account and device name.");
    }
}

SyncBeginning::SyncBeginning(const LedgerData& ledger, const std::string& accountID,
    const std::string& deviceName, CloudSyncEnvironment environment, const UuidSource& newUuid)
    : ledger_(ledger), entries_(inOrder(ledger_.entries)), newUuid_(newUuid)
{
    requireSyncNames(accountID, deviceName);
    LedgerSyncState state;
    state.deviceID = newUuid().text();
    state.deviceName = deviceName;
    state.accountID = accountID;
    state.environment = environment;
    made_.replication = std::move(state);
}

void SyncBeginning::goOn()
{
    LedgerData part;
    if (next_ == 0) {
        part.clients = ledger_.clients;
        part.projects = ledger_.projects;
    }
    const std::size_t end = std::min(entries_.size(), next_ + entriesInPart);
    for (; next_ < end; ++next_) {
        part.entries.append(*entries_[next_]);
    }
    const bool isLast = next_ == entries_.size();
    if (isLast) {
        part.active = ledger_.active;
    }
    std::swap(part.replication, made_.replication); // Shared, it would be copied.
    recordLedgerChange(LedgerData{}, part, {.trackDeletions = true, .forceAll = true}, newUuid_);
    std::swap(part.replication, made_.replication);
    validateReplicationState(*made_.replication);
    (void)ledgerBytes(made_);
    isComplete_ = isLast;
}

bool SyncBeginning::isOf(const LedgerData& ledger) const
{
    return isComplete_ && !ledger.replication && ledger.clients.sharesAllWith(ledger_.clients)
        && ledger.projects.sharesAllWith(ledger_.projects)
        && ledger.entries.sharesAllWith(ledger_.entries) && ledger.active == ledger_.active;
}

} // namespace KestryCore
