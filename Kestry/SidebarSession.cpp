#include "SidebarSession.h"

#include <utility>

#include "SessionWords.h"
#include "SyncState.h"

namespace Kestry {

using KestryCore::ActiveSession;
using KestryCore::LedgerData;
using KestryCore::SyncedSession;

SidebarSession::SidebarSession(SessionBridge& session, const KestryCore::TimeStore& store,
    AppState& state, KestryCore::Clock now, KestryCore::MoneyText words)
    : session_(session), store_(store), state_(state), now_(std::move(now)),
      words_(std::move(words))
{
    connect(&session_, &SessionBridge::changed, this, &SidebarSession::refresh);
    connect(&session_, &SessionBridge::elapsedChanged, this, &SidebarSession::ticked);
    connect(&session_, &SessionBridge::titleWanted, this, &SidebarSession::writeTitle);
    subscriptions_.push_back(
        state_.sessionTitle.observe([this](const auto&) { emit titleChanged(); }));
    refresh();
}

QString SidebarSession::text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

void SidebarSession::refresh()
{
    target_ = sessionTarget(store_, state_, words_);
    const auto& active = store_.data()->active;
    if (renamed_ && (!active || active->id != *renamed_)) {
        renamed_.reset();
    }
    if (hadSession_ != active.has_value()) {
        hadSession_ = active.has_value();
        emit switched();
    }
    emit changed();
    emit titleChanged();
    emit ticked();
}

QString SidebarSession::heading() const
{
    return session_.hasSession() ? "Current session" : "New session";
}

QString SidebarSession::line() const
{
    const LedgerData& ledger = *store_.data();
    if (!ledger.active) {
        return {};
    }
    const auto* project = ledger.projects.find(ledger.active->projectID);
    return text(sessionDetail(project, project ? ledger.clients.find(project->clientID) : nullptr));
}

QString SidebarSession::value() const
{
    const auto& active = store_.data()->active;
    if (!active) {
        return {};
    }
    if (!active->isBillable) {
        return "Nonbillable session";
    }
    return active->rateIsKnown
        ? text(words_.money(active->earnedCents(store_.elapsed(now_())))) + " earned"
        : "Hourly rate not set";
}

const SyncedSession* SidebarSession::remoteSession() const
{
    const LedgerData& ledger = *store_.data();
    if (ledger.active || !ledger.replication) {
        return nullptr;
    }
    const SyncedSession* found = nullptr;
    for (const auto& [recordID, session] : ledger.replication->remoteSessions) {
        // One of our own is here after a restore, and no other device controls it.
        if (!session.active || session.ownerDeviceID == ledger.replication->deviceID) {
            continue;
        }
        if (!session.active->isPaused()) {
            return &session;
        }
        found = found ? found : &session;
    }
    return found;
}

QString SidebarSession::remoteTitle() const
{
    const SyncedSession* session = remoteSession();
    return session ? "Session on " + text(session->ownerName) : QString();
}

QString SidebarSession::remoteState() const
{
    const SyncedSession* session = remoteSession();
    if (!session) {
        return {};
    }
    const ActiveSession& active = *session->active;
    return active.isPaused() ? "Paused"
                             : "Running when last synced · "
            + text(KestryCore::durationText(active.elapsed(active.checkpointAt)));
}

void SidebarSession::edit()
{
    if (const auto& active = store_.data()->active) {
        state_.editor.assign(Editor{Editor::ActiveForm{active->id}});
    }
}

// The title.

QString SidebarSession::titleText() const
{
    if (renamed_) {
        return draft_;
    }
    return session_.hasSession() ? session_.title() : text(*state_.sessionTitle);
}

void SidebarSession::beginTitle()
{
    hasKeyboard_ = true;
}

void SidebarSession::typeTitle(const QString& title)
{
    const auto& active = store_.data()->active;
    if (!active && !renamed_) {
        if (title != text(*state_.sessionTitle)) {
            state_.sessionTitle.assign(title.toStdString());
        }
    } else if (renamed_ || (hasKeyboard_ && title != text(active->title))) {
        renamed_ = renamed_ ? renamed_ : active->id;
        draft_ = title;
    }
}

void SidebarSession::submitTitle()
{
    if (session_.hasSession()) {
        writeTitle();
    } else {
        session_.start();
    }
}

void SidebarSession::cancelTitle()
{
    renamed_.reset();
    emit titleChanged();
}

void SidebarSession::endTitle()
{
    hasKeyboard_ = false;
    writeTitle();
}

void SidebarSession::writeTitle()
{
    const auto session = renamed_;
    const auto& active = store_.data()->active;
    const bool isToWrite =
        session && active && active->id == *session && draft_ != text(active->title);
    if (!isToWrite || session_.rename(text(session->text()), draft_)) {
        renamed_.reset();
    }
    emit titleChanged();
}

} // namespace Kestry
