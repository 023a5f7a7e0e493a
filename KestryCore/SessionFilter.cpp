#include "SessionFilter.h"

#include <algorithm>

#include "RecordIndex.h"

namespace KestryCore {

namespace {

bool overlaps(const TimeSpan& span, const MonthInterval& month)
{
    return std::max(month.start, span.start) < std::min(month.end, span.end);
}

/// A session that is recorded as no time at all was worked in no month, whatever its spans say.
bool isWorkedIn(const MonthInterval& month, const TimeEntry& entry)
{
    return entry.duration() > 0.0 && std::ranges::any_of(entry.spans, [&](const TimeSpan& span) {
        return overlaps(span, month);
    });
}

} // namespace

SessionFilter::SessionFilter(
    const RecordIndex& index, const SessionCriteria& criteria, const std::string& locale)
    : index_(index), month_(criteria.month), clientID_(criteria.clientID)
{
    if (!criteria.search.empty()) {
        search_.emplace(criteria.search, locale);
    }
}

bool SessionFilter::matches(const TimeEntry& entry)
{
    return (!month_ || isWorkedIn(*month_, entry)) && (!clientID_ || isOfClient(entry))
        && (!search_ || holdsSearch(entry));
}

bool SessionFilter::isOfClient(const TimeEntry& entry) const
{
    const Project* project = index_.projectOf(entry);
    return project != nullptr && project->clientID == *clientID_;
}

bool SessionFilter::holdsSearch(const TimeEntry& entry)
{
    const Project* project = index_.projectOf(entry);
    const Client* client = index_.clientOf(project);
    searched_ = entry.title;
    searched_.append(" ").append(project == nullptr ? "" : project->name);
    searched_.append(" ").append(client == nullptr ? "" : client->name);
    return search_->isFoundIn(searched_);
}

} // namespace KestryCore
