#include "SessionLifecycle.h"

#include <algorithm>
#include <cassert>

#include "ActiveAsEntry.h"
#include "LedgerEditing.h"
#include "LedgerError.h"
#include "LedgerValidation.h"
#include "Text.h"

namespace KestryCore {

namespace {

void closeOpenInterval(ActiveSession& session, Date at)
{
    if (session.runningSince) {
        session.spans.push_back(TimeSpan{*session.runningSince, at});
        session.runningSince.reset();
    }
}

bool holdsExactly(const std::vector<TimeSpan>& spans, const TrackingGap& gap)
{
    return std::ranges::find(spans, TimeSpan{gap.start, gap.end}) != spans.end();
}

/// Adds an interval that no span overlaps. Spans that start together keep their order: an empty
/// span at the start of the interval must stay before it.
void insertInterval(std::vector<TimeSpan>& spans, const TrackingGap& gap)
{
    for (const TimeSpan& span : spans) {
        refuseUnless(!(gap.start < span.end && gap.end > span.start),
            "The missing interval overlaps time already tracked.");
    }
    spans.push_back(TimeSpan{gap.start, gap.end});
    std::ranges::stable_sort(spans, {}, [](const TimeSpan& span) { return span.start.seconds; });
}

void restoreActiveGap(ActiveSession& session, const TrackingGap& gap)
{
    if (!holdsExactly(session.spans, gap)) {
        std::vector<TimeSpan> spans = session.spans;
        insertInterval(spans, gap);
        refuseUnless(!session.runningSince || !(gap.end > *session.runningSince),
            "The missing interval overlaps time already tracked.");
        session.spans = std::move(spans);
    }
    session.checkpointAt =
        std::max(gap.end, session.checkpointAt, [](Date left, Date right) { return left < right; });
}

void restoreEntryGap(TimeEntry& entry, const TrackingGap& gap)
{
    if (holdsExactly(entry.spans, gap)) {
        return;
    }
    insertInterval(entry.spans, gap);
    if (entry.recordedDuration) {
        entry.recordedDuration = *entry.recordedDuration + (gap.end - gap.start);
    }
}

} // namespace

Uuid startSession(LedgerData& ledger, const SessionStart& start, const UuidSource& newUuid)
{
    refuseUnless(!ledger.active, "Stop the current session first.");
    const Project project = resolveProject(ledger, start.clientID, start.projectID, newUuid);
    const Rate rate = effectiveRate(ledger, project);
    ActiveSession session;
    session.id = newUuid();
    session.projectID = project.id;
    session.title = std::string(trimmed(start.title));
    session.hourlyRateCents = rate.hourlyRateCents;
    session.rateIsKnown = rate.isKnown;
    session.runningSince = start.at;
    session.checkpointAt = start.at;
    ledger.active = session;
    return session.id;
}

void pauseSession(LedgerData& ledger, Date at)
{
    refuseUnless(ledger.active && ledger.active->runningSince, "No running session to pause.");
    ActiveSession& session = *ledger.active;
    refuseUnless(!(at < session.checkpointAt), "The clock moved backwards. Choose a later time.");
    closeOpenInterval(session, at);
    session.checkpointAt = at;
}

void resumeSession(LedgerData& ledger, Date at)
{
    refuseUnless(ledger.active.has_value(), "No session to resume.", Audience::caller);
    ActiveSession& session = *ledger.active;
    refuseUnless(
        session.isPaused() && !(at < session.checkpointAt), "Session cannot resume at this time.");
    session.runningSince = at;
    session.checkpointAt = at;
}

Uuid stopSession(LedgerData& ledger, Date at)
{
    refuseUnless(ledger.active.has_value(), "No session to stop.");
    ActiveSession session = *ledger.active;
    refuseUnless(!(at < session.checkpointAt), "The stop time is before the last checkpoint.");
    closeOpenInterval(session, at);
    if (!session.spans.empty()) {
        ledger.entries.append(closedEntry(session));
    }
    ledger.active.reset();
    return session.id;
}

void checkpointSession(LedgerData& ledger, Date now)
{
    assert(ledger.active);
    refuseUnless(!(now < ledger.active->checkpointAt), "Checkpoint cannot move backwards.");
    ledger.active->checkpointAt = now;
}

void updateSession(LedgerData& ledger, const Uuid& id, const std::string& title,
    const std::optional<Uuid>& projectID)
{
    refuseUnless(ledger.active && ledger.active->id == id, "This session is no longer active.");
    ActiveSession& session = *ledger.active;
    if (projectID && *projectID != session.projectID) {
        checkProjectMove(ledger, *projectID, session.projectID);
        session.projectID = *projectID;
    }
    session.title = std::string(trimmed(title));
}

void requirePastInterval(const TrackingGap& gap, Date now)
{
    refuseUnless(gap.start.isFinite() && gap.end.isFinite() && !(gap.start < earliestDate)
            && !(gap.end > now) && gap.end > gap.start,
        "The missing interval must be a valid past time range.", Audience::caller);
}

void restoreGap(LedgerData& ledger, const TrackingGap& gap)
{
    if (ledger.active && ledger.active->id == gap.sessionID) {
        restoreActiveGap(*ledger.active, gap);
        return;
    }
    const bool found = ledger.entries.modify(
        gap.sessionID, [&](TimeEntry& entry) { restoreEntryGap(entry, gap); });
    refuseUnless(found, "Session not found.");
}

bool recoverSession(LedgerData& ledger)
{
    if (!ledger.active || !ledger.active->runningSince) {
        return false;
    }
    closeOpenInterval(*ledger.active, ledger.active->checkpointAt);
    return true;
}

} // namespace KestryCore
