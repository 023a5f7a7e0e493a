#include "SessionList.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "LocaleFolding.h"
#include "SessionValue.h"
#include "SessionWords.h"

namespace Kestry {

using KestryCore::TimeEntry;
using KestryCore::Uuid;

namespace {

constexpr double typingPauseSeconds = 1.0;
constexpr int none = -1;

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace

SessionList::SessionList(World world, SessionSelection& selection)
    : world_(std::move(world)), selection_(selection)
{
    rows_.setLogos(world_.logos);
}

void SessionList::open(const QString& revealID)
{
    loadTexts();
    followWorld();
    showAnew(revealID);
}

void SessionList::showAnew(const QString& revealID)
{
    revealID_ = revealID;
    refresh(Rows::other);
    emit shownAnew();
}

void SessionList::close()
{
    subscriptions_.clear();
    refresh_.cancel();
    tick_.cancel();
    typing_.cancel();
    typed_.clear();
    world_.deletion.cancel();
    rows_.show({}, {});
    activeShown_ = SessionSelection::Active::hidden;
    days_.reset();
}

void SessionList::followWorld()
{
    subscriptions_.clear();
    subscriptions_.push_back(
        world_.store.data().observe([this](const auto&) { followLedgerSoon(); }));
    subscriptions_.push_back(world_.calendar.observe([this](const auto&) {
        loadTexts();
        emit wordsChanged();
        refresh(Rows::same);
    }));
}

void SessionList::followLedgerSoon()
{
    // Whoever made the change has its answer first.
    refresh_ = world_.scheduler.after(0.0, [this] { followLedger(); });
}

void SessionList::followLedger()
{
    const KestryCore::LedgerData& before = rows_.ledger();
    const KestryCore::LedgerData& now = *world_.store.data();
    // A checkpoint changes none of these, and comes all the time.
    const bool isSame = before.entries.sharesAllWith(now.entries)
        && before.clients.sharesAllWith(now.clients) && before.projects.sharesAllWith(now.projects);
    if (isSame) {
        refreshActive();
        emit changed();
    } else {
        refresh(Rows::same);
    }
}

void SessionList::loadTexts()
{
    days_.emplace(*world_.calendar);
    rows_.setWords({*days_, world_.money});
}

void SessionList::refresh(Rows rows)
{
    const KestryCore::LedgerData& ledger = *world_.store.data();
    SessionsModel::Entries found = selection_.sessions(ledger);
    if (rows == Rows::same) {
        rows_.update(ledger, std::move(found));
    } else {
        rows_.show(ledger, std::move(found));
    }
    refreshActive();
    emit changed();
}

void SessionList::refreshActive()
{
    const KestryCore::LedgerData& ledger = *world_.store.data();
    const KestryCore::Date until = world_.store.countedUntil(world_.now());
    activeShown_ =
        ledger.active ? selection_.active(ledger, until) : SessionSelection::Active::hidden;
    active_ = activeRow(ledger, world_.logos);
    tick();
}

bool SessionList::isRunning() const
{
    const auto& active = world_.store.data()->active;
    return active && !active->isPaused();
}

void SessionList::tick()
{
    emit ticked();
    if (!isRunning() || activeShown_ == SessionSelection::Active::hidden) {
        tick_.cancel();
        return;
    }
    const double seconds = elapsedSeconds();
    const double untilNext = std::isfinite(seconds) ? 1.0 - (seconds - std::floor(seconds)) : 1.0;
    tick_ = world_.scheduler.after(untilNext, [this] {
        if (showsActive()) {
            tick();
        } else {
            refreshActive();
            emit changed();
        }
    });
}

double SessionList::elapsedSeconds() const
{
    return world_.store.elapsed(world_.now());
}

QString SessionList::elapsed() const
{
    return text(KestryCore::clockText(elapsedSeconds()));
}

QString SessionList::activeValue() const
{
    const auto& active = world_.store.data()->active;
    return active ? text(KestryCore::valueText(*active, elapsedSeconds(), world_.money))
                  : QString();
}

QString SessionList::activeSpoken() const
{
    return text(spokenHoursAndMinutes(elapsedSeconds())) + ", " + activeValue();
}

// What is done with sessions.

void SessionList::edit(int row)
{
    if (const TimeEntry* entry = rows_.entry(row)) {
        world_.state.editor.assign(Editor{Editor::EntryForm{entry->id}});
    }
}

void SessionList::editActive()
{
    if (const auto& active = world_.store.data()->active) {
        world_.state.editor.assign(Editor{Editor::ActiveForm{active->id}});
    }
}

void SessionList::askToDelete(int row)
{
    if (const TimeEntry* entry = rows_.entry(row)) {
        world_.deletion.ask(entry->id);
    }
}

Menu SessionList::rowMenu(const Uuid& id)
{
    return {
        {.text = "Edit session",
            .action = [this, id] { world_.state.editor.assign(Editor{Editor::EntryForm{id}}); }},
        {.text = "Delete session", .action = [this, id] { world_.deletion.ask(id); }},
    };
}

Menu SessionList::activeMenu()
{
    return {
        {.text = "Edit session", .action = [this] { editActive(); }},
        {.text = isRunning() ? "Pause session" : "Resume session",
            .action = [this] { world_.commander.pauseOrResume(); }},
        {.text = "Stop and save session", .action = [this] { world_.commander.stopSession(); }},
    };
}

void SessionList::openMenu(int row, QQuickItem* item)
{
    const TimeEntry* entry = rows_.entry(row);
    if (entry && item) {
        world_.openMenu(rowMenu(entry->id), text(rows_.label(row)), *item);
    }
}

void SessionList::openActiveMenu(QQuickItem* item)
{
    if (world_.store.data()->active && item) {
        world_.openMenu(activeMenu(), active_.label, *item);
    }
}

int SessionList::typeAhead(const QString& text, int currentRow)
{
    const std::string letters = text.toStdString();
    if (typed_.empty() && text.trimmed().isEmpty()) {
        return none;
    }
    typing_ = world_.scheduler.after(typingPauseSeconds, [this] { typed_.clear(); });
    // More of a word may be of the same row; a first letter goes on to the next one.
    int found = typed_.empty() ? none : findRow(typed_ + letters, currentRow);
    typed_ = found == none ? letters : typed_ + letters;
    if (found == none) {
        found = findRow(letters, currentRow + 1);
    }
    return found;
}

int SessionList::findRow(const std::string& beginning, int from) const
{
    KestryCore::LocaleFolding folding(world_.calendar->locale());
    std::u16string wanted;
    folding.fold(beginning, wanted);
    std::u16string name;
    const int count = rows_.rowCount();
    for (int distance = 0; distance < count; ++distance) {
        const int row = (std::max(from, 0) + distance) % count;
        folding.fold(rows_.label(row), name);
        if (name.starts_with(wanted)) {
            return row;
        }
    }
    return none;
}

} // namespace Kestry
