#include "SessionLabel.h"

#include "RecordIndex.h"

namespace KestryCore {

bool standsForItsSessions(const Project* project, const Client* client)
{
    return project != nullptr && !project->isClientDefault
        && (client == nullptr || client->projectsEnabled);
}

std::string_view sessionLabel(std::string_view title, const Project* project, const Client* client)
{
    if (!title.empty()) {
        return title;
    }
    return standsForItsSessions(project, client) ? std::string_view(project->name) : "Session";
}

std::string_view sessionLabel(const TimeEntry& entry, const RecordIndex& index)
{
    const Project* project = index.projectOf(entry);
    return sessionLabel(entry.title, project, index.clientOf(project));
}

} // namespace KestryCore
