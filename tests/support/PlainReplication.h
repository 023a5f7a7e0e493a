#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "LocalChanges.h"
#include "SyncConflicts.h"

/// The rules of replication told as plainly as can be: everything is encoded and walked through
/// each time, nothing is shared, skipped or remembered. The rules that are used must agree with
/// them, byte for byte and revision for revision.
namespace KestryCore::Plain {

void recordLedgerChange(const LedgerData& before, LedgerData& after, ChangeTracking tracking,
    const UuidSource& newUuid);

void applyRemoteSync(LedgerData& ledger, const std::vector<SyncRecord>& records,
    const std::map<std::string, std::string>& systemFields,
    const std::optional<std::string>& changeToken, const UuidSource& newUuid);

void resolveSyncConflict(LedgerData& ledger, const std::string& recordID, ConflictChoice choice,
    const UuidSource& newUuid);

} // namespace KestryCore::Plain
