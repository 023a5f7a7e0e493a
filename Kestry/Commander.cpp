#include "Commander.h"

#include <algorithm>
#include <array>
#include <utility>

#include "SessionTarget.h"

namespace Kestry {

using KestryCore::TimeStore;
using KestryCore::Uuid;

std::optional<DesktopAction> desktopAction(std::string_view name)
{
    constexpr std::array<std::pair<std::string_view, DesktopAction>, 4> actions{{
        {"start", DesktopAction::start},
        {"toggle", DesktopAction::toggle},
        {"stop", DesktopAction::stop},
        {"show-controls", DesktopAction::showControls},
    }};
    const auto* found =
        std::ranges::find(actions, name, [](const auto& each) { return each.first; });
    return found != actions.end() ? std::optional(found->second) : std::nullopt;
}

Commander::Commander(
    TimeStore& store, AppState& state, KestryCore::Clock now, std::function<void()> quit)
    : store_(store), state_(state), now_(std::move(now)), quit_(std::move(quit))
{
}

void Commander::startSession()
{
    const auto client = clientForNewSession(store_, state_);
    if (!client) {
        newClient();
        return;
    }
    const auto project = projectForNewSession(store_, state_, client);
    try {
        store_.start(client->id, project ? std::optional(project->id) : std::nullopt,
            *state_.sessionTitle, now_());
    } catch (const std::exception&) {
        return; // The store has published why, and what was chosen stays for another try.
    }
    clearChoices(client->id);
}

void Commander::startSessionOn(const Uuid& projectID)
{
    attempt([&] {
        store_.start(projectID, *state_.sessionTitle, now_());
        clearChoices(store_.data()->projects.find(projectID)->clientID);
    });
}

void Commander::clearChoices(const Uuid& clientID)
{
    state_.sessionClientID.assign(clientID);
    state_.selectedProject.assign(std::nullopt);
    state_.sessionTitle.assign("");
}

void Commander::toggleSession()
{
    if (store_.data()->active) {
        pauseOrResume();
    } else {
        startSession();
    }
}

void Commander::pauseOrResume()
{
    const auto& active = store_.data()->active;
    if (active && !active->isPaused()) {
        if (writeTitle()) {
            attempt([this] { store_.pause(now_()); });
        }
    } else {
        attempt([this] { store_.resume(now_()); });
    }
}

void Commander::stopSession()
{
    if (store_.data()->active && writeTitle()) {
        attempt([this] { store_.stop(now_()); });
    }
}

bool Commander::renameSession(const Uuid& session, const std::string& title)
{
    return attempt([&] { store_.renameActiveSession(session, title); });
}

void Commander::installTitleWriter(std::function<bool()> write)
{
    writeTitle_ = std::move(write);
}

bool Commander::writeTitle()
{
    return !writeTitle_ || writeTitle_();
}

void Commander::perform(DesktopAction action)
{
    switch (action) {
    case DesktopAction::start:
        if (!store_.data()->active) {
            startSession();
        }
        break;
    case DesktopAction::toggle:
        toggleSession();
        break;
    case DesktopAction::stop:
        stopSession();
        break;
    case DesktopAction::showControls:
        showNotch();
        break;
    }
}

bool Commander::attempt(const std::function<void()>& change)
{
    try {
        change();
        return true;
    } catch (const std::exception& failure) {
        // The store leaves some refusals to its caller to show.
        store_.reportFailure(KestryCore::failureText(failure));
        return false;
    }
}

void Commander::openMain()
{
    state_.openDashboard();
}

void Commander::showNotch()
{
    state_.toggleNotch();
}

void Commander::openSettings()
{
    state_.destination.assign(Destination::settings);
    state_.openDashboard();
}

void Commander::quit()
{
    quit_();
}

void Commander::newClient()
{
    state_.editor.assign(Editor{Editor::ClientForm{}});
    state_.openDashboard();
}

void Commander::newProject()
{
    if (const auto client = clientForNewProject()) {
        state_.editor.assign(Editor{Editor::ProjectForm{.projectID = {}, .clientID = client}});
        state_.openDashboard();
    }
}

std::optional<Uuid> Commander::clientForNewProject() const
{
    return Kestry::clientForNewProject(store_, state_);
}

} // namespace Kestry
