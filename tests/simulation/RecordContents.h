#pragma once

#include <map>
#include <set>
#include <string>

#include "Ledger.h"
#include "SyncState.h"

namespace KestryCore {

/// What each record of a ledger holds, by record identity: its payload, but without the owner of a
/// session, which differs with the device. Sessions in progress elsewhere are among them, unless
/// the ledger has the same session itself.
[[nodiscard]] std::map<std::string, std::string> contentsOf(const LedgerData& ledger);

/// The same of one version; empty for a deletion.
[[nodiscard]] std::string contentOf(const SyncRecord& record);

/// The revision of the version that a device shows of a record: the one that waits for delivery,
/// else the one that it knows the cloud to hold. Empty where it knows none.
[[nodiscard]] std::string shownRevision(const LedgerSyncState& state, const std::string& recordID);

/// The revisions of all versions that a device holds in any role, but for those that are only what
/// a waiting version was based on.
[[nodiscard]] std::set<std::string> heldRevisions(const LedgerSyncState& state);

/// The revisions of the cloud that a device has applied, staged or put into a conflict.
[[nodiscard]] std::set<std::string> noticedRevisions(const LedgerSyncState& state);

/// A record identity, or a revision, shortened for people.
[[nodiscard]] std::string shortName(const std::string& text);

} // namespace KestryCore
