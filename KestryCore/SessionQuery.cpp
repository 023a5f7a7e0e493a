#include "SessionQuery.h"

#include <algorithm>
#include <utility>

#include "ActiveAsEntry.h"
#include "RecordIndex.h"
#include "SessionFilter.h"
#include "SessionLabel.h"

namespace KestryCore {

SessionQuery::SessionQuery(SessionListPlace place, std::optional<Uuid> clientID)
    : place_(place), clientID_(clientID)
{
}

void SessionQuery::setClientID(std::optional<Uuid> clientID)
{
    if (clientID != clientID_) {
        clientID_ = clientID;
        search_.clear();
        visibleCount_ = pageLength;
    }
}

void SessionQuery::setSearch(std::string search)
{
    if (search != search_) {
        search_ = std::move(search);
        visibleCount_ = pageLength;
    }
}

void SessionQuery::setSort(const SessionSort& sort)
{
    if (sort != sort_) {
        sort_ = sort;
        visibleCount_ = pageLength;
    }
}

std::size_t SessionQuery::shownCount(std::size_t found) const
{
    return embedded() ? std::min(found, visibleCount_) : found;
}

bool SessionQuery::offersMore(std::size_t found) const
{
    return embedded() && visibleCount_ < found;
}

SessionFilter SessionQuery::filter(const RecordIndex& index, const SessionSource& source) const
{
    SessionCriteria criteria{std::nullopt, clientID_, search_};
    if (!embedded() && source.sessionsMonth) {
        criteria.month = source.calendar.month(*source.sessionsMonth);
    }
    return {index, criteria, source.order.locale()};
}

std::vector<const TimeEntry*> SessionQuery::sessions(const SessionSource& source) const
{
    const RecordIndex index(source.ledger);
    SessionFilter filter = this->filter(index, source);
    std::vector<const TimeEntry*> matching;
    for (const TimeEntry& entry : source.ledger.entries) {
        if (filter.matches(entry)) {
            matching.push_back(&entry);
        }
    }
    const auto label = [&](const TimeEntry& entry) { return sessionLabel(entry, index); };
    return sort_.sorted(matching, label, source.order);
}

bool SessionQuery::matches(const TimeEntry& entry, const SessionSource& source) const
{
    const RecordIndex index(source.ledger);
    return filter(index, source).matches(entry);
}

bool SessionQuery::showsActive(const SessionSource& source, Date now) const
{
    const auto& active = source.ledger.active;
    return active && matches(listedEntry(*active, now), source);
}

} // namespace KestryCore
