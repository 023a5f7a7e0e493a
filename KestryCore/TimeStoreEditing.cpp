#include "LedgerError.h"
#include "TimeStore.h"

namespace KestryCore {

Uuid TimeStore::addClient(const NewClient& client)
{
    Uuid id;
    applyChange([&](LedgerData& working) {
        const std::string name = validatedName(client.name);
        id = platform_.newUuid();
        working.clients.append(Client{id, name, client.rateCents, client.colorHex,
            client.rateIsKnown, client.logoData, client.projectsEnabled});
    });
    return id;
}

void TimeStore::updateClient(const Uuid& id, const ClientChange& change)
{
    applyChange([&](LedgerData& working) {
        ClientChange checked = change;
        checked.name = validatedName(change.name);
        KestryCore::updateClient(working, id, checked);
    });
}

Uuid TimeStore::addProject(const Uuid& clientID, const ProjectValues& values)
{
    Uuid id;
    applyChange([&](LedgerData& working) {
        const std::string name = validatedName(values.name);
        id = platform_.newUuid();
        working.projects.append(
            Project{id, clientID, name, values.rateCents, values.rateIsKnown, false});
    });
    return id;
}

void TimeStore::updateProject(const Uuid& id, const ProjectValues& values)
{
    applyChange([&](LedgerData& working) {
        ProjectValues checked = values;
        checked.name = validatedName(values.name);
        KestryCore::updateProject(working, id, checked);
    });
}

Uuid TimeStore::addEntry(const NewEntry& entry)
{
    Uuid id;
    applyChange([&](LedgerData& working) { id = addPastEntry(working, entry); });
    return id;
}

Uuid TimeStore::addEntry(const Uuid& projectID, NewEntry entry)
{
    Uuid id;
    applyChange([&](LedgerData& working) {
        entry.clientID = requireProject(working, projectID, Audience::caller).clientID;
        entry.projectID = projectID;
        id = addPastEntry(working, entry);
    });
    return id;
}

Uuid TimeStore::addPastEntry(LedgerData& working, const NewEntry& entry) const
{
    requireAcceptableDuration(entry.duration);
    if (entry.start + entry.duration > platform_.now()) {
        throw LedgerError("Saved time cannot extend into the future.", Audience::caller);
    }
    return KestryCore::addEntry(working, entry, platform_.newUuid);
}

void TimeStore::updateEntry(const Uuid& id, const EntryChange& change)
{
    applyChange([&](LedgerData& working) {
        requireAcceptableDuration(change.duration);
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
