#include "LedgerError.h"
#include "TimeStore.h"

namespace KestryCore {

Uuid TimeStore::addClient(const NewClient& client)
{
    const std::string name = validatedName(client.name);
    const Uuid id = platform_.newUuid();
    applyChange([&](LedgerData& working) {
        working.clients.append(Client{id, name, client.rateCents, client.colorHex,
            client.rateIsKnown, client.logoData, client.projectsEnabled});
    });
    return id;
}

void TimeStore::updateClient(const Uuid& id, const ClientChange& change)
{
    ClientChange checked = change;
    checked.name = validatedName(change.name);
    applyChange([&](LedgerData& working) { KestryCore::updateClient(working, id, checked); });
}

Uuid TimeStore::addProject(const Uuid& clientID, const ProjectValues& values)
{
    const std::string name = validatedName(values.name);
    const Uuid id = platform_.newUuid();
    applyChange([&](LedgerData& working) {
        working.projects.append(
            Project{id, clientID, name, values.rateCents, values.rateIsKnown, false});
    });
    return id;
}

void TimeStore::updateProject(const Uuid& id, const ProjectValues& values)
{
    ProjectValues checked = values;
    checked.name = validatedName(values.name);
    applyChange([&](LedgerData& working) { KestryCore::updateProject(working, id, checked); });
}

Uuid TimeStore::addEntry(const NewEntry& entry)
{
    requireAcceptableDuration(entry.duration);
    if (entry.start + entry.duration > platform_.now()) {
        throw LedgerError("Saved time cannot extend into the future.");
    }
    Uuid id;
    applyChange(
        [&](LedgerData& working) { id = KestryCore::addEntry(working, entry, platform_.newUuid); });
    return id;
}

Uuid TimeStore::addEntry(const Uuid& projectID, NewEntry entry)
{
    entry.clientID = requireProject(*data_, projectID).clientID;
    entry.projectID = projectID;
    return addEntry(entry);
}

void TimeStore::updateEntry(const Uuid& id, const EntryChange& change)
{
    requireAcceptableDuration(change.duration);
    applyChange([&](LedgerData& working) {
        KestryCore::updateEntry(working, id, change, platform_.now());
    });
}

void TimeStore::deleteEntry(const Uuid& id)
{
    applyChange([&](LedgerData& working) { working.entries.remove(id); });
}

std::optional<Project> TimeStore::project(const Uuid& id) const
{
    const Project* found = data_->projects.find(id);
    return found != nullptr ? std::optional(*found) : std::nullopt;
}

std::optional<Client> TimeStore::client(const Project& project) const
{
    const Client* found = data_->clients.find(project.clientID);
    return found != nullptr ? std::optional(*found) : std::nullopt;
}

std::optional<Project> TimeStore::unassignedProject(const Uuid& clientID) const
{
    const Project* found = KestryCore::unassignedProject(*data_, clientID);
    return found != nullptr ? std::optional(*found) : std::nullopt;
}

} // namespace KestryCore
