#include "SessionProjectChoice.h"

#include <utility>

namespace Kestry {

using KestryCore::Client;
using KestryCore::Project;
using KestryCore::Uuid;

SessionProjectChoice::SessionProjectChoice(const EditorWorld& world, Attempt attempt)
    : world_(world), attempt_(std::move(attempt)),
      ledger_(world.store.data().observe([this](const auto&) { emit changed(); }))
{
}

void SessionProjectChoice::loadClient(const std::optional<Uuid>& clientID)
{
    clientID_ = originalClientID_ = clientID;
}

void SessionProjectChoice::loadProject(const Uuid& projectID)
{
    projectID_ = originalProjectID_ = projectID;
    const auto project = world_.store.project(projectID);
    loadClient(project ? std::optional(project->clientID) : std::nullopt);
}

const Client* SessionProjectChoice::client() const
{
    return clientID_ ? world_.store.data()->clients.find(*clientID_) : nullptr;
}

QString SessionProjectChoice::clientName() const
{
    const Client* chosen = client();
    return chosen ? shownText(chosen->name) : "Choose a client";
}

bool SessionProjectChoice::usesProjects() const
{
    const Client* chosen = client();
    return chosen && chosen->projectsEnabled;
}

QString SessionProjectChoice::rateOf(const Project& project) const
{
    return shownText(project.rateIsKnown ? world_.words.rateCompact(project.hourlyRateCents)
                                         : KestryCore::rateNotSet);
}

QString SessionProjectChoice::projectName() const
{
    if (!client()) {
        return "Unassigned · Rate not set";
    }
    if (!usesProjects()) {
        return "Client-level session";
    }
    const auto project = projectID_ ? world_.store.project(*projectID_) : std::nullopt;
    if (!project) {
        return "Choose a project";
    }
    return project->isClientDefault ? "Client-level session"
                                    : shownText(project->name) + " · " + rateOf(*project);
}

bool SessionProjectChoice::isEdited() const
{
    return clientID_ != originalClientID_ || projectID_ != originalProjectID_ || isCreating_;
}

std::optional<Uuid> SessionProjectChoice::target()
{
    if (isCreating_ && !newProjectName_.trimmed().isEmpty()) {
        emit newProjectWanted();
        throw KestryCore::LedgerError("Create the project or cancel it first.");
    }
    if (!usesProjects()) {
        // Without a project the store leaves the session where it is, whatever client was chosen.
        // Its words for a project of that client are true here too.
        if (originalProjectID_ && clientID_ != originalClientID_) {
            throw KestryCore::LedgerError(
                "Choose a project from the same client with projects enabled.");
        }
        return std::nullopt;
    }
    if (!projectID_) {
        throw KestryCore::LedgerError("Choose a project for this session.");
    }
    return projectID_ == originalProjectID_ ? std::nullopt : projectID_;
}

Menu SessionProjectChoice::clientMenu()
{
    Menu menu;
    for (const Client& each : world_.store.data()->clients) {
        menu.push_back({.text = each.name,
            .colorHex = each.colorHex,
            .isChosen = clientID_ == each.id,
            .action = [this, id = each.id] { chooseClient(id); }});
    }
    return menu;
}

Menu SessionProjectChoice::projectMenu()
{
    Menu menu;
    if (!usesProjects()) {
        return menu;
    }
    for (const Project& each : world_.store.data()->projects) {
        if (each.clientID == clientID_ && !each.isClientDefault) {
            menu.push_back({.text = each.name + " · " + rateOf(each).toStdString(),
                .isChosen = projectID_ == each.id,
                .action = [this, id = each.id] { chooseProject(id); }});
        }
    }
    if (!menu.empty()) {
        menu.push_back(MenuEntry::separator());
    }
    menu.push_back(
        {.text = "New project", .symbol = "plus", .action = [this] { setCreating(true); }});
    return menu;
}

void SessionProjectChoice::openClients(QQuickItem* item)
{
    if (item) {
        world_.openMenu(clientMenu(), "Client", *item);
    }
}

void SessionProjectChoice::openProjects(QQuickItem* item)
{
    if (item) {
        world_.openMenu(projectMenu(), "Project", *item);
    }
}

void SessionProjectChoice::chooseClient(const Uuid& clientID)
{
    if (clientID_ != clientID) {
        clientID_ = clientID;
        projectID_ = clientID == originalClientID_ ? originalProjectID_ : std::nullopt;
        setCreating(false);
        emit changed();
    }
}

void SessionProjectChoice::chooseProject(const Uuid& projectID)
{
    projectID_ = projectID;
    emit changed();
}

void SessionProjectChoice::createProject()
{
    const auto create = [this] {
        if (!clientID_) {
            throw KestryCore::LedgerError("Choose a client for this session.");
        }
        const auto cents = KestryCore::readRate(newProjectRate_.toStdString());
        projectID_ = world_.store.addProject(
            *clientID_, {newProjectName_.toStdString(), cents.value_or(0), cents.has_value()});
    };
    if (isCreating_ && attempt_(create)) {
        setCreating(false);
    }
}

void SessionProjectChoice::cancelNewProject()
{
    setCreating(false);
}

void SessionProjectChoice::setCreating(bool creating)
{
    isCreating_ = creating;
    newProjectName_.clear();
    newProjectRate_.clear();
    emit changed();
}

} // namespace Kestry
