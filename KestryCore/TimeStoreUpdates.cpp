#include "LedgerError.h"
#include "TimeStore.h"
#include "UpdateHandoff.h"

namespace KestryCore {

std::string TimeStore::handoffPath() const
{
    return joinPath(place(), "update-handoff.json");
}

void TimeStore::prepareForUpdate(const Uuid& token, Date now)
{
    if (isDemo_) {
        return;
    }
    report([&] {
        if (!now.isFinite() || now > platform_.now()) {
            throw LedgerError("Prepare the update using the current time.");
        }
        claimDirectory();
        if (exists(platform_.files, handoffPath())) {
            durableFiles_.remove(handoffPath());
        }
        checkpoint(now);
        // The ledger is complete on the disk before the handoff names what it holds.
        save(*data_, knownPrimary_ ? Soundness::validated : Soundness::unchecked);
        durableFiles_.writePrivate(
            handoffPath(), encodeUpdateHandoff(UpdateHandoff{token, data_->active}));
    });
}

bool TimeStore::consumeUpdateHandoff(const LedgerData& ledger)
{
    durableFiles_.clear(handoffPath());
    if (!exists(platform_.files, handoffPath())) {
        return false;
    }
    std::optional<UpdateHandoff> handoff;
    try {
        handoff = decodeUpdateHandoff(readFile(platform_.files, handoffPath()));
    } catch (const std::exception&) {
        // A damaged handoff is none: the session is recovered as after a crash.
        handoff.reset();
    }
    try {
        durableFiles_.remove(handoffPath());
    } catch (const std::exception& failure) {
        errorMessage_.assign(std::string("The update handoff could not be consumed. The timer was "
                                         "paused to protect your time. ")
            + failureText(failure));
        return false;
    }
    return !blocked_ && primaryIsValid_ && handoff && updateToken_ == handoff->token
        && ledger.active == handoff->active && ledger.active && ledger.active->runningSince;
}

} // namespace KestryCore
