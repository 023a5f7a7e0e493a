#include "LedgerError.h"
#include "LedgerValidation.h"
#include "RestoreMerge.h"
#include "TimeStore.h"

namespace KestryCore {

void TimeStore::restoreBackup()
{
    try {
        restore();
    } catch (const std::exception& failure) {
        const std::string text = failureText(failure);
        const LedgerError inContext(
            "Backup restoration failed. Your existing files were preserved. " + text);
        tell(inContext);
        if (isForCaller_) {
            throw inContext;
        }
        if (text == failure.what()) {
            throw;
        }
        throw LedgerError(text);
    }
}

void TimeStore::restore()
{
    const bool wasUnread = canOpenAgain();
    openAgain();
    if (unopened_ == Unopened::forTheMoment) {
        throw LedgerError(openingFailure_);
    }
    if (wasUnread && !blocked()) {
        throw LedgerError("The ledger can be read again, and there is nothing to restore.");
    }
    if (!*recoveryAvailable() || isDemo_) {
        throw LedgerError("No valid backup is available to restore.");
    }
    LedgerData restored = files_.readBackup();
    restored.replication = data_->replication;
    mergePendingIntoRestored(*data_, restored);
    const bool foundRunning = recoverSession(restored);
    recordChange(*data_, restored, ChangeTracking{.trackDeletions = false, .forceAll = true});
    validate(restored);
    files_.restore(restored, platform_.now(), platform_.newUuid);
    data_.assign(std::move(restored));
    recoveredSession_.assign(foundRunning);
    recoveryAvailable_.assign(false);
    errorMessage_.assign(std::nullopt);
}

} // namespace KestryCore
