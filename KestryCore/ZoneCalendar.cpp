#include "ZoneCalendar.h"

#include <unicode/calendar.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#include "LedgerError.h"
#include "TimeZoneNames.h"
#include "ZoneRules.h"

namespace KestryCore {

namespace {

constexpr double secondsPerDay = 86400.0;

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

/// Whether the arithmetic of years and days can count it.
bool isWithinReach(Date date)
{
    constexpr double tenThousandYears = 10'000 * 366 * secondsPerDay;
    return std::abs(date.seconds) < tenThousandYears;
}

/// The rules of clocks that show UTC, for zones about which nothing is known.
std::unique_ptr<const ZoneRules> utcRules()
{
    return zoneFileRules(ruleTimeZone(fixedRule(0.0)).content);
}

} // namespace

struct ZoneCalendar::Zone {
    std::unique_ptr<const ZoneRules> rules;
    std::string name;
    std::string locale;
    /// The one asked for last: most dates asked for lie in the same half of a year.
    mutable ZoneStretch recent{};

    [[nodiscard]] const ZoneStretch& stretch(Date date) const
    {
        if (!recent.contains(date)) {
            recent = rules->stretchAround(date);
        }
        return recent;
    }

    /// Seconds by which the clocks are ahead of UTC.
    [[nodiscard]] double offset(Date date) const
    {
        if (recent.contains(date)) {
            return recent.offset;
        }
        return isWithinReach(date) ? stretch(date).offset : 0.0;
    }

    /// Whether the clocks have not been set for a day, by which they may once have gone back: what
    /// they show then, they have not shown before.
    [[nodiscard]] bool isCalm(Date date) const
    {
        return recent.contains(date) && recent.contains(date + -secondsPerDay);
    }

    /// The first instant at which the clocks show what a clock in UTC shows at `utc`, or something
    /// later where they skip that.
    [[nodiscard]] Date firstShowing(Date utc) const
    {
        if (!isWithinReach(utc)) {
            return utc;
        }
        // No clock is further from UTC.
        constexpr double furthest = 2 * secondsPerDay;
        ZoneStretch candidate = stretch(utc + -furthest);
        while (!(utc + -candidate.offset < candidate.end)) {
            candidate = stretch(candidate.end);
        }
        return std::max(utc + -candidate.offset, candidate.start);
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

ZoneCalendar::ZoneCalendar(
    const std::string& timeZone, const std::string& locale, const ZoneFiles& files)
{
    const auto content = files.read(timeZone);
    if (!content) {
        requireTimeZone(timeZone, files);
    }
    auto rules = content ? zoneFileRules(*content) : builtInZoneRules(timeZone);
    if (!rules) {
        throw LedgerError("The system's file of the time zone \"" + timeZone
            + "\" makes no sense. Please install the system's time zone data again.");
    }
    zone_ = std::make_shared<const Zone>(Zone{std::move(rules), timeZone, locale});
}

ZoneCalendar ZoneCalendar::withSystemTimeZone(const std::string& locale, const SystemTimeZone& zone)
{
    auto rules = zone.content.empty() ? builtInZoneRules(zone.name) : zoneFileRules(zone.content);
    if (!rules) {
        return ZoneCalendar(std::make_shared<const Zone>(Zone{utcRules(), "UTC", locale}));
    }
    return ZoneCalendar(std::make_shared<const Zone>(Zone{std::move(rules), zone.name, locale}));
}

std::optional<ZoneCalendar> ZoneCalendar::withRule(
    const std::string& rule, const std::string& locale)
{
    // A zone file may do without a rule, and nothing after its line counts.
    const bool isOneLine = !rule.empty() && rule.find('\n') == std::string::npos;
    auto rules = isOneLine ? zoneFileRules(ruleTimeZone(rule).content) : nullptr;
    if (!rules) {
        return std::nullopt;
    }
    return ZoneCalendar(std::make_shared<const Zone>(Zone{std::move(rules), rule, locale}));
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
    const Date first = zone_->firstShowing(utc);
    const bool isSkipped = first > utc + -zone_->offset(first);
    return isSkipped ? std::nullopt : std::optional(first);
}

Date ZoneCalendar::startOfDay(const CalendarDay& day) const
{
    const Date utc = dateInUtc(WallTime{day, 0, 0, 0.0});
    const Date calm = utc + -zone_->recent.offset;
    // Where the clocks skip midnight, the day begins with the change itself.
    return zone_->isCalm(calm) ? calm : zone_->firstShowing(utc);
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
        *icu::TimeZone::getGMT(), icu::Locale::createCanonical(zone_->locale.c_str()), status));
    // The library's own rules of time zones may be old, so it gets what the clocks show.
    constexpr double millisecondsPerSecond = 1000.0;
    const Date shown = date + zone_->offset(date);
    return U_SUCCESS(status)
        && calendar->isWeekend(
               (shown.seconds + referenceDateSecondsSince1970) * millisecondsPerSecond, status)
        != 0;
}

} // namespace KestryCore
