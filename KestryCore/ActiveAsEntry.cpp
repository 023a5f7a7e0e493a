#include "ActiveAsEntry.h"

namespace KestryCore {

TimeEntry closedEntry(const ActiveSession& session)
{
    TimeEntry entry;
    entry.id = session.id;
    entry.projectID = session.projectID;
    entry.title = session.title;
    entry.hourlyRateCents = session.hourlyRateCents;
    entry.spans = session.spans;
    entry.isBillable = session.isBillable;
    entry.rateIsKnown = session.rateIsKnown;
    entry.sourceID = session.sourceID;
    return entry;
}

TimeEntry countedEntry(const ActiveSession& session, Date now)
{
    TimeEntry entry = closedEntry(session);
    if (session.runningSince && now > *session.runningSince) {
        entry.spans.push_back({*session.runningSince, now});
    }
    return entry;
}

TimeEntry listedEntry(const ActiveSession& session, Date now)
{
    TimeEntry entry = closedEntry(session);
    if (session.runningSince) {
        const Date start = *session.runningSince;
        entry.spans.push_back({start, now > start ? now : start});
    }
    return entry;
}

} // namespace KestryCore
