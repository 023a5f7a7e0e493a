#include "SessionBridge.h"

#include <cmath>

#include "NotchGeometry.h"
#include "SpokenDuration.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::Client;
using KestryCore::Project;
using KestryCore::Uuid;

namespace {

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// The project that the store makes when a session starts on none.
QString unassigned()
{
    return text(KestryCore::unassignedProjectName);
}

} // namespace

SessionBridge::SessionBridge(KestryCore::TimeStore& store, AppState& state, KestryCore::Clock now,
    KestryCore::Scheduler& scheduler)
    : store_(store), state_(state), now_(std::move(now)), scheduler_(scheduler)
{
    const auto follow = [this](const auto& observable) {
        subscriptions_.push_back(observable.observe([this](const auto&) { refresh(); }));
    };
    follow(store_.data());
    follow(store_.errorMessage());
    follow(store_.recoveredSession());
    follow(state_.sessionClientID);
    follow(state_.selectedClient);
    follow(state_.selectedProject);
    refresh();
}

bool SessionBridge::hasSession() const
{
    return store_.data()->active.has_value();
}

bool SessionBridge::isRunning() const
{
    return hasSession() && !store_.data()->active->isPaused();
}

QString SessionBridge::title() const
{
    return hasSession() ? text(store_.data()->active->title) : QString();
}

QString SessionBridge::label() const
{
    if (QString own = title(); !own.isEmpty()) {
        return own;
    }
    const auto project = sessionProject();
    return project ? text(project->name) : QStringLiteral("Session");
}

std::optional<Project> SessionBridge::sessionProject() const
{
    return hasSession() ? store_.project(store_.data()->active->projectID) : std::nullopt;
}

QString SessionBridge::clientName() const
{
    const auto project = sessionProject();
    const auto client = hasSession() ? (project ? store_.client(*project) : std::nullopt)
                                     : state_.clientForNewSession(store_);
    return client ? text(client->name) : QString();
}

QString SessionBridge::projectName() const
{
    if (hasSession()) {
        const auto project = sessionProject();
        return project && !project->isClientDefault ? text(project->name) : QString();
    }
    if (!choosesProject()) {
        return {};
    }
    const auto project = state_.projectForNewSession(store_, state_.clientForNewSession(store_));
    return project ? text(project->name) : unassigned();
}

QString SessionBridge::message() const
{
    return text(store_.errorMessage()->value_or(std::string()));
}

bool SessionBridge::isRecovered() const
{
    return *store_.recoveredSession();
}

bool SessionBridge::hasClients() const
{
    return !store_.data()->clients.empty();
}

bool SessionBridge::choosesProject() const
{
    const auto client = state_.clientForNewSession(store_);
    return client && client->projectsEnabled;
}

double SessionBridge::baseHeight() const
{
    return detailHeight(
        {.hasSession = hasSession(), .hasMessage = store_.errorMessage()->has_value()});
}

double SessionBridge::elapsedSeconds() const
{
    return store_.elapsed(now_());
}

QString SessionBridge::elapsed() const
{
    return text(KestryCore::clockText(elapsedSeconds()));
}

QString SessionBridge::spokenElapsed() const
{
    return text(spokenDuration(elapsedSeconds()));
}

void SessionBridge::start()
{
    state_.startSession(store_, now_());
}

void SessionBridge::pauseOrResume()
{
    if (isRunning()) {
        perform([this] { store_.pause(now_()); });
    } else {
        perform([this] { store_.resume(now_()); });
    }
}

void SessionBridge::stop()
{
    perform([this] { store_.stop(now_()); });
}

void SessionBridge::rename(const QString& title)
{
    const auto& active = store_.data()->active;
    if (active) {
        perform([&] { store_.renameActiveSession(Uuid(active->id), title.toStdString()); });
    }
}

bool SessionBridge::addClient(const QString& name)
{
    return perform([&] {
        KestryCore::NewClient client;
        client.name = name.toStdString();
        client.rateIsKnown = false; // asked for where rates are edited
        state_.sessionClientID.assign(store_.addClient(client));
    });
}

void SessionBridge::chooseClient(const QString& recordID)
{
    state_.sessionClientID.assign(Uuid::parse(recordID.toStdString()));
}

void SessionBridge::chooseProject(const QString& recordID)
{
    state_.selectedProject.assign(Uuid::parse(recordID.toStdString()));
}

void SessionBridge::dismissRecovery()
{
    store_.dismissRecovery();
}

bool SessionBridge::perform(const std::function<void()>& change)
{
    try {
        change();
        return true;
    } catch (const std::exception& failure) {
        // Some refusals are for the caller alone to show, and this panel has one place for them.
        store_.reportFailure(failure.what());
        return false;
    }
}

void SessionBridge::refresh()
{
    clients_.setRows(clientRows());
    projects_.setRows(projectRows());
    emit changed();
    tick();
}

void SessionBridge::tick()
{
    emit elapsedChanged();
    if (!isRunning()) {
        tick_.cancel();
        return;
    }
    // Waiting for the next whole second, not for one second, keeps the text from skipping one.
    const double seconds = elapsedSeconds();
    const double untilNext = std::isfinite(seconds) ? 1.0 - (seconds - std::floor(seconds)) : 1.0;
    tick_ = scheduler_.after(untilNext, [this] { tick(); });
}

std::vector<TargetRow> SessionBridge::clientRows() const
{
    const auto chosen = state_.clientForNewSession(store_);
    std::vector<TargetRow> rows;
    for (const Client& client : store_.data()->clients) {
        rows.push_back({text(client.id.text()), text(client.name), "#" + text(client.colorHex),
            chosen && chosen->id == client.id});
    }
    return rows;
}

std::vector<TargetRow> SessionBridge::projectRows() const
{
    const auto client = state_.clientForNewSession(store_);
    if (!client || !client->projectsEnabled) {
        return {};
    }
    const auto chosen = state_.projectForNewSession(store_, client);
    std::vector<TargetRow> rows;
    if (!store_.unassignedProject(client->id)) {
        rows.push_back({{}, unassigned(), {}, !chosen});
    }
    for (const Project& project : store_.data()->projects) {
        if (project.clientID == client->id && !project.isClientDefault) {
            rows.push_back({text(project.id.text()), text(project.name), {},
                chosen && chosen->id == project.id});
        }
    }
    return rows;
}

} // namespace Kestry
