#include "TimeStore.h"

#include "LedgerError.h"
#include "LedgerValidation.h"

namespace KestryCore {

const Observable<bool>& TimeStore::recoveryAvailable() const
{
    // With both files unreadable at the start nothing is known that a restore could keep.
    const bool wasBlockedLater = blocked() && files_.hasSoundPrimary() && !canOpenAgain();
    if (wasBlockedLater && !*recoveryAvailable_ && files_.hasSoundBackup()) {
        recoveryAvailable_.assign(true);
    }
    return recoveryAvailable_;
}

void TimeStore::block()
{
    files_.block();
    recoveryAvailable_.assign(files_.hasSoundBackup());
}

void TimeStore::recordChange(
    const LedgerData& before, LedgerData& after, ChangeTracking tracking) const
{
    recordLedgerChange(before, after, tracking, platform_.newUuid);
}

void TimeStore::report(const std::function<void()>& action)
{
    try {
        action();
    } catch (const LedgerError& failure) {
        tell(failure.what());
        throw;
    } catch (const std::exception& failure) {
        const LedgerError inWords(failureText(failure));
        tell(inWords.what());
        throw inWords;
    }
}

void TimeStore::tell(const std::string& failure)
{
    if (tellsCaller_) {
        callersFailure_ = failure;
    } else {
        errorMessage_.assign(failure);
    }
}

void TimeStore::performForCaller(const std::function<void()>& operations)
{
    const bool wasBlocked = blocked();
    tellsCaller_ = true;
    callersFailure_.reset();
    try {
        operations();
        tellsCaller_ = false;
    } catch (const std::exception&) {
        tellsCaller_ = false;
        if (!callersFailure_) {
            throw;
        }
        if (blocked() && !wasBlocked) {
            errorMessage_.assign(*callersFailure_);
        }
        throw LedgerError(*callersFailure_);
    }
}

void TimeStore::applyChange(const Change& change)
{
    report([&] {
        LedgerData working = *data_;
        change(working);
        recordChange(*data_, working, ChangeTracking{.trackDeletions = true, .forceAll = false});
        commit(std::move(working));
    });
}

void TimeStore::commit(LedgerData changed)
{
    if (files_.knowsPrimary()) {
        validateChange(*data_, changed);
    } else {
        validate(changed);
    }
    save(changed, Soundness::validated);
    data_.assign(std::move(changed));
}

void TimeStore::requireSaving() const
{
    if (unopened_ == Unopened::forTheMoment) {
        throw LedgerError(openingFailure_);
    }
    files_.requireUnblocked();
}

void TimeStore::save(const LedgerData& ledger, Soundness soundness)
{
    requireSaving();
    if (isDemo_) {
        return;
    }
    try {
        files_.save(ledger, soundness);
    } catch (const UnreadablePrimary&) {
        block();
        throw;
    }
}

} // namespace KestryCore
