#include "LedgerValidation.h"

#include "LedgerError.h"
#include "SyncRecords.h"

namespace KestryCore {

void validate(const LedgerData& ledger)
{
    withinMemory([&] {
        if (ledger.replication) {
            validateReplicationState(*ledger.replication);
        }
        validateRecords(ledger);
    });
}

void validateChange(const LedgerData& sound, const LedgerData& changed)
{
    if (changed.replication && !changed.replication.isSameAs(sound.replication)) {
        validateReplicationState(*changed.replication);
    }
    validateChangedRecords(sound, changed);
}

} // namespace KestryCore
