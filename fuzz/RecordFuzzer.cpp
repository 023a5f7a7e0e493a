#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "LedgerCoding.h"
#include "LedgerValidation.h"
#include "RemoteChanges.h"
#include "SmallLedger.h"
#include "SyncRecords.h"
#include "Verdict.h"

// Any bytes under the name of a replicated record either are refused in words or are a record.
//
// - Written and read again it is the same record, judged the same.
// - A valid one can be taken into a sound ledger, and leaves it sound but for one rule that no
//   record can answer for alone: two sessions imported from the same place.
// - Taken in once more it changes nothing.

namespace {

using namespace KestryCore;

constexpr const char* sameOrigin = "Duplicate or empty imported source identifiers.";

Uuid nextUuid()
{
    return smallUuid(7);
}

LedgerData afterTaking(LedgerData ledger, const SyncRecord& record)
{
    applyRemoteSync(ledger, {record}, {{record.recordID, "fields"}}, "cursor", nextUuid);
    return ledger;
}

/// Whether the ledger has taken notice of the record, in whatever way.
bool knows(const LedgerSyncState& state, const SyncRecord& record)
{
    const auto base = state.baseRevisions.find(record.recordID);
    const SyncConflict* const conflict = state.conflicts.find(record.recordID);
    return state.staged.contains(record.recordID)
        || (base != state.baseRevisions.end() && base->second == record.revision)
        || (conflict != nullptr && conflict->remote == record);
}

void requireTakenIn(const SyncRecord& record)
{
    const LedgerData ledger = smallLedger();
    const LedgerData after = afterTaking(ledger, record);
    const std::string verdict = verdictOn([&] { validate(after); });
    require(verdict.empty() || verdict == sameOrigin, "the ledger stays sound");
    require(knows(*after.replication, record), "the record is applied, waits or is a conflict");
    require(afterTaking(after, record) == after, "a record taken in again changes nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::optional<SyncRecord> record;
    (void)verdictOn([&] { record = decodeRecord<SyncRecord>(bytes); });
    if (!record) {
        return 0;
    }
    const SyncRecord again = decodeRecord<SyncRecord>(canonicalJson(*record));
    require(again == *record, "what was written reads as the same record");
    const std::string verdict = verdictOn([&] { validateRecord(*record); });
    require(verdictOn([&] { validateRecord(again); }) == verdict, "equal records are judged alike");
    if (verdict.empty()) {
        requireTakenIn(*record);
    }
    return 0;
}
