#include "ShellCommands.h"

#include <algorithm>
#include <utility>

namespace Kestry {

using KestryCore::Client;
using KestryCore::TimeStore;
using KestryCore::Uuid;

namespace {

/// Runs a command of the store that tells its failures itself.
void attempt(TimeStore& store, const std::function<void()>& command)
{
    try {
        command();
    } catch (const std::exception& failure) {
        store.reportFailure(
            KestryCore::failureText(failure)); // some failures are left to the caller to show
    }
}

} // namespace

ShellCommands::ShellCommands(
    TimeStore& store, AppState& state, KestryCore::Clock now, std::function<void()> quit)
    : store_(store), state_(state), now_(std::move(now)), quit_(std::move(quit))
{
}

void ShellCommands::toggleSession()
{
    const auto& active = store_.data()->active;
    if (!active) {
        state_.startSession(store_, now_());
    } else if (active->isPaused()) {
        attempt(store_, [this] { store_.resume(now_()); });
    } else {
        attempt(store_, [this] { store_.pause(now_()); });
    }
}

void ShellCommands::stopSession()
{
    if (store_.data()->active) {
        attempt(store_, [this] { store_.stop(now_()); });
    }
}

void ShellCommands::openMain()
{
    state_.openDashboard();
}

void ShellCommands::showNotch()
{
    state_.toggleNotch();
}

void ShellCommands::openSettings()
{
    state_.destination.assign(Destination::settings);
    state_.openDashboard();
}

void ShellCommands::quit()
{
    quit_();
}

void ShellCommands::newClient()
{
    state_.editor.assign(Editor{Editor::ClientForm{}});
    state_.openDashboard();
}

void ShellCommands::newProject()
{
    if (const auto client = clientForNewProject()) {
        state_.editor.assign(Editor{Editor::ProjectForm{.projectID = {}, .clientID = client}});
        state_.openDashboard();
    }
}

std::optional<Uuid> ShellCommands::clientForNewProject() const
{
    const auto& clients = store_.data()->clients;
    if (const auto& selected = *state_.selectedClient) {
        const Client* client = clients.find(*selected);
        if (client && client->projectsEnabled) {
            return client->id;
        }
    }
    const auto found = std::ranges::find_if(clients, &Client::projectsEnabled);
    return found == clients.end() ? std::nullopt : std::optional((*found).id);
}

} // namespace Kestry
