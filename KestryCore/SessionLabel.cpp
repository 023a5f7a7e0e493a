#include "SessionLabel.h"

#include "RecordIndex.h"

namespace KestryCore {

namespace {

bool standsForItsSessions(const Project* project, const Client* client)
{
    return project != nullptr && !project->isClientDefault
        && (client == nullptr || client->projectsEnabled);
}

} // namespace

std::string_view sessionLabel(const TimeEntry& entry, const RecordIndex& index)
{
    if (!entry.title.empty()) {
        return entry.title;
    }
    const Project* project = index.projectOf(entry);
    return standsForItsSessions(project, index.clientOf(project)) ? std::string_view(project->name)
                                                                  : "Session";
}

} // namespace KestryCore
