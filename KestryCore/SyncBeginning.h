#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Ledger.h"
#include "SyncState.h"
#include "Uuid.h"

namespace KestryCore {

/// Throws LedgerError unless an account and a device are named.
void requireSyncNames(const std::string& accountID, const std::string& deviceName);

/// The replication state of a ledger that was never connected, with all its records in the outbox.
///
/// It is made in parts, because all of a large ledger takes longer than anybody who presses a key
/// wants to wait. Each part is validated and encoded when it is made, and that is remembered: the
/// save that follows has only to write.
class SyncBeginning {
public:
    /// Throws LedgerError for blank names, which are stored unchanged. `newUuid` must outlive this
    /// object.
    SyncBeginning(const LedgerData& ledger, const std::string& accountID,
        const std::string& deviceName, CloudSyncEnvironment environment, const UuidSource& newUuid);
    SyncBeginning(const SyncBeginning&) = delete;
    SyncBeginning& operator=(const SyncBeginning&) = delete;
    ~SyncBeginning() = default;

    /// Makes the next part; must not be complete. Throws LedgerError for a record that cannot be
    /// replicated, and then this object is of no use.
    void goOn();
    [[nodiscard]] bool isComplete() const { return isComplete_; }

    /// Whether it is complete, and of just this ledger: nothing has changed there since.
    [[nodiscard]] bool isOf(const LedgerData& ledger) const;
    [[nodiscard]] const Shared<LedgerSyncState>& state() const { return made_.replication; }

private:
    LedgerData ledger_;
    LedgerData made_; // only a replication state
    std::vector<const TimeEntry*> entries_;
    std::size_t next_ = 0; // of the entries
    bool isComplete_ = false;
    const UuidSource& newUuid_;
};

} // namespace KestryCore
