#pragma once

#include <optional>
#include <set>
#include <string>

#include "Ledger.h"

namespace KestryCore {

/// The records that were on a device and are no more. One comes back by a change that the user
/// makes here, or after the user has decided on it, and never because of what the state of
/// replication has forgotten. Therefore the memory is one of its own.
class GoneRecords {
public:
    /// The device begins with this ledger; of what was before it knows the deletions it retains.
    void startFrom(const LedgerData& ledger);
    /// A change of a connected ledger. The record that has come back by itself, if there is one.
    [[nodiscard]] std::optional<std::string> observe(
        const LedgerData& before, const LedgerData& now);

private:
    void forgetDecided(const LedgerSyncState& before, const LedgerSyncState& now);
    void forgetMadeHere(const LedgerSyncState& before, const LedgerSyncState& now);

    std::set<std::string> keys_;
};

} // namespace KestryCore
