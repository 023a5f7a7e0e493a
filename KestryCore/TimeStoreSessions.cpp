#include "LedgerError.h"
#include "TimeStore.h"

namespace KestryCore {

/// Measures the clock from here on while a session runs.
void TimeStore::watchClock(const ClockJumpWatch::Reading& reading)
{
    if (data_->active && data_->active->runningSince) {
        clockWatch_.begin(reading);
    } else {
        clockWatch_.end();
    }
}

/// How the clock has jumped ahead in a running session, as far as the session's own dates allow.
std::optional<ClockJump> TimeStore::foundJump(const ClockJumpWatch::Reading& reading) const
{
    if (!data_->active || !data_->active->runningSince) {
        return std::nullopt;
    }
    auto jump = clockWatch_.jump(reading);
    if (jump && jump->agreed < data_->active->checkpointAt) {
        jump->agreed = data_->active->checkpointAt; // the clock went back before
    }
    return jump;
}

void TimeStore::pauseAfter(const ClockJump& jump)
{
    applyChange([&](LedgerData& working) { pauseSession(working, jump.agreed); });
    clockJump_.assign(jump);
}

Uuid TimeStore::start(
    const Uuid& clientID, const std::optional<Uuid>& projectID, const std::string& title, Date at)
{
    const auto reading = clockWatch_.read();
    Uuid id;
    applyChange([&](LedgerData& working) {
        id = startSession(working, SessionStart{clientID, projectID, title, at}, platform_.newUuid);
    });
    watchClock(reading);
    return id;
}

Uuid TimeStore::start(const Uuid& projectID, const std::string& title, Date at)
{
    const auto reading = clockWatch_.read();
    Uuid id;
    applyChange([&](LedgerData& working) {
        const Uuid clientID = requireProject(working, projectID, Audience::caller).clientID;
        id = startSession(working, SessionStart{clientID, projectID, title, at}, platform_.newUuid);
    });
    watchClock(reading);
    return id;
}

void TimeStore::pause(Date at)
{
    const auto reading = clockWatch_.read();
    if (const auto jump = foundJump(reading); jump && at > jump->agreed) {
        pauseAfter(*jump);
    } else {
        applyChange([&](LedgerData& working) { pauseSession(working, at); });
    }
    watchClock(reading);
}

void TimeStore::resume(Date at)
{
    const auto reading = clockWatch_.read();
    applyChange([&](LedgerData& working) {
        if (working.active) {
            (void)requireProject(working, working.active->projectID, Audience::caller);
        }
        resumeSession(working, at);
    });
    watchClock(reading);
}

Uuid TimeStore::stop(Date at)
{
    const auto reading = clockWatch_.read();
    auto jump = foundJump(reading);
    if (jump && !(at > jump->agreed)) {
        jump.reset();
    }
    Uuid id;
    applyChange([&](LedgerData& working) { id = stopSession(working, jump ? jump->agreed : at); });
    watchClock(reading);
    if (jump) {
        jump->hasEndedIt = true;
        clockJump_.assign(jump);
    }
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
    applyChange([&](LedgerData& working) {
        requirePastInterval(gap, platform_.now());
        restoreGap(working, gap);
    });
}

double TimeStore::elapsed(Date at) const
{
    return data_->active ? data_->active->elapsed(countedUntil(at)) : 0.0;
}

Date TimeStore::countedUntil(Date at) const
{
    const auto jump = foundJump(clockWatch_.read());
    return jump && at > jump->agreed ? jump->agreed : at;
}

void TimeStore::checkpoint(Date now)
{
    if (!data_->active || !data_->active->runningSince) {
        return;
    }
    const auto reading = clockWatch_.read();
    if (const auto jump = foundJump(reading)) {
        pauseAfter(*jump);
    } else {
        applyChange([&](LedgerData& working) { checkpointSession(working, now); });
    }
    watchClock(reading);
}

} // namespace KestryCore
