#include "LedgerError.h"
#include "TimeStore.h"

namespace KestryCore {

void TimeStore::prepareForUpdate(const Uuid& token, Date now)
{
    if (isDemo_) {
        return;
    }
    carryOut([&] {
        if (!now.isFinite() || now > platform_.now()) {
            throw LedgerError("Prepare the update using the current time.");
        }
        files_.claimDirectory();
        if (files_.hasHandoff()) {
            files_.removeHandoff();
        }
        checkpoint(now);
        // The handoff promises what is in the ledger, so the ledger is saved first.
        save(*data_, files_.knowsPrimary() ? Soundness::validated : Soundness::unchecked);
        files_.writeHandoff(UpdateHandoff{token, data_->active});
    });
}

bool TimeStore::consumeUpdateHandoff(const LedgerData& ledger)
{
    files_.clearHandoffLeftOver();
    if (!files_.hasHandoff()) {
        return false;
    }
    std::optional<UpdateHandoff> handoff;
    try {
        handoff = files_.readHandoff();
    } catch (const std::exception&) {
        // A damaged handoff counts as missing: the session is recovered as after a crash.
        handoff.reset();
    }
    try {
        files_.removeHandoff();
    } catch (const std::exception& failure) {
        errorMessage_.assign(std::string("The update handoff could not be consumed. The timer was "
                                         "paused to protect your time. ")
            + failureText(failure));
        return false;
    }
    return !blocked() && files_.hasSoundPrimary() && handoff && updateToken_ == handoff->token
        && ledger.active == handoff->active && ledger.active && ledger.active->runningSince;
}

} // namespace KestryCore
