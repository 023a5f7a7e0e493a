#include "LedgerEditing.h"

#include "LedgerValidation.h"
#include "Text.h"

namespace KestryCore {

namespace {

const Client& requireClient(const LedgerData& ledger, const Uuid& id)
{
    const Client* client = ledger.clients.find(id);
    if (client == nullptr) {
        throw LedgerError("Client not found.");
    }
    return *client;
}

template <class Matches>
const Project* firstProject(const LedgerData& ledger, Matches matches)
{
    for (const Project& project : ledger.projects) {
        if (matches(project)) {
            return &project;
        }
    }
    return nullptr;
}

Project appended(LedgerData& ledger, Project project)
{
    ledger.projects.append(project);
    return project;
}

Project namedProjectOf(LedgerData& ledger, const Client& client,
    const std::optional<Uuid>& projectID, const UuidSource& newUuid)
{
    if (projectID) {
        const Project* chosen = firstProject(ledger, [&](const Project& project) {
            return project.id == *projectID && project.clientID == client.id
                && !project.isClientDefault;
        });
        if (chosen == nullptr) {
            throw LedgerError("Choose a project for this client.");
        }
        return *chosen;
    }
    if (const Project* project = unassignedProject(ledger, client.id)) {
        return *project;
    }
    return appended(
        ledger, Project{newUuid(), client.id, std::string(unassignedProjectName), 0, false, false});
}

Project anyProjectOf(LedgerData& ledger, const Client& client, const std::optional<Uuid>& projectID,
    const UuidSource& newUuid)
{
    if (projectID) {
        const Project* chosen = firstProject(ledger, [&](const Project& project) {
            return project.id == *projectID && project.clientID == client.id;
        });
        if (chosen == nullptr) {
            throw LedgerError("Project does not belong to this client.");
        }
        return *chosen;
    }
    const Project* hidden = firstProject(ledger, [&](const Project& project) {
        return project.clientID == client.id && project.isClientDefault;
    });
    if (hidden != nullptr) {
        return *hidden;
    }
    return appended(ledger,
        Project{newUuid(), client.id, std::string(clientDefaultProjectName), client.hourlyRateCents,
            client.rateIsKnown, true});
}

void changeTimes(TimeEntry& entry, Date start, double duration)
{
    if (duration != entry.duration()) {
        entry.spans = {TimeSpan{start, start + duration}};
        entry.recordedDuration.reset();
        return;
    }
    const double shift = start - entry.startedAt();
    if (shift == 0.0) {
        return;
    }
    for (TimeSpan& span : entry.spans) {
        span.start = span.start + shift;
        span.end = span.end + shift;
    }
}

} // namespace

std::string validatedName(std::string_view name)
{
    const std::string_view result = trimmed(name);
    if (result.empty()) {
        throw LedgerError("Enter a name.", Audience::caller);
    }
    return std::string(result);
}

const Project* unassignedProject(const LedgerData& ledger, const Uuid& clientID)
{
    return firstProject(ledger, [&](const Project& project) {
        return project.clientID == clientID && !project.isClientDefault
            && equalsIgnoringCase(trimmed(project.name), unassignedProjectName);
    });
}

Project resolveProject(LedgerData& ledger, const Uuid& clientID,
    const std::optional<Uuid>& projectID, const UuidSource& newUuid)
{
    const Client client = requireClient(ledger, clientID);
    return client.projectsEnabled ? namedProjectOf(ledger, client, projectID, newUuid)
                                  : anyProjectOf(ledger, client, projectID, newUuid);
}

Rate effectiveRate(const LedgerData& ledger, const Project& project)
{
    const Client* client = ledger.clients.find(project.clientID);
    if (client != nullptr && !client->projectsEnabled) {
        return {client->hourlyRateCents, client->rateIsKnown};
    }
    return {project.hourlyRateCents, project.rateIsKnown};
}

const Project& requireProject(const LedgerData& ledger, const Uuid& id, Audience audience)
{
    const Project* project = ledger.projects.find(id);
    if (project == nullptr) {
        throw LedgerError("Project no longer exists.", audience);
    }
    return *project;
}

void checkProjectMove(const LedgerData& ledger, const Uuid& newProject, const Uuid& oldProject)
{
    const Project& target = requireProject(ledger, newProject);
    const Project* source = ledger.projects.find(oldProject);
    const Client* client = ledger.clients.find(target.clientID);
    const bool allowed = source != nullptr && source->clientID == target.clientID
        && client != nullptr && client->projectsEnabled && !target.isClientDefault;
    if (!allowed) {
        throw LedgerError("Choose a project from the same client with projects enabled.");
    }
}

void requireAcceptableDuration(double seconds)
{
    if (!isAcceptableDuration(seconds)) {
        throw LedgerError(
            "A session must contain between 0 and 744 hours (31 days) of work.", Audience::caller);
    }
}

void updateClient(LedgerData& ledger, const Uuid& id, const ClientChange& change)
{
    const bool found = ledger.clients.modify(id, [&](Client& client) {
        client.projectsEnabled = change.projectsEnabled.value_or(client.projectsEnabled);
        if (change.logo.replaces) {
            client.logoData = change.logo.logoData;
        }
        client.name = change.name;
        client.hourlyRateCents = change.rateCents;
        client.colorHex = change.colorHex;
        client.rateIsKnown = change.rateIsKnown;
    });
    if (!found) {
        throw LedgerError("Client not found.");
    }
}

void updateProject(LedgerData& ledger, const Uuid& id, const ProjectValues& values)
{
    const bool found = ledger.projects.modify(id, [&](Project& project) {
        project.name = values.name;
        project.hourlyRateCents = values.rateCents;
        project.rateIsKnown = values.rateIsKnown;
    });
    if (!found) {
        throw LedgerError("Project not found.");
    }
}

Uuid addEntry(LedgerData& ledger, const NewEntry& entry, const UuidSource& newUuid)
{
    const Project project = resolveProject(ledger, entry.clientID, entry.projectID, newUuid);
    const Rate rate = effectiveRate(ledger, project);
    TimeEntry added;
    added.id = newUuid();
    added.projectID = project.id;
    added.title = entry.title;
    added.hourlyRateCents = rate.hourlyRateCents;
    added.rateIsKnown = rate.isKnown;
    added.spans = {TimeSpan{entry.start, entry.start + entry.duration}};
    added.isBillable = entry.isBillable;
    ledger.entries.append(added);
    return added.id;
}

void updateEntry(LedgerData& ledger, const Uuid& id, const EntryChange& change, Date now)
{
    const bool found = ledger.entries.modify(id, [&](TimeEntry& entry) {
        if (change.projectID && *change.projectID != entry.projectID) {
            checkProjectMove(ledger, *change.projectID, entry.projectID);
            entry.projectID = *change.projectID;
        }
        changeTimes(entry, change.start, change.duration);
        if (entry.endedAt() > now) {
            throw LedgerError("Saved time cannot extend into the future.");
        }
        entry.title = change.title;
        entry.isBillable = change.isBillable.value_or(entry.isBillable);
        if (change.rateCents) {
            entry.hourlyRateCents = *change.rateCents;
            entry.rateIsKnown = true;
        }
    });
    if (!found) {
        throw LedgerError("Entry not found.");
    }
}

} // namespace KestryCore
