#pragma once

#include "Ledger.h"
#include "SyncState.h"

namespace KestryCore {

/// The last digit of an identifier whose other digits are 0.
[[nodiscard]] inline Uuid smallUuid(std::uint8_t number)
{
    Uuid id;
    id.bytes.back() = number;
    return id;
}

/// A small sound ledger that is connected, for records to be applied to: client 1 with project 2,
/// the saved session 3 and session 4 in progress, and session 5 deleted.
[[nodiscard]] inline LedgerData smallLedger()
{
    constexpr Date noon{785'000'000.0};
    LedgerData ledger;
    ledger.clients.append({smallUuid(1), "Client", 100, "4A90D9", true, {}, true});
    ledger.projects.append({smallUuid(2), smallUuid(1), "Project", 100, true, false});
    TimeEntry entry;
    entry.id = smallUuid(3);
    entry.projectID = smallUuid(2);
    entry.spans = {{noon, noon + 60.0}};
    entry.sourceID = "imported";
    ledger.entries.append(entry);
    ActiveSession active;
    active.id = smallUuid(4);
    active.projectID = smallUuid(2);
    active.runningSince = noon;
    active.checkpointAt = noon;
    ledger.active = active;
    LedgerSyncState state;
    state.deviceID = smallUuid(9).text();
    state.deviceName = "Desk";
    state.accountID = "account";
    const std::string deleted = "Session:" + smallUuid(5).text();
    state.tombstones[deleted] = {deleted, smallUuid(6).text(), state.deviceID, {}, true};
    ledger.replication = state;
    return ledger;
}

} // namespace KestryCore
