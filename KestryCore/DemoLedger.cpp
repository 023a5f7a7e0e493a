#include "DemoLedger.h"

#include <array>
#include <vector>

namespace KestryCore {

namespace {

struct DemoClient {
    const char* name;
    Cents hourlyRateCents;
    const char* colorHex;
};

struct DemoProject {
    const char* name;
    std::size_t client;
};

constexpr std::array demoClients{DemoClient{"Aster Studio", 15000, "B7A5FF"},
    DemoClient{"Linear Labs", 17500, "A2D8C0"}, DemoClient{"Northstar", 12500, "F0BB85"}};

constexpr std::array demoProjects{DemoProject{"Brand direction", 0},
    DemoProject{"Product design", 1}, DemoProject{"Strategy", 2}, DemoProject{"Website", 0}};

constexpr std::array demoTitles{"Design exploration", "Client workshop", "Research & direction"};

constexpr double startOfWork = 9 * 3600.0;
constexpr double shortestSession = 8100.0;

TimeEntry demoEntry(const Uuid& id, const Project& project, const char* title, TimeSpan span)
{
    TimeEntry entry;
    entry.id = id;
    entry.projectID = project.id;
    entry.title = title;
    entry.hourlyRateCents = project.hourlyRateCents;
    entry.spans = {span};
    return entry;
}

/// The session of the day that is `index` days after the first of the month.
TimeSpan demoSpan(Date day, int index, Date now)
{
    const Date start = day + startOfWork;
    const Date end = start + (shortestSession + 3600.0 * (index % 4));
    return {start, end < now ? end : now};
}

} // namespace

LedgerData demoLedger(Date now, const ZoneCalendar& calendar, const UuidSource& newUuid)
{
    LedgerData ledger;
    std::vector<Client> clients;
    for (const DemoClient& client : demoClients) {
        clients.push_back(Client{
            newUuid(), client.name, client.hourlyRateCents, client.colorHex, true, {}, true});
        ledger.clients.append(clients.back());
    }
    std::vector<Project> projects;
    for (const DemoProject& project : demoProjects) {
        const Client& client = clients[project.client];
        projects.push_back(
            Project{newUuid(), client.id, project.name, client.hourlyRateCents, true, false});
        ledger.projects.append(projects.back());
    }
    const CalendarDay today = calendar.day(now);
    for (int index = 0; index < today.day; ++index) {
        const Date day = calendar.startOfDay(CalendarDay{today.year, today.month, index + 1});
        const TimeSpan span = demoSpan(day, index, now);
        const auto position = static_cast<std::size_t>(index);
        if (!calendar.isWeekend(day) && span.end > span.start) {
            ledger.entries.append(demoEntry(newUuid(), projects[position % demoProjects.size()],
                demoTitles[position % demoTitles.size()], span));
        }
    }
    return ledger;
}

} // namespace KestryCore
