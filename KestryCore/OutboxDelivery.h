#pragma once

#include <cstddef>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "Ledger.h"
#include "SharedMap.h"
#include "SyncState.h"

namespace KestryCore {

/// The records to deliver, in ascending order of `recordID` so that parents come first: all in the
/// outbox except those in conflict, which wait for the user; at most `most`, because a whole ledger
/// may be waiting. Empty while replication is off or was never connected.
[[nodiscard]] std::vector<SyncRecord> pendingSyncRecords(
    const LedgerData& ledger, std::size_t most = std::numeric_limits<std::size_t>::max());

/// What waits for delivery at one moment, taken in parts: later changes are for a later delivery.
/// It shares the records with the ledger that it is of.
class PendingDelivery {
public:
    /// The same records as `pendingSyncRecords`, in the same order.
    explicit PendingDelivery(const LedgerData& ledger);
    PendingDelivery(const PendingDelivery&) = delete;
    PendingDelivery& operator=(const PendingDelivery&) = delete;
    ~PendingDelivery() = default;

    [[nodiscard]] bool isEmpty() const { return next_ == outbox_.end(); }
    /// The next records, `most` of them or what is left. They are valid as long as this object.
    [[nodiscard]] std::vector<const SyncRecord*> take(std::size_t most);
    /// Whether the ledger has a version to deliver that is not among all of these.
    [[nodiscard]] bool isBehind(const LedgerData& ledger) const;

private:
    void skipConflicts();

    SharedMap<SyncRecord> outbox_; // empty while replication is off
    std::set<std::string> inConflict_;
    SharedMap<SyncRecord>::Iterator next_;
};

/// A version that the cloud has taken, with the cloud's metadata.
struct AcknowledgedRecord {
    const SyncRecord* record; ///< Never null.
    std::string systemFields;
};

/// The revision of each record in the outbox, also of those in conflict, by `recordID`.
[[nodiscard]] std::map<std::string, std::string> outboxRevisions(const LedgerData& ledger);

/// Records that the cloud has a version, with the cloud's metadata. It leaves the outbox unless
/// that has a newer version. Throws LedgerError, with nothing changed, for an invalid record and
/// when the ledger was never connected.
void acknowledgeDelivery(
    LedgerData& ledger, const SyncRecord& record, const std::string& systemFields);

} // namespace KestryCore
