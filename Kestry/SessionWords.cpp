#include "SessionWords.h"

#include <algorithm>
#include <cmath>

#include "SessionLabel.h"
#include "SessionValue.h"

namespace Kestry {

using KestryCore::Client;
using KestryCore::Project;

namespace {

std::string detail(const Project* project, const Client* client, const char* between)
{
    const std::string clientName = client ? client->name : "Client";
    const bool isHidden = project && project->isClientDefault;
    if (isHidden || (client && !client->projectsEnabled)) {
        return clientName;
    }
    return clientName + between + (project ? project->name : "Project");
}

std::string counted(double count, const char* unit)
{
    return std::to_string(static_cast<long long>(count)) + ' ' + unit + (count == 1.0 ? "" : "s");
}

} // namespace

std::string sessionDetail(const Project* project, const Client* client)
{
    return detail(project, client, " · ");
}

std::string spokenSessionDetail(const Project* project, const Client* client)
{
    return detail(project, client, ", ");
}

std::string spokenHoursAndMinutes(double seconds)
{
    constexpr double most = 1e15; // beyond it lists show a dash
    if (!(std::abs(seconds) < most)) {
        return "unknown length";
    }
    const double minutes = std::floor(std::max(seconds, 0.0) / 60.0);
    const double hours = std::floor(minutes / 60.0);
    const double rest = minutes - 60.0 * hours;
    if (hours == 0.0) {
        return counted(rest, "minute");
    }
    return counted(hours, "hour") + (rest == 0.0 ? "" : " " + counted(rest, "minute"));
}

std::string spokenSession(const KestryCore::TimeEntry& entry, const KestryCore::RecordIndex& index,
    const KestryCore::DayText& days, const KestryCore::MoneyText& money)
{
    const Project* project = index.projectOf(entry);
    const Client* client = index.clientOf(project);
    std::string words(KestryCore::sessionLabel(entry.title, project, client));
    words += ", " + spokenSessionDetail(project, client);
    words += ", " + days.longDay(entry.startedAt());
    words += ", " + spokenHoursAndMinutes(entry.duration());
    return words + ", " + KestryCore::valueText(entry, money);
}

} // namespace Kestry
