#include "SessionsBridge.h"

#include <algorithm>
#include <utility>

namespace Kestry {

using KestryCore::SessionListPlace;
using KestryCore::SessionSortField;
using KestryCore::Uuid;

namespace {

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

} // namespace

SessionsBridge::SessionsBridge(SessionList::World world, SessionListPlace place)
    : store_(world.store), state_(world.state), calendar_(world.calendar), query_(place),
      list_(std::move(world), *this)
{
    connect(&list_, &SessionList::changed, this, &SessionsBridge::changed);
}

void SessionsBridge::open()
{
    const auto& clientID = isEmbedded() ? query_.clientID() : *state_.selectedClient;
    query_ = KestryCore::SessionQuery(
        isEmbedded() ? SessionListPlace::dashboard : SessionListPlace::page, clientID);
    order_.emplace(calendar_->locale());
    subscriptions_.clear();
    const auto followState = [this](const auto&) { this->followState(); };
    subscriptions_.push_back(state_.selectedClient.observe(followState));
    subscriptions_.push_back(state_.sessionsMonth.observe(followState));
    shownMonth_ = *state_.sessionsMonth;
    list_.open(nextRevealID());
}

void SessionsBridge::close()
{
    subscriptions_.clear();
    list_.close();
    foundCount_ = 0;
    order_.reset();
}

QString SessionsBridge::nextRevealID()
{
    return QString::number(++revealNumber_);
}

void SessionsBridge::showAnew()
{
    shownMonth_ = *state_.sessionsMonth;
    list_.showAnew(nextRevealID());
}

void SessionsBridge::followState()
{
    const bool isOther =
        query_.clientID() != *state_.selectedClient || shownMonth_ != *state_.sessionsMonth;
    if (!isEmbedded() && isOther) {
        query_.setClientID(*state_.selectedClient);
        showAnew();
    }
}

void SessionsBridge::setClientID(std::optional<Uuid> clientID)
{
    query_.setClientID(clientID);
    if (list_.isOpen()) {
        showAnew();
    }
}

KestryCore::SessionSource SessionsBridge::source(const KestryCore::LedgerData& ledger) const
{
    return {ledger, *calendar_, *order_, *state_.sessionsMonth};
}

SessionsModel::Entries SessionsBridge::sessions(const KestryCore::LedgerData& ledger)
{
    SessionsModel::Entries found = query_.sessions(source(ledger));
    foundCount_ = found.size();
    found.resize(query_.shownCount(foundCount_));
    return found;
}

SessionSelection::Active SessionsBridge::active(
    const KestryCore::LedgerData& ledger, KestryCore::Date until)
{
    if (query_.showsActive(source(ledger), until)) {
        return Active::shown;
    }
    return hasMonth() ? Active::notYet : Active::hidden;
}

// What is shown.

bool SessionsBridge::hasMonth() const
{
    return !isEmbedded() && state_.sessionsMonth->has_value();
}

QString SessionsBridge::title() const
{
    const auto& id = query_.clientID();
    const KestryCore::Client* client = id ? store_.data()->clients.find(*id) : nullptr;
    return client && !isEmbedded() ? text(client->name) + " sessions" : "Sessions";
}

QString SessionsBridge::month() const
{
    return hasMonth() && list_.isOpen() ? text(list_.days().month(**state_.sessionsMonth))
                                        : QString();
}

QString SessionsBridge::countText() const
{
    return QString::number(foundCount_ + (list_.showsActive() ? 1 : 0)) + " sessions";
}

QString SessionsBridge::exportLabel() const
{
    return query_.clientID() || hasMonth() ? "Export all" : "Export";
}

QString SessionsBridge::exportHelp() const
{
    return QString::number(store_.data()->entries.size()) + " saved sessions · CSV";
}

QString SessionsBridge::emptyTitle() const
{
    if (!list_.isEmpty()) {
        return {};
    }
    if (hasMonth()) {
        return "No sessions this month";
    }
    return query_.search().empty() ? "No sessions yet" : "No matching sessions";
}

QString SessionsBridge::emptyText() const
{
    if (!list_.isEmpty()) {
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

// The criteria.

void SessionsBridge::setSearch(const QString& search)
{
    if (search.toStdString() != query_.search()) {
        query_.setSearch(search.toStdString());
        list_.refresh(SessionList::Rows::other);
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
    list_.refresh(SessionList::Rows::other);
}

void SessionsBridge::showMore()
{
    query_.showMore();
    list_.refresh(SessionList::Rows::same);
}

void SessionsBridge::clearMonth()
{
    state_.sessionsMonth.assign(std::nullopt);
}

void SessionsBridge::addTime()
{
    state_.editor.assign(Editor{Editor::EntryForm{}});
}

} // namespace Kestry
