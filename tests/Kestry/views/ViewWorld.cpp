#include "ViewWorld.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QImage>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QQuickWindow>

#include <utility>

#include "LedgerCoding.h"
#include "LedgerError.h"
#include "SyncState.h"

namespace Kestry {
namespace {

std::string pngOfOnePixel()
{
    QImage image(1, 1, QImage::Format_ARGB32);
    image.fill(Qt::red);
    QBuffer file;
    image.save(&file, "PNG");
    return file.data().toStdString();
}

} // namespace

ViewWorld::ViewWorld(KestryCore::StoreOptions options, QObject* parent)
    : QObject(parent),
      store_(world_.storePlatform(), options.demoLedger ? std::move(options) : world_.onDisk())
{
    surface_.deliverEventsTo(this);
    connect(&openMenu_, &MenuController::chosen, [](const auto& action) { action(); });
    subscriptions_.push_back(state_.editor.observe([this](const auto&) { emit reported(); }));
}

ViewWorld::~ViewWorld()
{
    surface_.deliverEventsTo(nullptr);
}

QString ViewWorld::editorID() const
{
    return *state_.editor ? QString::fromStdString((*state_.editor)->id()) : QString();
}

void ViewWorld::openMenuOf(const QStringList& names)
{
    Menu menu;
    for (const QString& name : names) {
        menu.push_back({.text = name.toStdString(),
            .isChosen = menu.empty(),
            .action = [this, name] { note("chose " + name); }});
    }
    menu.back().isEnabled = false;
    menu.push_back(MenuEntry::separator());
    menu.push_back({.text = "More", .entries = {{.text = "One"}, {.text = "Two"}}});
    openMenu_.open(menu, "Names", MenuController::Panel);
}

void ViewWorld::clearReports()
{
    reports_.clear();
    emit reported();
}

void ViewWorld::addClient(const QString& name)
{
    Kestry::addClient(store_, name.toStdString());
    world_.scheduler.turn();
}

void ViewWorld::addPlainClient(const QString& name)
{
    KestryCore::NewClient client;
    client.name = name.toStdString();
    client.rateCents = 10000;
    client.colorHex = "A2A5AA";
    client.projectsEnabled = false;
    store_.addClient(client);
    world_.scheduler.turn();
}

void ViewWorld::selectFirstClient()
{
    state_.selectedClient.assign(store_.data()->clients.front().id);
}

void ViewWorld::selectLastClient()
{
    state_.selectedClient.assign(store_.data()->clients.back().id);
}

void ViewWorld::addUnpricedHour()
{
    KestryCore::NewEntry entry;
    entry.start = world_.now() + -7200.0;
    entry.duration = 3600.0;
    store_.addEntry(
        store_.addProject(store_.data()->clients.front().id, {"Unpriced", 0, false}), entry);
    world_.scheduler.turn();
}

void ViewWorld::disableProjects()
{
    const KestryCore::Client client = store_.data()->clients.front();
    KestryCore::ClientChange change;
    change.name = client.name;
    change.colorHex = client.colorHex;
    change.projectsEnabled = false;
    store_.updateClient(client.id, change);
    world_.scheduler.turn();
}

void ViewWorld::addProject(const QString& name)
{
    const KestryCore::Uuid client = store_.data()->clients.front().id;
    state_.selectedProject.assign(Kestry::addProject(store_, client, name.toStdString()));
    world_.scheduler.turn();
}

void ViewWorld::start(const QString& title)
{
    state_.sessionTitle.assign(title.toStdString());
    bridge_.start();
}

void ViewWorld::runElsewhere(const QString& device, double seconds)
{
    KestryCore::ActiveSession active;
    active.id = KestryCore::Uuid::random();
    active.projectID = store_.data()->projects.front().id;
    active.checkpointAt = world_.now();
    active.runningSince = world_.now() + -seconds;
    const KestryCore::SyncedSession session{
        device.toStdString(), device.toStdString(), active, std::nullopt};
    receive(active.id, session);
}

void ViewWorld::receive(const KestryCore::Uuid& id, const KestryCore::SyncedSession& session)
{
    store_.beginSync("account", "Desk", KestryCore::CloudSyncEnvironment::development);
    store_.applyRemoteSync({{"Session:" + id.text(), KestryCore::Uuid::random().text(),
                               session.ownerDeviceID, KestryCore::canonicalJson(session), false}},
        {}, "cursor");
    world_.scheduler.turn();
}

SessionList::World ViewWorld::worldOfSessions()
{
    return {commander_, store_, state_, world_.scheduler, [this] { return world_.now(); },
        calendar_, KestryCore::MoneyText("en_US"),
        [this](Menu menu, const QString& /*name*/, const QQuickItem& /*item*/) {
            menuOfRow_ = std::move(menu);
        },
        deletion_, &logos_};
}

void ViewWorld::save(const QString& title, double hoursAgo)
{
    KestryCore::NewEntry entry;
    entry.clientID = store_.data()->clients.front().id;
    entry.title = title.toStdString();
    entry.start = world_.now() + -3600.0 * hoursAgo;
    entry.duration = 1800.0;
    store_.addEntry(entry);
    world_.scheduler.turn();
}

void ViewWorld::bill(const QString& project, double hours, double hourlyRateCents)
{
    KestryCore::NewEntry entry;
    entry.start = world_.now() + -3600.0 * hours;
    entry.duration = 3600.0 * hours;
    const auto rate = static_cast<std::int64_t>(hourlyRateCents);
    store_.addEntry(
        store_.addProject(store_.data()->clients.front().id, {project.toStdString(), rate, true}),
        entry);
    world_.scheduler.turn();
}

QStringList ViewWorld::menuEntries() const
{
    QStringList names;
    for (const MenuEntry& entry : menuOfRow_) {
        names << QString::fromStdString(entry.text);
    }
    return names;
}

void ViewWorld::addEntry(const QString& title)
{
    KestryCore::NewEntry entry;
    entry.title = title.toStdString();
    entry.start = world_.now() + -7200.0;
    entry.duration = 3600.0;
    store_.addEntry(store_.data()->projects.front().id, entry);
}

void ViewWorld::editClient()
{
    state_.editor.assign(Editor{Editor::ClientForm{store_.data()->clients.front().id}});
}

void ViewWorld::editProject()
{
    state_.editor.assign(Editor{
        Editor::ProjectForm{.projectID = store_.data()->projects.front().id, .clientID = {}}});
}

void ViewWorld::editEntry()
{
    state_.editor.assign(Editor{Editor::EntryForm{store_.data()->entries.front().id}});
}

void ViewWorld::editImported()
{
    KestryCore::TimeEntry entry;
    entry.id = KestryCore::Uuid::random();
    entry.projectID = store_.data()->projects.front().id;
    entry.spans = {{world_.now() + -7200.0, world_.now() + -3600.0}};
    entry.sourceID = "T-1";
    receive(entry.id, {"Laptop", "Laptop", std::nullopt, entry});
    state_.editor.assign(Editor{Editor::EntryForm{entry.id}});
}

void ViewWorld::editSession()
{
    state_.editor.assign(Editor{Editor::ActiveForm{store_.data()->active->id}});
}

void ViewWorld::newEntry()
{
    state_.editor.assign(Editor{Editor::EntryForm{}});
}

QStringList ViewWorld::entryTitles() const
{
    QStringList titles;
    for (const KestryCore::TimeEntry& entry : store_.data()->entries) {
        titles << QString::fromStdString(entry.title);
    }
    return titles;
}

LogoSource ViewWorld::logos()
{
    const auto read = [this](const std::string& /*path*/,
                          const std::stop_token& /*stop*/) -> std::string {
        if (hasLogo_) {
            return pngOfOnePixel();
        }
        throw KestryCore::LedgerError("This image could not be read.");
    };
    const auto wait = [this](std::function<void()> work, std::function<void()> done) {
        beside_.emplace_back(std::move(work), std::move(done));
    };
    return {read, wait};
}

void ViewWorld::workBeside()
{
    for (const auto& [work, done] : std::exchange(beside_, {})) {
        work();
        done();
    }
}

void ViewWorld::reveal(bool shown, bool atOnce)
{
    const RevealMotion motion = shown ? RevealMotion::unfold : RevealMotion::fold;
    surface_.setShown(shown, atOnce ? RevealMotion::none : motion);
}

void ViewWorld::compose(QQuickItem* field, const QString& onTrial)
{
    QInputMethodEvent event(onTrial, {});
    QCoreApplication::sendEvent(field, &event);
}

void ViewWorld::commit(QQuickItem* field, const QString& letters)
{
    QInputMethodEvent event;
    event.setCommitString(letters);
    QCoreApplication::sendEvent(field, &event);
}

void ViewWorld::drop(QQuickItem* item, const QUrl& file)
{
    QMimeData content;
    content.setUrls({file});
    const QPointF place = item->mapToScene({item->width() / 2, item->height() / 2});
    QDragEnterEvent enter(
        place.toPoint(), Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(item->window(), &enter);
    QDropEvent dropped(place, Qt::CopyAction, &content, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(item->window(), &dropped);
}

void ViewWorld::note(const QString& report)
{
    reports_ << report;
    emit reported();
}

void ViewWorld::editingChanged(bool editing)
{
    note(editing ? "editing" : "edited");
}

void ViewWorld::resize(double height)
{
    note(QString("resize %1").arg(height));
}

void ViewWorld::previewTitle(const std::optional<std::string>& title)
{
    note("preview " + QString::fromStdString(title.value_or("nothing")));
}

void DiskWorld::damage()
{
    addClient("Aster Studio");
    addClient("Birch");
    world().damageLedger();
    try {
        addClient("Cedar");
    } catch (const std::exception&) {
        store().dismissFailure();
    }
    world().scheduler.turn();
}

void DiskWorld::restoreElsewhere()
{
    store().restoreBackup();
    world().scheduler.turn();
}

} // namespace Kestry
