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

void TimeStore::carryOut(const std::function<void()>& operation)
{
    try {
        operation();
    } catch (const LedgerError& failure) {
        tell(failure);
        throw;
    } catch (const std::exception& failure) {
        const LedgerError inWords(failureText(failure));
        tell(inWords);
        throw inWords;
    }
}

void TimeStore::tell(const LedgerError& failure)
{
    const bool isForUser = failure.audience() == Audience::user && !isForCaller_;
    if (isForUser || failure.audience() == Audience::everybody) {
        errorMessage_.assign(failure.what());
    }
}

void TimeStore::performForCaller(const std::function<void()>& operations)
{
    struct Scope {
        explicit Scope(bool& isForCaller) : flag(isForCaller) { flag = true; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope() { flag = false; }
        bool& flag;
    };
    const Scope scope(isForCaller_);
    operations();
}

void TimeStore::applyChange(const Change& change)
{
    carryOut([&] {
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
