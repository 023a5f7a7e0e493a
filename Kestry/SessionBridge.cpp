#include "SessionBridge.h"

#include <cmath>

#include "ActivityAngle.h"
#include "ClockJumpText.h"
#include "NotchGeometry.h"
#include "SessionLabel.h"
#include "SessionTitleSuggestions.h"
#include "SpokenDuration.h"
#include "TextForms.h"

namespace Kestry {

using KestryCore::Uuid;

namespace {

constexpr int suggestionLimit = 4;

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace

SessionBridge::SessionBridge(Commander& commander, const KestryCore::TimeStore& store,
    const AppState& state, KestryCore::Clock now, KestryCore::Scheduler& scheduler, Locale locale)
    : commander_(commander), store_(store), state_(state), now_(std::move(now)),
      scheduler_(scheduler), calendar_(locale.calendar), words_(locale.words),
      facts_(store, std::move(locale.words))
{
    const auto follow = [this](const auto& observable) {
        subscriptions_.push_back(observable.observe([this](const auto&) { refreshSoon(); }));
    };
    follow(store_.data());
    follow(store_.errorMessage());
    follow(store_.clockJump());
    subscriptions_.push_back(calendar_.observe([this](const auto&) {
        facts_.forgetSaved();
        refreshSoon();
    }));
    follow(state_.sessionClientID);
    follow(state_.selectedClient);
    follow(state_.selectedProject);
    commander_.installTitleWriter([this] { return writeTitle(); });
    refresh();
}

bool SessionBridge::writeTitle()
{
    wasRefused_ = false;
    emit titleWanted();
    return !wasRefused_;
}

bool SessionBridge::hasSession() const
{
    return store_.data()->active.has_value();
}

bool SessionBridge::isRunning() const
{
    return hasSession() && !store_.data()->active->isPaused();
}

QString SessionBridge::sessionID() const
{
    return hasSession() ? text(store_.data()->active->id.text()) : QString();
}

QString SessionBridge::title() const
{
    return hasSession() ? text(store_.data()->active->title) : QString();
}

QString SessionBridge::label() const
{
    const auto [project, client] = sessionRecords();
    const auto& active = store_.data()->active;
    return text(KestryCore::sessionLabel(active ? active->title : "", project, client));
}

SessionBridge::Records SessionBridge::sessionRecords() const
{
    const KestryCore::LedgerData& ledger = *store_.data();
    const auto* project = ledger.active ? ledger.projects.find(ledger.active->projectID) : nullptr;
    return {project, project ? ledger.clients.find(project->clientID) : nullptr};
}

QString SessionBridge::projectName() const
{
    const auto [project, client] = sessionRecords();
    return KestryCore::standsForItsSessions(project, client) ? text(project->name) : QString();
}

QString SessionBridge::message() const
{
    if (const auto& failure = *store_.errorMessage()) {
        return text(*failure);
    }
    const auto& jump = *store_.clockJump();
    return jump ? text(clockJumpText(*jump, *calendar_)) : QString();
}

bool SessionBridge::hasClients() const
{
    return !store_.data()->clients.empty();
}

SessionTarget SessionBridge::target() const
{
    return sessionTarget(store_, state_, words_);
}

QString SessionBridge::targetClient() const
{
    return text(target().client);
}

QString SessionBridge::targetDetail() const
{
    const SessionTarget next = target();
    return text(next.project.empty() ? next.rate : next.project + " · " + next.rate);
}

QString SessionBridge::targetLabel() const
{
    return text(target().accessibilityLabel);
}

double SessionBridge::panelHeight() const
{
    return detailHeight(detailContent(store_));
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

QString SessionBridge::sessionValue() const
{
    return text(facts_.sessionValue(now_()));
}

QString SessionBridge::monthValue() const
{
    return text(month_.earned);
}

QString SessionBridge::monthExplanation() const
{
    return text(month_.explanation);
}

double SessionBridge::activityAngle() const
{
    return Kestry::activityAngle(elapsedSeconds());
}

QStringList SessionBridge::titleSuggestions(const QString& typed) const
{
    QStringList titles;
    for (const std::string& title : KestryCore::SessionTitleSuggestions::matches(
             typed.toStdString(), store_.data()->entries, suggestionLimit)) {
        titles << text(title);
    }
    return titles;
}

void SessionBridge::start()
{
    commander_.startSession();
    refresh();
}

void SessionBridge::pauseOrResume()
{
    commander_.pauseOrResume();
    refresh();
}

void SessionBridge::stop()
{
    commander_.stopSession();
    refresh();
}

bool SessionBridge::rename(const QString& sessionID, const QString& title)
{
    const auto id = Uuid::parse(sessionID.toStdString());
    wasRefused_ = !id || !commander_.renameSession(*id, title.toStdString());
    refresh();
    return !wasRefused_;
}

void SessionBridge::askForClient()
{
    commander_.newClient();
}

void SessionBridge::refreshSoon()
{
    // Whoever made the change has its answer first; views that draw anew are not waited for.
    refresh_ = scheduler_.after(0.0, [this] { refresh(); });
}

void SessionBridge::refresh()
{
    refresh_.cancel();
    emit changed();
    tick();
}

void SessionBridge::tick()
{
    // The month is shown beside a session only.
    if (hasSession()) {
        SessionFacts::Month month = facts_.month(now_(), *calendar_);
        if (month != month_) {
            month_ = std::move(month);
            emit monthChanged();
        }
    }
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

} // namespace Kestry
