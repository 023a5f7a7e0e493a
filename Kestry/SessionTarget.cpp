#include "SessionTarget.h"

#include <algorithm>
#include <utility>

#include "LedgerEditing.h"

namespace Kestry {

using KestryCore::Client;
using KestryCore::MoneyText;
using KestryCore::Project;
using KestryCore::TimeStore;
using KestryCore::Uuid;

namespace {

constexpr const char* dot = " · ";

std::string rateWords(KestryCore::Cents cents, bool isKnown, const MoneyText& words)
{
    return isKnown ? words.rateCompact(cents) : KestryCore::rateNotSet;
}

std::string projectName(const std::optional<Project>& project)
{
    return project && !project->isClientDefault ? project->name
                                                : std::string(KestryCore::unassignedProjectName);
}

/// The project that the store makes on first need for "Unassigned" has no known rate.
std::string projectRate(const std::optional<Project>& project, const MoneyText& words)
{
    return project ? rateWords(project->hourlyRateCents, project->rateIsKnown, words)
                   : KestryCore::rateNotSet;
}

Menu clientEntries(const TimeStore& store, AppState& state, const std::optional<Client>& chosen)
{
    Menu entries;
    for (const Client& client : store.data()->clients) {
        entries.push_back({.text = client.name,
            .colorHex = client.colorHex,
            .isChosen = chosen && chosen->id == client.id,
            .action = [&state, id = client.id] { state.sessionClientID.assign(id); }});
    }
    return entries;
}

Menu projectEntries(
    const TimeStore& store, AppState& state, const Client& client, const MoneyText& words)
{
    const auto chosen = projectForNewSession(store, state, client);
    Menu entries;
    const auto add = [&](const std::optional<Project>& project, bool isChosen) {
        entries.push_back({.text = projectName(project) + dot + projectRate(project, words),
            .isChosen = isChosen,
            .action = [&state, id = project ? std::optional(project->id) : std::nullopt] {
                state.selectedProject.assign(id);
            }});
    };
    if (!store.unassignedProject(client.id)) {
        add(std::nullopt, !chosen);
    }
    for (const Project& project : store.data()->projects) {
        if (project.clientID == client.id && !project.isClientDefault) {
            add(project, chosen && chosen->id == project.id);
        }
    }
    return entries;
}

void append(Menu& menu, Menu entries)
{
    for (MenuEntry& entry : entries) {
        menu.push_back(std::move(entry));
    }
}

MenuEntry addProjectEntry(
    const TimeStore& store, AppState& state, const std::optional<Client>& chosen)
{
    MenuEntry entry{.text = "Add project…", .symbol = "plus"};
    const auto client = chosen && chosen->projectsEnabled ? std::optional(chosen->id)
                                                          : clientForNewProject(store, state);
    entry.isEnabled = client.has_value();
    if (client) {
        entry.action = [&state, client] {
            state.editor.assign(Editor{Editor::ProjectForm{.projectID = {}, .clientID = client}});
            state.openDashboard();
        };
    }
    return entry;
}

} // namespace

std::optional<Client> clientForNewSession(const TimeStore& store, const AppState& state)
{
    std::optional<Uuid> wanted =
        *state.sessionClientID ? *state.sessionClientID : *state.selectedClient;
    if (!wanted && *state.selectedProject) {
        if (const auto project = store.project(**state.selectedProject)) {
            wanted = project->clientID;
        }
    }
    const auto& clients = store.data()->clients;
    if (const Client* client = wanted ? clients.find(*wanted) : nullptr) {
        return *client;
    }
    return clients.empty() ? std::nullopt : std::optional(clients.front());
}

std::optional<Project> projectForNewSession(
    const TimeStore& store, const AppState& state, const std::optional<Client>& client)
{
    if (!client || !client->projectsEnabled) {
        return std::nullopt;
    }
    if (*state.selectedProject) {
        auto project = store.project(**state.selectedProject);
        if (project && project->clientID == client->id && !project->isClientDefault) {
            return project;
        }
    }
    return store.unassignedProject(client->id);
}

std::optional<Uuid> clientForNewProject(const TimeStore& store, const AppState& state)
{
    const auto& clients = store.data()->clients;
    if (const auto& selected = *state.selectedClient) {
        const Client* client = clients.find(*selected);
        if (client && client->projectsEnabled) {
            return client->id;
        }
    }
    const auto found = std::ranges::find_if(clients, &Client::projectsEnabled);
    return found == clients.end() ? std::nullopt : std::optional((*found).id);
}

SessionTarget sessionTarget(const TimeStore& store, const AppState& state, const MoneyText& words)
{
    const auto client = clientForNewSession(store, state);
    if (!client) {
        return {"Choose client", {}, {}, "Session client and project: Choose client"};
    }
    if (!client->projectsEnabled) {
        const std::string rate = rateWords(client->hourlyRateCents, client->rateIsKnown, words);
        return {client->name, {}, rate, "Session client and project: " + client->name + dot + rate};
    }
    const auto project = projectForNewSession(store, state, client);
    const std::string name = projectName(project);
    const std::string rate = projectRate(project, words);
    return {client->name, name, rate,
        "Session project and hourly rate: " + client->name + dot + name + dot + rate};
}

Menu targetMenu(const TimeStore& store, AppState& state, const MoneyText& words)
{
    const auto client = clientForNewSession(store, state);
    Menu menu = clientEntries(store, state, client);
    if (client && client->projectsEnabled) {
        menu.push_back(MenuEntry::separator());
        append(menu, projectEntries(store, state, *client, words));
    }
    if (!menu.empty()) {
        menu.push_back(MenuEntry::separator());
    }
    menu.push_back({.text = "Add client…", .symbol = "plus", .action = [&state] {
                        state.editor.assign(Editor{Editor::ClientForm{}});
                        state.openDashboard();
                    }});
    menu.push_back(addProjectEntry(store, state, client));
    return menu;
}

} // namespace Kestry
