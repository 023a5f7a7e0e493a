#include "LedgerError.h"
#include "TimeStore.h"

namespace KestryCore {

Uuid TimeStore::start(
    const Uuid& clientID, const std::optional<Uuid>& projectID, const std::string& title, Date at)
{
    Uuid id;
    applyChange([&](LedgerData& working) {
        id = startSession(working, SessionStart{clientID, projectID, title, at}, platform_.newUuid);
    });
    return id;
}

Uuid TimeStore::start(const Uuid& projectID, const std::string& title, Date at)
{
    const Uuid clientID = requireProject(*data_, projectID).clientID;
    return start(clientID, projectID, title, at);
}

void TimeStore::pause(Date at)
{
    applyChange([&](LedgerData& working) { pauseSession(working, at); });
}

void TimeStore::resume(Date at)
{
    if (!data_->active) {
        throw LedgerError("No session to resume.");
    }
    (void)requireProject(*data_, data_->active->projectID);
    applyChange([&](LedgerData& working) { resumeSession(working, at); });
}

Uuid TimeStore::stop(Date at)
{
    Uuid id;
    applyChange([&](LedgerData& working) { id = stopSession(working, at); });
    return id;
}

void TimeStore::renameActiveSession(const Uuid& id, const std::string& title)
{
    updateActiveSession(id, title, std::nullopt);
}

void TimeStore::updateActiveSession(
    const Uuid& id, const std::string& title, const std::optional<Uuid>& projectID)
{
    applyChange([&](LedgerData& working) { updateSession(working, id, title, projectID); });
}

void TimeStore::restoreTrackingGap(const Uuid& sessionID, Date start, Date end)
{
    const TrackingGap gap{sessionID, start, end};
    requirePastInterval(gap, platform_.now());
    applyChange([&](LedgerData& working) { restoreGap(working, gap); });
}

double TimeStore::elapsed(Date at) const
{
    return data_->active ? data_->active->elapsed(at) : 0.0;
}

void TimeStore::checkpoint(Date now)
{
    if (data_->active && data_->active->runningSince) {
        applyChange([&](LedgerData& working) { checkpointSession(working, now); });
    }
}

} // namespace KestryCore
