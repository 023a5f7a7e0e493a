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

/// The days of one month with their totals. Computed once, because asking the calendar for the day
/// of each span would take longer than everything else. Days that the calendar could not name in
/// advance are looked up when they are needed.
class DayTable {
public:
    /// `calendar` must outlive the table.
    DayTable(const MonthInterval& month, const Calendar& calendar);

    struct Day {
        DailyTotal& total; ///< To add to; valid until the next lookup.
        Date end;          ///< The first moment of the day after, later than the date asked for.
    };

    /// The day of a date, which is added to the table when it is missing. Nullopt, and no change,
    /// when the calendar does not know the day after it.
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
