#pragma once

#include <compare>
#include <optional>

#include "Date.h"

namespace KestryCore {

/// A day of the Gregorian calendar, in no particular time zone.
struct CalendarDay {
    int year = 2001;
    int month = 1; ///< 1 to 12.
    int day = 1;   ///< 1 to 31.

    friend auto operator<=>(const CalendarDay&, const CalendarDay&) = default;
};

/// The time that a clock on the wall shows.
struct WallTime {
    CalendarDay day;
    int hour = 0;   ///< 0 to 23.
    int minute = 0; ///< 0 to 59.
    double second = 0.0;

    friend auto operator<=>(const WallTime&, const WallTime&) = default;
};

/// A month as instants: from `start` to just before `end`.
struct MonthInterval {
    Date start;
    Date end;
};

/// Whether there is such a day.
[[nodiscard]] bool isCalendarDay(const CalendarDay& day);

/// The day `days` days later, or earlier when it is negative.
[[nodiscard]] CalendarDay daysAfter(const CalendarDay& day, int days);

/// The instant at which a clock in UTC shows this.
[[nodiscard]] Date dateInUtc(const WallTime& time);

/// What the rules that count days and months need from a calendar. A function returns nullopt for
/// dates that the calendar does not reach.
class Calendar {
public:
    virtual ~Calendar() = default;

    /// The month of an instant.
    [[nodiscard]] virtual std::optional<MonthInterval> month(Date date) const = 0;
    /// The number of days in the month of an instant.
    [[nodiscard]] virtual std::optional<int> daysInMonth(Date date) const = 0;
    /// Counted from 1.
    [[nodiscard]] virtual int dayOfMonth(Date date) const = 0;
    /// The number of months from that of `from` to that of `to`.
    [[nodiscard]] virtual int monthsBetween(Date from, Date to) const = 0;
    /// The first moment of the day of an instant.
    [[nodiscard]] virtual Date startOfDay(Date date) const = 0;
    /// The first moment of the day after that of an instant.
    [[nodiscard]] virtual std::optional<Date> startOfNextDay(Date date) const = 0;

protected:
    Calendar() = default;
    Calendar(const Calendar&) = default;
    Calendar& operator=(const Calendar&) = default;
};

} // namespace KestryCore
