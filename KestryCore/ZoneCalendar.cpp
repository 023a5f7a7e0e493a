#include "ZoneCalendar.h"

#include <unicode/basictz.h>
#include <unicode/calendar.h>
#include <unicode/simpletz.h>
#include <unicode/timezone.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>

#include "LedgerError.h"
#include "TimeZoneNames.h"

namespace KestryCore {

namespace {

constexpr double secondsPerDay = 86400.0;
constexpr double millisecondsPerSecond = 1000.0;

std::chrono::year_month_day civil(const CalendarDay& day)
{
    return {std::chrono::year(day.year), std::chrono::month(static_cast<unsigned>(day.month)),
        std::chrono::day(static_cast<unsigned>(day.day))};
}

CalendarDay calendarDay(const std::chrono::sys_days& days)
{
    const std::chrono::year_month_day date(days);
    return {static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
        static_cast<int>(static_cast<unsigned>(date.day()))};
}

/// Milliseconds since 1970, as the time zone library counts them, to whole ones downwards: it
/// cuts towards zero by itself, which would move an instant before 1970 over a boundary.
UDate milliseconds(Date date)
{
    return std::floor((date.seconds + referenceDateSecondsSince1970) * millisecondsPerSecond);
}

/// Whether the arithmetic of years and days can count it.
bool isWithinReach(Date date)
{
    constexpr double tenThousandYears = 10'000 * 366 * secondsPerDay;
    return std::abs(date.seconds) < tenThousandYears;
}

std::unique_ptr<icu::BasicTimeZone> basicZone(std::unique_ptr<icu::TimeZone> zone)
{
    // Every zone that the library makes is a basic one; its common type merely doesn't say so.
    if (dynamic_cast<icu::BasicTimeZone*>(zone.get()) == nullptr) {
        throw LedgerError("The time zone can't be used.");
    }
    return std::unique_ptr<icu::BasicTimeZone>(dynamic_cast<icu::BasicTimeZone*>(zone.release()));
}

/// A time in which the clocks are never set: from `start` to just before `end`.
struct Stretch {
    Date start;
    Date end;
    double offset = 0.0; ///< Seconds by which the clocks are ahead of UTC.

    [[nodiscard]] bool contains(Date date) const { return !(date < start) && date < end; }
};

Date dateOf(const icu::TimeZoneTransition& transition)
{
    return Date{transition.getTime() / millisecondsPerSecond - referenceDateSecondsSince1970};
}

double offsetAt(const icu::BasicTimeZone& rules, Date date)
{
    std::int32_t raw = 0;
    std::int32_t saving = 0;
    UErrorCode status = U_ZERO_ERROR;
    rules.getOffset(milliseconds(date), false, raw, saving, status);
    return (raw + saving) / millisecondsPerSecond;
}

Stretch stretchAround(const icu::BasicTimeZone& rules, Date date)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Stretch stretch{Date{-infinity}, Date{infinity}, offsetAt(rules, date)};
    icu::TimeZoneTransition transition;
    if (rules.getPreviousTransition(milliseconds(date), true, transition)) {
        stretch.start = dateOf(transition);
    }
    if (rules.getNextTransition(milliseconds(date), false, transition)) {
        stretch.end = dateOf(transition);
    }
    return stretch;
}

} // namespace

struct ZoneCalendar::Zone {
    std::unique_ptr<icu::BasicTimeZone> rules;
    std::string name;
    std::string locale;
    /// The one asked for last: most dates asked for lie in the same half of a year.
    mutable Stretch recent;

    /// Seconds by which the clocks are ahead of UTC.
    [[nodiscard]] double offset(Date date) const
    {
        if (recent.contains(date)) {
            return recent.offset;
        }
        if (!isWithinReach(date)) {
            return offsetAt(*rules, date);
        }
        recent = stretchAround(*rules, date);
        return recent.offset;
    }

    /// Whether the clocks have not been set for a day, by which they may once have gone back: what
    /// they show then, they have not shown before.
    [[nodiscard]] bool isCalm(Date date) const
    {
        return recent.contains(date) && recent.contains(date + -secondsPerDay);
    }

    /// The instant at which the clocks show what a clock in UTC shows at `utc`; the first of two,
    /// and past the gap by as much as the time lies in it where the clocks skip it.
    [[nodiscard]] Date atWallTime(Date utc) const
    {
        std::int32_t raw = 0;
        std::int32_t saving = 0;
        UErrorCode status = U_ZERO_ERROR;
        rules->getOffsetFromLocal(
            milliseconds(utc), UCAL_TZ_LOCAL_FORMER, UCAL_TZ_LOCAL_FORMER, raw, saving, status);
        return utc + -(raw + saving) / millisecondsPerSecond;
    }
};

bool isCalendarDay(const CalendarDay& day)
{
    return day.month > 0 && day.day > 0 && civil(day).ok();
}

CalendarDay daysAfter(const CalendarDay& day, int days)
{
    return calendarDay(std::chrono::sys_days(civil(day)) + std::chrono::days(days));
}

