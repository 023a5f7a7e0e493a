#include "ClientDashboardBridge.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace Kestry {

using KestryCore::Client;
using KestryCore::Uuid;

namespace {

QString dashboardText(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString subtitleOf(const Client& client, int projectCount, const KestryCore::MoneyText& money)
{
    if (client.projectsEnabled) {
        return QString::number(projectCount) + " projects · Rates set per project";
    }
    return client.rateIsKnown ? dashboardText(money.rateLong(client.hourlyRateCents))
                              : KestryCore::hourlyRateNotSet;
}

} // namespace

ClientDashboardBridge::ClientDashboardBridge(const World& world, const Today& today)
    : world_(world), today_(today), totals_(world.store),
      sessions_(world, KestryCore::SessionListPlace::dashboard), recent_(world)
{
}

void ClientDashboardBridge::open()
{
    days_.emplace(*world_.calendar);
    followWorld();
    refresh();
}

void ClientDashboardBridge::close()
{
    subscriptions_.clear();
    refresh_.cancel();
    tick_.cancel();
    projects_.show({});
    recent_.close();
    listed_.reset();
    clientID_.clear(); // the next page begins with nothing
    totals_.forgetSaved();
    shown_ = {};
    days_.reset();
}

void ClientDashboardBridge::followWorld()
{
    subscriptions_.clear();
    subscriptions_.push_back(
        world_.store.data().observe([this](const auto&) { followLedgerSoon(); }));
    subscriptions_.push_back(world_.calendar.observe([this](const auto&) {
        days_.emplace(*world_.calendar);
        totals_.forgetSaved();
        refreshFigures();
    }));
    subscriptions_.push_back(today_.start().observe([this](const auto&) { refreshFigures(); }));
    subscriptions_.push_back(
        world_.state.selectedClient.observe([this](const auto&) { refresh(); }));
}

void ClientDashboardBridge::followLedgerSoon()
{
    // Whoever made the change has its answer first.
    refresh_ = world_.scheduler.after(0.0, [this] { followLedger(); });
}

void ClientDashboardBridge::followLedger()
{
    const KestryCore::LedgerData& now = *world_.store.data();
    // A checkpoint changes none of these, and comes all the time.
    const bool isSame = shown_.entries.sharesAllWith(now.entries)
        && shown_.clients.sharesAllWith(now.clients) && shown_.projects.sharesAllWith(now.projects);
    if (isSame) {
        refreshFigures();
    } else {
        refresh();
    }
}

const Client* ClientDashboardBridge::client() const
{
    const auto& selected = *world_.state.selectedClient;
    return selected ? world_.store.data()->clients.find(*selected) : nullptr;
}

void ClientDashboardBridge::refresh()
{
    const Client* shown = client();
    refreshProjects(shown);
    refreshSessions(shown);
    refreshHeading(shown);
    refreshFigures();
}

void ClientDashboardBridge::refreshProjects(const Client* client)
{
    shown_ = *world_.store.data();
    const bool hasList = client && client->projectsEnabled;
    projects_.show(
        hasList ? projectRows(shown_, client->id, world_.money) : std::vector<ProjectRow>());
}

void ClientDashboardBridge::refreshSessions(const Client* client)
{
    const auto listed =
        client ? std::optional(std::pair(client->id, client->projectsEnabled)) : std::nullopt;
    if (listed == std::exchange(listed_, listed)) {
        return; // the lists follow the ledger themselves
    }
    if (client && client->projectsEnabled) {
        recent_.show(
            RecentSessions::OfClient{client->id}, "dashboard:" + dashboardText(client->id.text()));
        return;
    }
    recent_.close();
    if (client) {
        sessions_.setClientID(client->id);
    }
}

void ClientDashboardBridge::refreshHeading(const Client* client)
{
    const int count = projects_.rowCount();
    const QString name = client ? dashboardText(client->name) : QString();
    const bool hasProjects = client && client->projectsEnabled;
    const bool lacksProjects = hasProjects && count == 0;
    const bool hasLogo = client && world_.logos;
    change(hasProjects_, hasProjects, &ClientDashboardBridge::hasProjectsChanged);
    change(name_, name, &ClientDashboardBridge::nameChanged);
    change(logo_, hasLogo ? world_.logos->logo(world_.store.data()->clients, client->id) : QImage(),
        &ClientDashboardBridge::logoChanged);
    change(subtitle_, client ? subtitleOf(*client, count, world_.money) : QString(),
        &ClientDashboardBridge::subtitleChanged);
    change(noProjects_,
        lacksProjects ? "Add your first project to start tracking time for " + name + "."
                      : QString(),
        &ClientDashboardBridge::noProjectsChanged);
    change(clientID_, client ? dashboardText(client->id.text()) : QString(),
        &ClientDashboardBridge::clientIDChanged);
}

void ClientDashboardBridge::refreshFigures()
{
    const Client* shown = isOpen() ? client() : nullptr;
    if (!shown) {
        tick_.cancel();
        show({});
        return;
    }
    const KestryCore::Date now = world_.now();
    show(dashboardFigures(totals_.metrics(shown->id, now, *world_.calendar),
        dashboardText(days_->month(now)), world_.money));
    tickLater();
}

void ClientDashboardBridge::show(DashboardFigures figures)
{
    change(figures_.earnings, std::move(figures.earnings), &ClientDashboardBridge::earningsChanged);
    change(figures_.hours, std::move(figures.hours), &ClientDashboardBridge::hoursChanged);
    change(figures_.monthHours, std::move(figures.monthHours),
        &ClientDashboardBridge::monthHoursChanged);
    change(figures_.average, std::move(figures.average), &ClientDashboardBridge::averageChanged);
    change(figures_.unpriced, std::move(figures.unpriced), &ClientDashboardBridge::unpricedChanged);
}

void ClientDashboardBridge::tickLater()
{
    const auto& active = world_.store.data()->active;
    if (!active || active->isPaused() || !totals_.hasSession(client()->id)) {
        tick_.cancel();
        return;
    }
    const double seconds = world_.store.elapsed(world_.now());
    const double untilNext = std::isfinite(seconds) ? 1.0 - (seconds - std::floor(seconds)) : 1.0;
    tick_ = world_.scheduler.after(untilNext, [this] { refreshFigures(); });
}

template <class Value>
void ClientDashboardBridge::change(Value& held, Value value, Signal changed)
{
    if (held != value) {
        held = std::move(value);
        emit(this->*changed)();
    }
}

// What is done.

void ClientDashboardBridge::editClient()
{
    if (const Client* shown = client()) {
        world_.state.editor.assign(Editor{Editor::ClientForm{shown->id}});
    }
}

void ClientDashboardBridge::addProject()
{
    if (const Client* shown = client()) {
        world_.state.editor.assign(
            Editor{Editor::ProjectForm{.projectID = {}, .clientID = shown->id}});
    }
}

void ClientDashboardBridge::editProject(const QString& recordID)
{
    const auto id = Uuid::parse(recordID.toStdString());
    if (id && world_.store.data()->projects.find(*id)) {
        world_.state.editor.assign(Editor{Editor::ProjectForm{.projectID = id, .clientID = {}}});
    }
}

void ClientDashboardBridge::start(const QString& recordID)
{
    if (const auto id = Uuid::parse(recordID.toStdString())) {
        world_.commander.startSessionOn(*id);
    }
}

void ClientDashboardBridge::viewAll()
{
    if (const Client* shown = client()) {
        const Uuid id = shown->id;
        world_.state.selectedClient.assign(id);
        world_.state.sessionsMonth.assign(std::nullopt);
        world_.state.destination.assign(Destination::sessions);
    }
}

} // namespace Kestry
