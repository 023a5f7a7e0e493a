#include "CloudSyncBridge.h"

#include <QVariantMap>

#include <utility>

#include "SignOut.h"
#include "TextForms.h"

namespace Kestry {
namespace {

using KestryCore::ConflictChoice;
using KestryCore::SyncConflict;
using KestryCore::SyncedSession;

QString text(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

QVariantMap sessionRow(const SyncedSession& session)
{
    const KestryCore::ActiveSession& active = *session.active;
    const std::string title =
        active.title.empty() ? "Session on " + session.ownerName : active.title;
    const std::string state = active.isPaused() ? "Paused" : "Running when last synced";
    const std::string elapsed = KestryCore::durationText(active.elapsed(active.checkpointAt));
    return {{"title", text(title)},
        {"detail", text(session.ownerName + " · " + state + " · " + elapsed)}};
}

} // namespace

CloudSyncBridge::CloudSyncBridge(World world) : world_(world)
{
    const auto follow = [this](const auto& observable) {
        subscriptions_.push_back(observable.observe([this](const auto&) { refresh(); }));
    };
    const KestryCore::CloudSyncFields& fields = world_.controller.fields();
    follow(world_.store.data());
    follow(fields.status);
    follow(fields.isSyncing);
    follow(fields.lastSync);
    follow(fields.errorMessage);
    follow(fields.offersUpload);
    follow(world_.account.name());
    follow(world_.account.isForgotten());
    follow(world_.account.leftBehind());
    const auto takeCalendar = [this](const KestryCore::ZoneCalendar& calendar) {
        moments_.emplace(calendar);
        summaries_.emplace(calendar);
        comparison_.emplace(calendar);
        hasCompared_ = false;
        refresh();
    };
    subscriptions_.push_back(world_.calendar.observe(takeCalendar));
    takeCalendar(*world_.calendar);
}

void CloudSyncBridge::refresh()
{
    refreshDetails();
    emit changed();
}

// The lists are told only when they differ: a view makes all its rows anew, and the keyboard would
// lose its place.
void CloudSyncBridge::refreshDetails()
{
    QVariantList sessions = sessionRows();
    if (sessions != sessions_) {
        sessions_ = std::move(sessions);
        emit sessionsChanged();
    }
    if (!hasNewConflicts()) {
        return;
    }
    QVariantList conflicts = conflictRows();
    if (conflicts != conflicts_) {
        conflicts_ = std::move(conflicts);
        emit conflictsChanged();
    }
}

// Most changes are none of a conflict, and of those that wait each is decoded and compared.
bool CloudSyncBridge::hasNewConflicts()
{
    const KestryCore::LedgerData& ledger = *world_.store.data();
    KestryCore::RecordList<SyncConflict> conflicts;
    if (ledger.replication) {
        conflicts = ledger.replication->conflicts;
    }
    const bool isNew = !hasCompared_ || !conflicts.sharesAllWith(compared_.conflicts)
        || !ledger.clients.sharesAllWith(compared_.clients)
        || !ledger.projects.sharesAllWith(compared_.projects);
    compared_ = {conflicts, ledger.clients, ledger.projects};
    hasCompared_ = true;
    return isNew;
}

QVariantList CloudSyncBridge::sessionRows() const
{
    const auto& state = world_.store.data()->replication;
    QVariantList rows;
    if (!state) {
        return rows;
    }
    // In the order of their keys, which is that of the identifiers' text.
    for (const auto& [recordID, session] : state->remoteSessions) {
        if (session.active) {
            rows.append(sessionRow(session));
        }
    }
    return rows;
}

QVariantList CloudSyncBridge::conflictRows() const
{
    const KestryCore::LedgerData& ledger = *world_.store.data();
    QVariantList rows;
    if (!ledger.replication) {
        return rows;
    }
    for (const SyncConflict& conflict : ledger.replication->conflicts) {
        QVariantList fields;
        for (const KestryCore::ComparedField& field : comparison_->fields(conflict, ledger)) {
            fields.append(QVariantMap{{"name", text(field.name)}, {"local", text(field.local)},
                {"remote", text(field.remote)}, {"differs", field.differs}});
        }
        const std::string summary = "On this Mac: " + summaries_->summary(conflict.local)
            + "\niCloud: " + summaries_->summary(conflict.remote);
        rows.append(
            QVariantMap{{"id", text(conflict.id)}, {"summary", text(summary)}, {"fields", fields}});
    }
    return rows;
}

bool CloudSyncBridge::canSwitch() const
{
    return !world_.store.isDemo() && !isSyncing() && (world_.controller.isConfigured() || isOn());
}

QString CloudSyncBridge::status() const
{
    if (!world_.controller.isConfigured()) {
        return "Unavailable in this build";
    }
    const KestryCore::CloudSyncFields& fields = world_.controller.fields();
    QString line = text(*fields.status);
    if (const auto& last = *fields.lastSync) {
        line += " · Last synced " + text(moments_->timeOfDay(*last));
    }
    return line;
}

QString CloudSyncBridge::failure() const
{
    return text(world_.controller.fields().errorMessage->value_or(""));
}

QString CloudSyncBridge::note() const
{
    return world_.controller.isConfigured()
        ? "Clients, projects, and history sync while Kestry is open, using the same iCloud "
          "account. Active timers stay controlled by their originating device. Conflicting "
          "versions are preserved for review."
        : "This build needs iCloud signing and provisioning. Your local workspace remains "
          "available.";
}

void CloudSyncBridge::toggle()
{
    if (!canSwitch()) {
        return;
    }
    if (isOn()) {
        world_.controller.disable();
    } else {
        world_.account.askAgain();
        world_.controller.enable();
    }
    emit changed();
}

QString CloudSyncBridge::account() const
{
    const auto& name = *world_.account.name();
    std::string lines = "Not signed in";
    if (name) {
        lines = name->user.empty() ? name->address : name->user + " · " + name->address;
    }
    if (*world_.account.isForgotten()) {
        lines += "\nThis desktop keeps no passwords. Sign in again after the next start.";
    }
    if (const auto& leftBehind = *world_.account.leftBehind()) {
        lines += "\n" + *leftBehind;
    }
    return text(lines);
}

void CloudSyncBridge::signOut()
{
    Kestry::signOut(world_.controller, world_.account);
}

void CloudSyncBridge::syncNow()
{
    world_.account.askAgain();
    world_.controller.syncNow();
}

void CloudSyncBridge::uploadAgain()
{
    world_.account.askAgain();
    world_.controller.uploadAgain();
}

void CloudSyncBridge::keepLocal(const QString& conflictID)
{
    resolve(conflictID, ConflictChoice::keepLocal);
}

void CloudSyncBridge::useCloud(const QString& conflictID)
{
    resolve(conflictID, ConflictChoice::useCloud);
}

void CloudSyncBridge::resolve(const QString& conflictID, ConflictChoice choice)
{
    try {
        world_.store.resolveSyncConflict(conflictID.toStdString(), choice);
    } catch (const std::exception&) {
        return; // The store has published why.
    }
}

} // namespace Kestry