Date dateInUtc(const WallTime& time)
{
    const auto days = std::chrono::sys_days(civil(time.day)).time_since_epoch().count();
    const auto minutes = static_cast<double>(time.hour * 60 + time.minute);
    return Date{static_cast<double>(days) * secondsPerDay - referenceDateSecondsSince1970
        + minutes * 60.0 + time.second};
}

ZoneCalendar::ZoneCalendar(const std::string& timeZone, const std::string& locale)
{
    requireTimeZone(timeZone);
    zone_ = std::make_shared<const Zone>(
        Zone{basicZone(std::unique_ptr<icu::TimeZone>(
                 icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(timeZone)))),
            timeZone, locale, Stretch{}});
}

ZoneCalendar ZoneCalendar::withSystemTimeZone(const std::string& locale)
{
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString name;
    zone->getID(name);
    std::string text;
    name.toUTF8String(text);
    return ZoneCalendar(
        std::make_shared<const Zone>(Zone{basicZone(std::move(zone)), text, locale, Stretch{}}));
}

ZoneCalendar ZoneCalendar::withFixedOffset(
    const std::string& name, double offsetSeconds, const std::string& locale)
{
    auto rules = std::make_unique<icu::SimpleTimeZone>(
        static_cast<std::int32_t>(offsetSeconds * millisecondsPerSecond),
        icu::UnicodeString::fromUTF8(name));
    return ZoneCalendar(
        std::make_shared<const Zone>(Zone{std::move(rules), name, locale, Stretch{}}));
}

const std::string& ZoneCalendar::timeZone() const
{
    return zone_->name;
}

const std::string& ZoneCalendar::locale() const
{
    return zone_->locale;
}

WallTime ZoneCalendar::wallTime(Date date) const
{
    const double local = date.seconds + zone_->offset(date) + referenceDateSecondsSince1970;
    const double days = std::floor(local / secondsPerDay);
    const double inDay = local - days * secondsPerDay;
    const int minutes = static_cast<int>(inDay / 60.0);
    const std::chrono::sys_days day{std::chrono::days(static_cast<int>(days))};
    return {calendarDay(day), minutes / 60, minutes % 60, inDay - minutes * 60.0};
}

std::optional<Date> ZoneCalendar::date(const WallTime& time) const
{
    const Date utc = dateInUtc(time);
    const Date result = zone_->atWallTime(utc);
    // In a gap the clocks never show the time asked for.
    constexpr double smallestGap = 60.0;
    if (std::abs(result.seconds + zone_->offset(result) - utc.seconds) >= smallestGap) {
        return std::nullopt;
    }
    return result;
}

Date ZoneCalendar::startOfDay(const CalendarDay& day) const
{
    const WallTime midnight{day, 0, 0, 0.0};
    const Date utc = dateInUtc(midnight);
    if (const Date calm = utc + -zone_->recent.offset; zone_->isCalm(calm)) {
        return calm;
    }
    if (const auto found = date(midnight)) {
        return *found;
    }
    // The clocks skip midnight: the day begins with the change itself.
    icu::TimeZoneTransition transition;
    const Date inGap = zone_->atWallTime(utc);
    if (!zone_->rules->getPreviousTransition(milliseconds(inGap), true, transition)) {
        return inGap;
    }
    return dateOf(transition);
}

CalendarDay ZoneCalendar::countedDay(Date date) const
{
    const CalendarDay shown = day(date);
    if (zone_->isCalm(date)) {
        return shown;
    }
    const CalendarDay next = daysAfter(shown, 1);
    return startOfDay(next) > date ? shown : next;
}

std::optional<Date> ZoneCalendar::startOfNextDay(Date date) const
{
    if (!isWithinReach(date)) {
        return std::nullopt;
    }
    return startOfDay(daysAfter(countedDay(date), 1));
}

std::optional<MonthInterval> ZoneCalendar::month(Date date) const
{
    if (!isWithinReach(date)) {
        return std::nullopt;
    }
    const CalendarDay today = countedDay(date);
    const bool isDecember = today.month == 12;
    return MonthInterval{startOfDay(CalendarDay{today.year, today.month, 1}),
        startOfDay(
            CalendarDay{today.year + (isDecember ? 1 : 0), isDecember ? 1 : today.month + 1, 1})};
}

std::optional<int> ZoneCalendar::daysInMonth(Date date) const
{
    if (!isWithinReach(date)) {
        return std::nullopt;
    }
    const CalendarDay today = countedDay(date);
    const std::chrono::year_month_day_last last(std::chrono::year(today.year),
        std::chrono::month_day_last(std::chrono::month(static_cast<unsigned>(today.month))));
    return static_cast<int>(static_cast<unsigned>(last.day()));
}

int ZoneCalendar::monthsBetween(Date from, Date to) const
{
    const CalendarDay first = countedDay(from);
    const CalendarDay last = countedDay(to);
    return (last.year - first.year) * 12 + last.month - first.month;
}

bool ZoneCalendar::isWeekend(Date date) const
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(icu::Calendar::createInstance(
        *zone_->rules, icu::Locale::createCanonical(zone_->locale.c_str()), status));
    return U_SUCCESS(status) && calendar->isWeekend(milliseconds(date), status) != 0;
}

} // namespace KestryCore
