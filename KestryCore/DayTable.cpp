#include "DayTable.h"

#include <algorithm>

namespace KestryCore {

DayTable::DayTable(const MonthInterval& month, const Calendar& calendar) : calendar_(calendar)
{
    constexpr std::size_t mostDays = 31;
    rows_.reserve(mostDays);
    Date date = month.start;
    while (date < month.end) {
        const std::optional<Date> next = calendar.startOfNextDay(date);
        // A row without length holds no date, so that the calendar is asked for those of its day.
        rows_.push_back({DailyTotal{date}, next.value_or(date)});
        if (!next || !(*next > date)) {
            break;
        }
        date = *next;
    }
    if (!rows_.empty() && calendar.startOfDay(month.start) != month.start) {
        rows_.front().end = month.start;
    }
}

std::optional<DayTable::Day> DayTable::dayOf(Date date)
{
    const auto after = firstAfter(date);
    if (after != rows_.begin() && date < std::prev(after)->end) {
        Row& row = *std::prev(after);
        return Day{row.total, row.end};
    }
    const Date start = calendar_.startOfDay(date);
    const std::optional<Date> end = calendar_.startOfNextDay(date);
    if (!end || !(*end > date)) {
        return std::nullopt;
    }
    auto place = firstAfter(start);
    if (place == rows_.begin() || std::prev(place)->total.date != start) {
        place = std::next(rows_.insert(place, Row{DailyTotal{start}, *end}));
    }
    return Day{std::prev(place)->total, *end};
}

std::vector<DailyTotal> DayTable::totals() const
{
    std::vector<DailyTotal> totals;
    totals.reserve(rows_.size());
    for (const Row& row : rows_) {
        totals.push_back(row.total);
    }
    return totals;
}

DayTable::Rows::iterator DayTable::firstAfter(Date date)
{
    return std::ranges::upper_bound(
        rows_, date.seconds, {}, [](const Row& row) { return row.total.date.seconds; });
}

} // namespace KestryCore
