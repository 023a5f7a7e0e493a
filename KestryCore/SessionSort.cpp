#include "SessionSort.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace KestryCore {

namespace {

/// What a session is sorted by: the lower number goes first, then the title as the direction has
/// it, then the later start, then the lower identifier.
struct SortItem {
    const TimeEntry* session;
    Date start;
    double number = 0.0;         ///< 0 when the field is the title.
    std::string_view titleKey{}; ///< Empty when the field is a number.
};

/// The value of a field in a direction, for which the lower number goes first.
double sortNumber(const TimeEntry& session, const SessionSort& sort)
{
    const double direction = sort.ascending ? 1.0 : -1.0;
    switch (sort.field) {
    case SessionSortField::date:
        return direction * session.startedAt().seconds;
    case SessionSortField::duration:
        return direction * session.duration();
    case SessionSortField::value: {
        const bool hasPrice = session.isBillable && session.rateIsKnown;
        return hasPrice ? direction * session.earnedCents()
                        : std::numeric_limits<double>::infinity();
    }
    case SessionSortField::title:
        break;
    }
    return 0.0;
}

bool goesBefore(const SortItem& left, const SortItem& right, bool ascending)
{
    if (left.number != right.number) {
        return left.number < right.number;
    }
    if (const int order = left.titleKey.compare(right.titleKey); order != 0) {
        return (order < 0) == ascending;
    }
    if (left.start != right.start) {
        return left.start > right.start;
    }
    return left.session->id < right.session->id; // in the order of their texts
}

std::vector<SortItem> sortItems(const std::vector<const TimeEntry*>& sessions,
    const SessionSort& sort, const SessionTitle& title, const LocalizedOrder& order)
{
    std::vector<SortItem> items;
    items.reserve(sessions.size());
    for (const TimeEntry* session : sessions) {
        items.push_back({session, session->startedAt(), sortNumber(*session, sort)});
    }
    if (sort.field == SessionSortField::title) {
        std::vector<std::string_view> titles;
        titles.reserve(sessions.size());
        for (const TimeEntry* session : sessions) {
            titles.push_back(title(*session));
        }
        const std::vector<std::string_view> keys = order.keys(titles);
        for (std::size_t index = 0; index < items.size(); ++index) {
            items[index].titleKey = keys[index];
        }
    }
    return items;
}

} // namespace

std::string_view sessionSortFieldName(SessionSortField field)
{
    switch (field) {
    case SessionSortField::title:
        return "title";
    case SessionSortField::date:
        return "date";
    case SessionSortField::duration:
        return "duration";
    case SessionSortField::value:
        break;
    }
    return "value";
}

void SessionSort::select(SessionSortField selected)
{
    ascending = selected == field ? !ascending : selected == SessionSortField::title;
    field = selected;
}

std::vector<const TimeEntry*> SessionSort::sorted(const std::vector<const TimeEntry*>& sessions,
    const SessionTitle& title, const LocalizedOrder& order) const
{
    std::vector<SortItem> items = sortItems(sessions, *this, title, order);
    std::ranges::sort(items, [this](const SortItem& left, const SortItem& right) {
        return goesBefore(left, right, ascending);
    });
    std::vector<const TimeEntry*> result;
    result.reserve(items.size());
    for (const SortItem& item : items) {
        result.push_back(item.session);
    }
    return result;
}

} // namespace KestryCore
