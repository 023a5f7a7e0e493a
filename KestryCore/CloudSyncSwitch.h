#pragma once

#include <optional>

#include "CloudSyncFields.h"
#include "SyncState.h"
#include "TimeStore.h"
#include "Uuid.h"

namespace KestryCore {

/// Whether replication may run. What runs keeps a copy of `generation` and compares it after each
/// wait: once they differ, it must end without a trace.
class CloudSyncSwitch {
public:
    /// Store and fields must outlive the switch.
    CloudSyncSwitch(TimeStore& store, CloudSyncFields& fields,
        std::optional<CloudSyncEnvironment> environment, UuidSource newUuid);

    /// Whether the ledger is connected and turned on, belongs to the environment of this build, and
    /// nothing holds it off until the user turns it on again.
    [[nodiscard]] bool isEnabled() const;
    [[nodiscard]] const Uuid& generation() const { return generation_; }

    /// Ends all that runs. What may run afterwards stays as it is.
    void endRuns() { generation_ = newUuid_(); }
    /// Turns replication off in the ledger. When that cannot be saved, the store says so, and
    /// replication is off all the same, as long as the program runs.
    void turnOff();
    /// The system has another account: nothing runs before `turnedOn`.
    void suspendAccount();
    /// The user has turned it on, and the account is that of the ledger.
    void turnedOn();

private:
    TimeStore& store_;
    CloudSyncFields& fields_;
    std::optional<CloudSyncEnvironment> environment_;
    UuidSource newUuid_;
    Uuid generation_;
    bool accountSuspended_ = false;
    bool isOffUnsaved_ = false; // the ledger still says that it is on
};

} // namespace KestryCore
