#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerValidation.h"
#include "OutboxDelivery.h"
#include "RemoteChanges.h"
#include "SmallLedger.h"
#include "SyncConflicts.h"
#include "SyncRecords.h"
#include "Verdict.h"

// Any bytes under the name of a replication state either are refused in words or are a state.
//
// - Written and read again, within a ledger, it is the same, judged the same and written the same.
// - What is delivered of a sound one is in order and in no conflict, and each delivery can be
//   acknowledged.
// - Every conflict of a sound one can be decided either way, and is gone then.
// - What waits in a sound one is applied as far as it goes, once and for all.

namespace {

using namespace KestryCore;

Uuid nextUuid()
{
    return smallUuid(7);
}

LedgerData ledgerWith(const LedgerSyncState& state)
{
    LedgerData ledger = smallLedger();
    ledger.replication = state;
    return ledger;
}

void requireDelivered(const LedgerData& ledger)
{
    const std::vector<SyncRecord> pending = pendingSyncRecords(ledger);
    require(std::ranges::is_sorted(pending, {}, &SyncRecord::recordID), "deliveries are in order");
    LedgerData delivered = ledger;
    for (const SyncRecord& record : pending) {
        require(ledger.replication->conflicts.find(record.recordID) == nullptr,
            "what is in conflict is not delivered");
        acknowledgeDelivery(delivered, record, "fields");
    }
    require(pendingSyncRecords(delivered).empty(), "what was acknowledged is not delivered again");
}

void requireDecided(const LedgerData& ledger)
{
    for (const SyncConflict& conflict : ledger.replication->conflicts) {
        for (const ConflictChoice choice : {ConflictChoice::keepLocal, ConflictChoice::useCloud}) {
            LedgerData decided = ledger;
            resolveSyncConflict(decided, conflict.id, choice, nextUuid);
            const LedgerSyncState& state = *decided.replication;
            require(state.conflicts.find(conflict.id) == nullptr, "a decided conflict is gone");
            require(state.baseRevisions.at(conflict.id) == conflict.remote.revision,
                "what was decided on counts as seen");
            require(state.outbox.contains(conflict.id) == (choice == ConflictChoice::keepLocal),
                "the version kept goes out, and no other");
        }
    }
}

void requireDrained(LedgerData ledger)
{
    applyRemoteSync(ledger, {}, {}, "cursor", nextUuid);
    const LedgerData once = ledger;
    applyRemoteSync(ledger, {}, {}, "cursor", nextUuid);
    require(ledger == once, "applying what waits leaves nothing that could be applied");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::optional<LedgerSyncState> state;
    (void)verdictOn([&] { state = decodeRecord<LedgerSyncState>(bytes); });
    if (!state) {
        return 0;
    }
    const LedgerData ledger = ledgerWith(*state);
    const std::string written = encodeLedger(ledger);
    const LedgerData again = decodeLedger(written);
    require(again == ledger, "what was written reads as the same state");
    require(encodeLedger(again) == written, "the same state is written in the same bytes");

    const std::string verdict = verdictOn([&] { validateReplicationState(*state); });
    require(verdictOn([&] { validateReplicationState(*again.replication); }) == verdict,
        "equal states are judged alike");
    if (verdict.empty()) {
        requireDelivered(ledger);
        requireDecided(ledger);
        requireDrained(ledger);
    }
    return 0;
}
