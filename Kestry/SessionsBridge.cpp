#include "SessionsBridge.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "LocaleFolding.h"
#include "SessionValue.h"
#include "SessionWords.h"

namespace Kestry {

using KestryCore::SessionListPlace;
using KestryCore::SessionSortField;
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

SessionsBridge::SessionsBridge(World world, SessionListPlace place)
    : world_(std::move(world)), query_(place)
{
    rows_.setLogos(world_.logos);
}

void SessionsBridge::open()
{
    const auto& clientID = isEmbedded() ? query_.clientID() : *world_.state.selectedClient;
    query_ = KestryCore::SessionQuery(
        isEmbedded() ? SessionListPlace::dashboard : SessionListPlace::page, clientID);
    loadTexts();
    followWorld();
    showAnew();
}

void SessionsBridge::showAnew()
{
    shownMonth_ = *world_.state.sessionsMonth;
    ++revealNumber_;
    query(Rows::other);
    emit shownAnew();
}

void SessionsBridge::close()
{
    subscriptions_.clear();
    refresh_.cancel();
    tick_.cancel();
    typing_.cancel();
    typed_.clear();
    setPendingDelete(std::nullopt);
    rows_.show({}, {});
    foundCount_ = 0;
    showsActive_ = false;
    texts_.reset();
}

void SessionsBridge::followWorld()
{
    subscriptions_.clear();
    subscriptions_.push_back(
        world_.store.data().observe([this](const auto&) { followLedgerSoon(); }));
    subscriptions_.push_back(world_.calendar.observe([this](const auto&) {
        loadTexts();
        query(Rows::same);
    }));
    const auto followState = [this](const auto&) { this->followState(); };
    subscriptions_.push_back(world_.state.selectedClient.observe(followState));
    subscriptions_.push_back(world_.state.sessionsMonth.observe(followState));
}

void SessionsBridge::followLedgerSoon()
{
    // Whoever made the change has its answer first.
    refresh_ = world_.scheduler.after(0.0, [this] { followLedger(); });
}

void SessionsBridge::followLedger()
{
    const KestryCore::LedgerData& before = rows_.ledger();
    const KestryCore::LedgerData& now = *world_.store.data();
    // A checkpoint changes none of these, and comes all the time.
    const bool isSame = before.entries.sharesAllWith(now.entries)
        && before.clients.sharesAllWith(now.clients) && before.projects.sharesAllWith(now.projects);
    if (isSame) {
        refreshActive();
        emit changed();
        return;
    }
    if (pendingDelete_ && !now.entries.find(*pendingDelete_)) {
        setPendingDelete(std::nullopt);
    }
    query(Rows::same);
}

void SessionsBridge::followState()
{
    const bool isOther = query_.clientID() != *world_.state.selectedClient
        || shownMonth_ != *world_.state.sessionsMonth;
    if (!isEmbedded() && isOther) {
        query_.setClientID(*world_.state.selectedClient);
        showAnew();
    }
}

void SessionsBridge::setClientID(std::optional<Uuid> clientID)
{
    query_.setClientID(clientID);
    if (isOpen()) {
        showAnew();
    }
}

void SessionsBridge::loadTexts()
{
    const KestryCore::ZoneCalendar& calendar = *world_.calendar;
    texts_.emplace(
        Texts{KestryCore::LocalizedOrder(calendar.locale()), KestryCore::DayText(calendar)});
    rows_.setWords({texts_->days, world_.money});
}

KestryCore::SessionSource SessionsBridge::source() const
{
    return {*world_.store.data(), *world_.calendar, texts_->order, *world_.state.sessionsMonth};
}

void SessionsBridge::query(Rows rows)
{
    SessionsModel::Entries found = query_.sessions(source());
    foundCount_ = found.size();
    found.resize(query_.shownCount(foundCount_));
    if (rows == Rows::same) {
        rows_.update(*world_.store.data(), std::move(found));
    } else {
        rows_.show(*world_.store.data(), std::move(found));
    }
    refreshActive();
    emit changed();
}

void SessionsBridge::refreshActive()
{
    const KestryCore::Date until = world_.store.countedUntil(world_.now());
    showsActive_ = query_.showsActive(source(), until);
    active_ = activeRow(*world_.store.data(), world_.logos);
    tick();
}

bool SessionsBridge::isRunning() const
{
    const auto& active = world_.store.data()->active;
    return active && !active->isPaused();
}

void SessionsBridge::tick()
{
    emit ticked();
    // A session that has only just begun is in no month yet, so a month may have to wait for it.
    if (!isRunning() || !(showsActive_ || hasMonth())) {
        tick_.cancel();
        return;
    }
    const double seconds = elapsedSeconds();
    const double untilNext = std::isfinite(seconds) ? 1.0 - (seconds - std::floor(seconds)) : 1.0;
    tick_ = world_.scheduler.after(untilNext, [this] {
        if (showsActive_) {
            tick();
        } else {
            refreshActive();
            emit changed();
        }
    });
}

double SessionsBridge::elapsedSeconds() const
{
    return world_.store.elapsed(world_.now());
}

// What is shown.

bool SessionsBridge::hasMonth() const
{
    return !isEmbedded() && world_.state.sessionsMonth->has_value();
}

QString SessionsBridge::title() const
{
    const auto& id = query_.clientID();
    const KestryCore::Client* client = id ? world_.store.data()->clients.find(*id) : nullptr;
    return client && !isEmbedded() ? text(client->name) + " sessions" : "Sessions";
}

QString SessionsBridge::month() const
{
    return hasMonth() && isOpen() ? text(texts_->days.month(**world_.state.sessionsMonth))
                                  : QString();
}

QString SessionsBridge::countText() const
{
    return QString::number(foundCount_ + (showsActive_ ? 1 : 0)) + " sessions";
}

QString SessionsBridge::exportLabel() const
{
    return query_.clientID() || hasMonth() ? "Export all" : "Export";
}

QString SessionsBridge::exportHelp() const
{
    return QString::number(world_.store.data()->entries.size()) + " saved sessions · CSV";
}

QString SessionsBridge::emptyTitle() const
{
    if (foundCount_ > 0 || showsActive_) {
        return {};
    }
    if (hasMonth()) {
        return "No sessions this month";
    }
    return query_.search().empty() ? "No sessions yet" : "No matching sessions";
}

QString SessionsBridge::emptyText() const
{
    if (foundCount_ > 0 || showsActive_) {
        return {};
    }
    if (hasMonth()) {
        return "Clear the month filter or try a different search.";
    }
    return query_.search().empty() ? "Start a timer or add time you’ve already worked."
                                   : "Try a different client, project, or description.";
}

SessionColumn SessionsBridge::column(SessionSortField field) const
{
    return sessionColumn(field, query_.sort());
}

SessionColumn SessionsBridge::titleColumn() const
{
    return column(SessionSortField::title);
}

SessionColumn SessionsBridge::dateColumn() const
{
    return column(SessionSortField::date);
}

SessionColumn SessionsBridge::durationColumn() const
{
    return column(SessionSortField::duration);
}

SessionColumn SessionsBridge::valueColumn() const
{
    return column(SessionSortField::value);
}

QString SessionsBridge::elapsed() const
{
    return text(KestryCore::clockText(elapsedSeconds()));
}

QString SessionsBridge::activeValue() const
{
    const auto& active = world_.store.data()->active;
    return active ? text(KestryCore::valueText(*active, elapsedSeconds(), world_.money))
                  : QString();
}

QString SessionsBridge::activeSpoken() const
{
    return text(spokenHoursAndMinutes(elapsedSeconds())) + ", " + activeValue();
}

// The criteria.

void SessionsBridge::setSearch(const QString& search)
{
    if (search.toStdString() != query_.search()) {
        query_.setSearch(search.toStdString());
        query(Rows::other);
    }
}

void SessionsBridge::sortBy(int field)
{
    const auto selected = static_cast<SessionSortField>(field);
    if (std::ranges::find(KestryCore::allSessionSortFields, selected)
        == KestryCore::allSessionSortFields.end()) {
        return;
    }
    KestryCore::SessionSort sort = query_.sort();
    sort.select(selected);
    query_.setSort(sort);
    query(Rows::other);
}

void SessionsBridge::showMore()
{
    query_.showMore();
    query(Rows::same);
}

void SessionsBridge::clearMonth()
{
    world_.state.sessionsMonth.assign(std::nullopt);
}

// What is done with sessions.

void SessionsBridge::edit(int row)
{
    if (const TimeEntry* entry = rows_.entry(row)) {
        world_.state.editor.assign(Editor{Editor::EntryForm{entry->id}});
    }
}

void SessionsBridge::editActive()
{
    if (const auto& active = world_.store.data()->active) {
        world_.state.editor.assign(Editor{Editor::ActiveForm{active->id}});
    }
}

void SessionsBridge::addTime()
{
    world_.state.editor.assign(Editor{Editor::EntryForm{}});
}

void SessionsBridge::setPendingDelete(std::optional<Uuid> id)
{
    if (id != pendingDelete_) {
        pendingDelete_ = id;
        emit askingToDeleteChanged();
    }
}

void SessionsBridge::askToDelete(int row)
{
    if (const TimeEntry* entry = rows_.entry(row)) {
        setPendingDelete(entry->id);
    }
}

void SessionsBridge::cancelDelete()
{
    setPendingDelete(std::nullopt);
}

void SessionsBridge::confirmDelete()
{
    const std::optional<Uuid> id = pendingDelete_;
    setPendingDelete(std::nullopt);
    if (!id) {
        return;
    }
    try {
        world_.store.deleteEntry(*id);
    } catch (const std::exception& failure) {
        world_.store.reportFailure(KestryCore::failureText(failure));
    }
}

Menu SessionsBridge::rowMenu(const Uuid& id)
{
    return {
        {.text = "Edit session",
            .action = [this, id] { world_.state.editor.assign(Editor{Editor::EntryForm{id}}); }},
        {.text = "Delete session", .action = [this, id] { askToDelete(rows_.row(id)); }},
    };
}

Menu SessionsBridge::activeMenu()
{
    return {
        {.text = "Edit session", .action = [this] { editActive(); }},
        {.text = isRunning() ? "Pause session" : "Resume session",
            .action = [this] { world_.commander.pauseOrResume(); }},
        {.text = "Stop and save session", .action = [this] { world_.commander.stopSession(); }},
    };
}

void SessionsBridge::openMenu(int row, QQuickItem* item)
{
    const TimeEntry* entry = rows_.entry(row);
    if (entry && item) {
        world_.openMenu(rowMenu(entry->id), text(rows_.label(row)), *item);
    }
}

void SessionsBridge::openActiveMenu(QQuickItem* item)
{
    if (world_.store.data()->active && item) {
        world_.openMenu(activeMenu(), active_.label, *item);
    }
}

int SessionsBridge::typeAhead(const QString& text, int currentRow)
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

int SessionsBridge::findRow(const std::string& beginning, int from) const
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
