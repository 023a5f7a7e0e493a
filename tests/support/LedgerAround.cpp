#include "LedgerAround.h"

#include <array>

#include "SampleLedger.h"

namespace KestryCore {

namespace {

constexpr double hour = 3600.0;
constexpr double day = 24 * hour;

} // namespace

LedgerData LedgerAround::make()
{
    LedgerData ledger;
    for (unsigned number = 1; number <= clientCount; ++number) {
        ledger.clients.append(Sample::client(number));
        for (const unsigned projectNumber : {number, number + clientCount}) {
            Project project = Sample::project(projectNumber);
            project.clientID = Sample::clientID(number);
            ledger.projects.append(project);
        }
    }
    for (unsigned number = 1; number <= 12; ++number) {
        ledger.entries.append(entry(number));
    }
    if (chance()) {
        ledger.active = activeSession();
    }
    return ledger;
}

double LedgerAround::distance()
{
    constexpr std::array<double, 4> reaches{2 * hour, 2 * day, 2 * day, 40 * day};
    const double reach = reaches.at(choices_.below(reaches.size()));
    return choices_.below(8) == 0 ? 0.0 : evenSeconds(2 * reach) - reach;
}

double LedgerAround::evenSeconds(double most)
{
    return 2.0 * static_cast<double>(choices_.below(static_cast<std::size_t>(most / 2) + 1));
}

/// One to three spans, touching or apart, some without length.
std::vector<TimeSpan> LedgerAround::spans()
{
    std::vector<TimeSpan> result;
    Date last = moment_ + distance();
    for (std::size_t count = 1 + choices_.below(3); count > 0; --count) {
        const Date start = chance() ? last : last + evenSeconds(6 * hour);
        last = choices_.below(6) == 0 ? start : start + evenSeconds(chance() ? day : 3 * day);
        result.push_back({start, last});
    }
    return result;
}

/// One more than there are projects: a session of that one belongs to nobody.
Uuid LedgerAround::project()
{
    return Sample::projectID(1 + static_cast<unsigned>(choices_.below(2 * clientCount + 1)));
}

TimeEntry LedgerAround::entry(unsigned number)
{
    TimeEntry entry = Sample::entry(number);
    entry.projectID = project();
    entry.hourlyRateCents = static_cast<Cents>(choices_.below(30'000));
    entry.isBillable = choices_.below(4) != 0;
    entry.rateIsKnown = choices_.below(4) != 0;
    entry.spans = spans();
    if (choices_.below(4) == 0) {
        entry.recordedDuration = totalDuration(entry.spans) * (chance() ? 0.5 : 2.0);
    }
    return entry;
}

ActiveSession LedgerAround::activeSession()
{
    ActiveSession session = Sample::pausedSession();
    session.projectID = project();
    session.spans = chance() ? spans() : std::vector<TimeSpan>();
    if (chance()) {
        const Date last = session.spans.empty() ? moment_ + distance() : session.spans.back().end;
        session.runningSince = last + evenSeconds(6 * hour);
    }
    return session;
}

} // namespace KestryCore
