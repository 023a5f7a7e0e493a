#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CloudDatabase.h"
#include "CloudSyncSwitch.h"
#include "FetchedRecords.h"
#include "OutboxDelivery.h"
#include "Scheduler.h"
#include "SyncState.h"
#include "Task.h"
#include "TimeStore.h"
#include "Uuid.h"

namespace KestryCore {

/// Whether a ledger has exchanged records before. Its zone is never made anew then: that would
/// upload everything into a store that somebody has wiped.
[[nodiscard]] bool hasSynced(const LedgerData& ledger);

/// One exchange with the cloud: what has changed there is applied to the ledger, then what waits
/// here is delivered.
///
/// Anything can happen to the ledger and the switch while it waits for an answer. So after each
/// wait, before anything is applied, it checks that replication is still on and the account still
/// the ledger's. All work on the ledger is done in single calls to the store between two waits, and
/// what comes back is matched by record and revision.
class CloudSyncRun {
public:
    /// All of these must outlive the run.
    struct Parts {
        TimeStore& store;
        CloudSyncSwitch& permission;
        CloudContainer& container;
        Scheduler& scheduler;
        const UuidSource& newUuid;
        /// Whether the store has published acknowledgements that no save has written yet.
        bool& hasUnsaved;
        /// Versions that the cloud has overruled and that are saved here as undelivered ones, until
        /// it has let go of them.
        std::vector<CloudRecord>& overruled;
    };

    explicit CloudSyncRun(const Parts& parts);
    CloudSyncRun(const CloudSyncRun&) = delete;
    CloudSyncRun& operator=(const CloudSyncRun&) = delete;
    ~CloudSyncRun() = default;

    /// Throws SyncCancelled when replication was turned off or restarted meanwhile, whatever else
    /// went wrong; otherwise what goes wrong. The run must outlive the task.
    [[nodiscard]] Task<void> carryOut();

    /// Whether changes wait that were made after the run looked at what is to be delivered.
    [[nodiscard]] bool hasNewerChanges() const;

private:
    [[nodiscard]] Task<void> takeSteps();
    void requireCurrent() const;
    [[nodiscard]] Task<void> checkAccount();
    void requireAccount(const std::string& name);

    [[nodiscard]] Task<void> findZone();

    [[nodiscard]] Task<void> pull();
    [[nodiscard]] std::optional<CloudCursor> savedCursor() const;
    [[nodiscard]] std::optional<std::string> changeToken() const;
    [[nodiscard]] Task<void> takeBackOverruled(const CloudChanges& changes);
    [[nodiscard]] Task<void> discardOverruled();
    [[nodiscard]] Task<void> apply(CloudChanges changes);
    [[nodiscard]] bool bringsNothing(const CloudChanges& changes, const std::string& cursor) const;
    void applyToStore(const FetchedRecords& fetched, const std::optional<std::string>& changeToken);

    [[nodiscard]] Task<void> push();
    /// Records of `pending_`, which a ledger that they were in shares.
    using Batch = std::vector<const SyncRecord*>;
    [[nodiscard]] std::vector<CloudRecord> cloudRecords(const Batch& batch) const;
    void keepWitness();
    void takeResults(const Batch& batch, const std::vector<CloudRecordResult>& results);
    void acknowledge(const std::vector<AcknowledgedRecord>& taken);

    Parts parts_;
    Uuid generation_;
    std::optional<std::string> account_; // once it was found to be the ledger's
    std::optional<PendingDelivery> pending_;
};

} // namespace KestryCore
