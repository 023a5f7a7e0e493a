#pragma once

#include <compare>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Date.h"

namespace KestryCore {

/// A day of the Gregorian calendar, in no particular time zone.
struct CalendarDay {
    int year = 2001;
    int month = 1; ///< 1 to 12.
    int day = 1;   ///< 1 to 31.

    friend auto operator<=>(const CalendarDay&, const CalendarDay&) = default;
};

/// What a clock on the wall shows.
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

/// The day so many days later, or earlier for a negative count.
[[nodiscard]] CalendarDay daysAfter(const CalendarDay& day, int days);

/// The instant at which a clock in UTC shows this.
[[nodiscard]] Date dateInUtc(const WallTime& time);

/// Days and months as a person lives them: the Gregorian calendar in one time zone, with the
/// weekend of one country. Copies share what they have loaded.
///
/// A day begins at its first moment: at 01:00, say, where the clocks skip midnight, and at the
/// first midnight where it comes twice. Dates far outside those that a ledger may hold are not
/// provided for.
class Calendar {
public:
    /// Fails with a `LedgerError` when no zone of the IANA database has this name, and tells a
    /// near one. `locale` is a name such as "de_DE", which decides what a weekend is.
    Calendar(const std::string& timeZone, const std::string& locale);

    /// The calendar of the system's time zone.
    [[nodiscard]] static Calendar withSystemTimeZone(const std::string& locale);

    /// The zone's IANA name.
    [[nodiscard]] const std::string& timeZone() const;
    [[nodiscard]] const std::string& locale() const;

    /// What the clocks show at an instant.
    [[nodiscard]] WallTime wallTime(Date date) const;
    /// The instant at which the clocks show this: the first one when they show it twice, none
    /// when they skip it.
    [[nodiscard]] std::optional<Date> date(const WallTime& time) const;

    [[nodiscard]] CalendarDay day(Date date) const { return wallTime(date).day; }
    /// The first moment of a day.
    [[nodiscard]] Date startOfDay(const CalendarDay& day) const;
    [[nodiscard]] Date startOfDay(Date date) const { return startOfDay(day(date)); }
    /// The first moment of the day after the one that holds an instant.
    [[nodiscard]] Date startOfNextDay(Date date) const;

    /// The month that holds an instant.
    [[nodiscard]] MonthInterval month(Date date) const;
    /// How many days the month that holds an instant has.
    [[nodiscard]] int daysInMonth(Date date) const;
    /// Counted from 1.
    [[nodiscard]] int dayOfMonth(Date date) const { return day(date).day; }
    /// Whole months from the month that holds `from` to the one that holds `to`.
    [[nodiscard]] int monthsBetween(Date from, Date to) const;

    [[nodiscard]] bool isWeekend(Date date) const;

private:
    struct Zone;
    explicit Calendar(std::shared_ptr<const Zone> zone) : zone_(std::move(zone)) { }

    std::shared_ptr<const Zone> zone_;
};

} // namespace KestryCore
