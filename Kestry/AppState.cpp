#include "AppState.h"

namespace Kestry {

using KestryCore::Client;
using KestryCore::Project;
using KestryCore::TimeStore;
using KestryCore::Uuid;

AppState::AppState(UserDefaults& defaults)
    : defaults_(defaults), notchEnabled_(defaults.boolean("notchEnabled").value_or(true)),
      menuBarEnabled_(defaults.boolean("menuBarEnabled").value_or(false))
{
}

void AppState::setNotchEnabled(bool enabled)
{
    notchEnabled_.assign(enabled);
    defaults_.setBoolean("notchEnabled", enabled);
}

void AppState::setMenuBarEnabled(bool enabled)
{
    menuBarEnabled_.assign(enabled);
    defaults_.setBoolean("menuBarEnabled", enabled);
}

std::optional<Client> AppState::clientForNewSession(const TimeStore& store) const
{
    std::optional<Uuid> wanted = *sessionClientID ? *sessionClientID : *selectedClient;
    if (!wanted && *selectedProject) {
        if (const auto project = store.project(**selectedProject)) {
            wanted = project->clientID;
        }
    }
    const auto& clients = store.data()->clients;
    if (const Client* client = wanted ? clients.find(*wanted) : nullptr) {
        return *client;
    }
    return clients.empty() ? std::nullopt : std::optional(clients.front());
}

std::optional<Project> AppState::projectForNewSession(
    const TimeStore& store, const std::optional<Client>& client) const
{
    if (!client || !client->projectsEnabled) {
        return std::nullopt;
    }
    if (*selectedProject) {
        auto project = store.project(**selectedProject);
        if (project && project->clientID == client->id && !project->isClientDefault) {
            return project;
        }
    }
    return store.unassignedProject(client->id);
}

void AppState::startSession(TimeStore& store, KestryCore::Date now)
{
    const auto client = clientForNewSession(store);
    if (!client) {
        editor.assign(Editor{Editor::ClientForm{}});
        openDashboard();
        return;
    }
    const auto project = projectForNewSession(store, client);
    try {
        store.start(
            client->id, project ? std::optional(project->id) : std::nullopt, *sessionTitle, now);
    } catch (const std::exception&) {
        return; // The store holds the reason in words, and what was chosen stays for another try.
    }
    sessionClientID.assign(client->id);
    selectedProject.assign(std::nullopt);
    sessionTitle.assign("");
}

void AppState::openDashboard() const
{
    if (openDashboard_) {
        openDashboard_();
    }
}

void AppState::toggleNotch() const
{
    if (toggleNotch_) {
        toggleNotch_();
    }
}

void AppState::setNotchVisible(bool visible) const
{
    if (setNotchVisible_) {
        setNotchVisible_(visible);
    }
}

void AppState::installNotch(Action toggle, std::function<void(bool)> setVisible)
{
    toggleNotch_ = std::move(toggle);
    setNotchVisible_ = std::move(setVisible);
}

} // namespace Kestry
