#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Calendar.h"
#include "Date.h"
#include "SystemTimeZone.h"
#include "ZoneFiles.h"

namespace KestryCore {

/// Days and months of everyday life: the Gregorian calendar in one time zone, with the weekend of
/// one country. Copies share what they have loaded.
///
/// A day begins at its first moment: at 01:00, say, where the clocks skip midnight, and at the
/// first midnight where it comes twice. It lasts until the next day begins, so that there are no
/// gaps: where the clocks go back over midnight, the hour of the old day that they show again
/// belongs to the new one. Dates thousands of years away are out of reach.
///
/// Not thread-safe.
class ZoneCalendar final : public Calendar {
public:
    /// Throws LedgerError, with a similar name, when no zone of the system's zone files has this
    /// name. Where there are no zone files, the zones of the Unicode library are used. `locale` is
    /// a name such as "de_DE", which decides what a weekend is.
    ZoneCalendar(const std::string& timeZone, const std::string& locale,
        const ZoneFiles& files = ZoneFiles::ofSystem(processEnvironment));

    /// The calendar of the system's present time zone; of UTC when that is unknown.
    [[nodiscard]] static ZoneCalendar withSystemTimeZone(
        const std::string& locale, const SystemTimeZone& zone = systemTimeZone(processEnvironment));

    /// The calendar of clocks that follow a rule as in "CET-1CEST,M3.5.0,M10.5.0/3"; nullopt when
    /// the text is not a rule.
    [[nodiscard]] static std::optional<ZoneCalendar> withRule(
        const std::string& rule, const std::string& locale);

    /// The name of the zone; for a zone without a name, its rule.
    [[nodiscard]] const std::string& timeZone() const;
    [[nodiscard]] const std::string& locale() const;

    /// What the clocks show at an instant.
    [[nodiscard]] WallTime wallTime(Date date) const;
    /// The instant at which the clocks show this time: the first one when they show it twice,
    /// nullopt when they skip it.
    [[nodiscard]] std::optional<Date> date(const WallTime& time) const;

    /// What the clocks show. Near a midnight that comes twice, that may not be the day that counts.
    [[nodiscard]] CalendarDay day(Date date) const { return wallTime(date).day; }
    /// The first moment of a day.
    [[nodiscard]] Date startOfDay(const CalendarDay& day) const;

    [[nodiscard]] std::optional<MonthInterval> month(Date date) const override;
    [[nodiscard]] std::optional<int> daysInMonth(Date date) const override;
    [[nodiscard]] int dayOfMonth(Date date) const override { return countedDay(date).day; }
    [[nodiscard]] int monthsBetween(Date from, Date to) const override;
    [[nodiscard]] Date startOfDay(Date date) const override { return startOfDay(countedDay(date)); }
    [[nodiscard]] std::optional<Date> startOfNextDay(Date date) const override;

    [[nodiscard]] bool isWeekend(Date date) const;

private:
    struct Zone;
    explicit ZoneCalendar(std::shared_ptr<const Zone> zone) : zone_(std::move(zone)) { }

    /// The day that began last.
    [[nodiscard]] CalendarDay countedDay(Date date) const;

    std::shared_ptr<const Zone> zone_;
};

} // namespace KestryCore
