#pragma once

#include <optional>
#include <vector>

#include "Calendar.h"

namespace KestryCore {

/// One calendar day of one month.
struct DailyTotal {
    Date date;            ///< The first moment of the day.
    double seconds = 0.0; ///< Of all sessions, billable or not.
    double earnedCents = 0.0;

    friend bool operator==(const DailyTotal&, const DailyTotal&) = default;
};

/// The days of one month, each with its total: worked out once, because asking the calendar for
/// the day of each slice of time would take longer than all the rest. Days that the calendar
/// could not name beforehand are asked for when they are needed.
class DayTable {
public:
    /// The calendar is only used while the table is.
    DayTable(const MonthInterval& month, const Calendar& calendar);

    struct Day {
        DailyTotal& total; ///< To add to; good until the next lookup.
        Date end;          ///< The first moment of the day after, later than the date asked for.
    };

    /// The day that holds a date, taken into the table if it was missing. None, and no change,
    /// when the calendar does not know a later day.
    [[nodiscard]] std::optional<Day> dayOf(Date date);

    /// The totals in the order of their dates.
    [[nodiscard]] std::vector<DailyTotal> totals() const;

private:
    struct Row {
        DailyTotal total;
        Date end; ///< All dates before it and from the day's first moment on are of this day.
    };
    using Rows = std::vector<Row>;

    [[nodiscard]] Rows::iterator firstAfter(Date date);

    const Calendar& calendar_;
    Rows rows_; // in the order of their dates
};

} // namespace KestryCore
