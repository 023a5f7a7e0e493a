#include "RecordCommands.h"

#include "Instants.h"
#include "LedgerError.h"
#include "RecordLookup.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::Client;
using KestryCore::ClientChange;
using KestryCore::ClientLogoChange;
using KestryCore::LedgerData;
using KestryCore::LedgerError;
using KestryCore::Project;
using KestryCore::Rate;
using KestryCore::TimeEntry;
using KestryCore::TimeStore;
using KestryCore::Uuid;

namespace {

std::string inQuotes(const std::string& name)
{
    return "\"" + name + "\"";
}

ClientLogoChange logoChange(const ClientEditCommand& command)
{
    return command.logo || command.removesLogo ? ClientLogoChange::replace(command.logo)
                                               : ClientLogoChange::unchanged();
}

/// The client of a session's project: names of projects are looked for there first.
std::optional<Uuid> clientOf(const LedgerData& ledger, const Uuid& projectID)
{
    const Project* project = ledger.projects.find(projectID);
    return project != nullptr ? std::optional(project->clientID) : std::nullopt;
}

} // namespace

CommandAnswer run(const ClientAddCommand& command, TimeStore& store, const CommandContext&)
{
    const Uuid id = store.addClient({command.name, command.rate.hourlyRateCents, command.colorHex,
        command.rate.isKnown, command.logo, command.projectsEnabled});
    return changeAnswer("Added client " + inQuotes(store.data()->clients.find(id)->name) + ".", id);
}

CommandAnswer run(const ClientEditCommand& command, TimeStore& store, const CommandContext&)
{
    const Uuid id = findClient(*store.data(), command.client);
    const Client* client = store.data()->clients.find(id);
    if (client == nullptr) {
        throw LedgerError("Client not found.");
    }
    const Rate rate = command.rate.value_or(Rate{client->hourlyRateCents, client->rateIsKnown});
    ClientChange change;
    change.name = command.name.value_or(client->name);
    change.rateCents = rate.hourlyRateCents;
    change.rateIsKnown = rate.isKnown;
    change.colorHex = command.colorHex.value_or(client->colorHex);
    change.logo = logoChange(command);
    change.projectsEnabled = command.projectsEnabled;
    store.updateClient(id, change);
    return changeAnswer(
        "Changed client " + inQuotes(store.data()->clients.find(id)->name) + ".", id);
}

CommandAnswer run(const ProjectAddCommand& command, TimeStore& store, const CommandContext&)
{
    const Uuid client = findClient(*store.data(), command.client);
    const Uuid id = store.addProject(
        client, {command.name, command.rate.hourlyRateCents, command.rate.isKnown});
    return changeAnswer("Added project " + inQuotes(store.project(id)->name) + ".", id);
}

CommandAnswer run(const ProjectEditCommand& command, TimeStore& store, const CommandContext&)
{
    const Uuid id = findProject(*store.data(), command.project);
    const auto project = store.project(id);
    if (!project) {
        throw LedgerError("Project not found.");
    }
    const Rate rate = command.rate.value_or(Rate{project->hourlyRateCents, project->rateIsKnown});
    store.updateProject(
        id, {command.name.value_or(project->name), rate.hourlyRateCents, rate.isKnown});
    return changeAnswer("Changed project " + inQuotes(store.project(id)->name) + ".", id);
}

CommandAnswer run(const AddCommand& command, TimeStore& store, const CommandContext& context)
{
    KestryCore::NewEntry entry;
    entry.start = readInstant(command.start, context.at, context.calendar);
    entry.duration = command.duration;
    entry.title = command.title;
    entry.clientID = findClient(*store.data(), command.client);
    if (command.project) {
        entry.projectID = findProject(*store.data(), *command.project, entry.clientID);
    }
    const Uuid id = store.addEntry(entry);
    return changeAnswer("Added " + KestryCore::durationText(entry.duration) + ".", id);
}

CommandAnswer run(const EditCommand& command, TimeStore& store, const CommandContext& context)
{
    const LedgerData& ledger = *store.data();
    const Uuid id = findEntry(ledger, command.session);
    const TimeEntry* entry = ledger.entries.find(id);
    if (entry == nullptr) {
        throw LedgerError("Entry not found.");
    }
    // A value that is not given is passed on exactly as stored: only the session's exact
    // duration leaves its intervals unchanged.
    KestryCore::EntryChange change;
    change.title = command.title.value_or(entry->title);
    change.start = command.start ? readInstant(*command.start, context.at, context.calendar)
                                 : entry->startedAt();
    change.duration = command.duration.value_or(entry->duration());
    change.isBillable = command.isBillable;
    if (command.project) {
        change.projectID =
            findProject(ledger, *command.project, clientOf(ledger, entry->projectID));
    }
    store.updateEntry(id, change);
    return changeAnswer("Changed the session.", id);
}

CommandAnswer run(const GapCommand& command, TimeStore& store, const CommandContext& context)
{
    const auto start = readInstant(command.start, context.at, context.calendar);
    const auto end = readInstant(command.end, context.at, context.calendar);
    const Uuid id = findSession(*store.data(), command.session);
    store.restoreTrackingGap(id, start, end);
    return changeAnswer("The interval is in the session.", id);
}

CommandAnswer run(const DeleteCommand& command, TimeStore& store, const CommandContext&)
{
    const Uuid id = findEntry(*store.data(), command.session);
    const bool isThere = store.data()->entries.find(id) != nullptr;
    store.deleteEntry(id);
    return changeAnswer(
        isThere ? "Deleted the session." : "No saved session has this identifier.", id);
}

std::string deletionQuestion(const LedgerData& ledger, const Uuid& id)
{
    const TimeEntry* entry = ledger.entries.find(id);
    if (entry == nullptr) {
        return "Delete the session " + id.text() + "?";
    }
    return "Delete " + inQuotes(sessionName(ledger, entry->title, entry->projectID)) + ", "
        + KestryCore::durationText(entry->duration()) + "?";
}

} // namespace Kestry
