#include "Instants.h"

#include <fmt/format.h>

#include <optional>
#include <string>

#include "Durations.h"
#include "Text.h"
#include "TextScanner.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::CalendarDay;
using KestryCore::Date;
using KestryCore::WallTime;
using KestryCore::ZoneCalendar;

namespace {

/// Reads hours, minutes and optional seconds with a fraction into `time`.
bool readClock(TextScanner& text, WallTime& time)
{
    const auto hour = text.number(1, 2);
    if (!hour || *hour > 23 || !text.take(':')) {
        return false;
    }
    const auto minute = text.number(2, 2);
    if (!minute || *minute > 59) {
        return false;
    }
    time.hour = *hour;
    time.minute = *minute;
    if (!text.take(':')) {
        return true;
    }
    const auto second = text.number(2, 2);
    if (!second || *second > 59) {
        return false;
    }
    time.second = *second;
    if (text.take('.')) {
        const auto fraction = text.fraction();
        time.second += fraction.value_or(0.0);
        return fraction.has_value();
    }
    return true;
}

bool readDay(TextScanner& text, CalendarDay& day)
{
    const auto year = text.number(4, 4);
    if (!year || !text.take('-')) {
        return false;
    }
    const auto month = text.number(2, 2);
    if (!month || !text.take('-')) {
        return false;
    }
    const auto dayOfMonth = text.number(2, 2);
    if (!dayOfMonth) {
        return false;
    }
    day = CalendarDay{*year, *month, *dayOfMonth};
    return isCalendarDay(day);
}

/// Reads an offset from UTC, in seconds: "Z", "+01:00", "+0100", "+01".
std::optional<double> readOffset(TextScanner& text)
{
    if (text.takeAny("Zz")) {
        return 0.0;
    }
    const double sign = text.take('-') ? -1.0 : 1.0;
    if (sign > 0.0 && !text.take('+')) {
        return std::nullopt;
    }
    const auto hours = text.digits(2);
    const bool hasMinutes = text.take(':') || !text.isAtEnd();
    const auto minutes = hasMinutes ? text.digits(2) : std::optional(0);
    if (!hours || !minutes || *hours > 23 || *minutes > 59) {
        return std::nullopt;
    }
    return sign * (*hours * 3600.0 + *minutes * 60.0);
}

std::string twoDigits(int number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

Date localDate(const WallTime& time, const ZoneCalendar& calendar)
{
    if (const auto date = calendar.date(time)) {
        return *date;
    }
    throw UsageError("The clocks of " + calendar.timeZone() + " skip " + twoDigits(time.hour) + ":"
        + twoDigits(time.minute) + " on that day. Give a time before or after it.");
}

/// Reads a day, a time and an optional zone.
std::optional<Date> readDayAndTime(std::string_view words, const ZoneCalendar& calendar)
{
    TextScanner text(words);
    WallTime time;
    if (!readDay(text, time.day) || !text.takeAny("Tt ") || !readClock(text, time)) {
        return std::nullopt;
    }
    if (text.isAtEnd()) {
        return localDate(time, calendar);
    }
    const auto offset = readOffset(text);
    if (!offset || !text.isAtEnd()) {
        return std::nullopt;
    }
    return dateInUtc(time) + -*offset;
}

std::optional<Date> readTimeToday(std::string_view words, Date now, const ZoneCalendar& calendar)
{
    TextScanner text(words);
    WallTime time{calendar.day(now), 0, 0, 0.0};
    if (!readClock(text, time) || !text.isAtEnd()) {
        return std::nullopt;
    }
    return localDate(time, calendar);
}

} // namespace

Date readInstant(std::string_view text, Date now, const ZoneCalendar& calendar)
{
    const std::string_view words = KestryCore::trimmed(text);
    if (words.starts_with('-')) {
        if (const auto ago = unitDuration(words.substr(1))) {
            return now + -*ago;
        }
    } else if (const auto date = readDayAndTime(words, calendar)) {
        return *date;
    } else if (const auto today = readTimeToday(words, now, calendar)) {
        return *today;
    }
    throw UsageError("\"" + std::string(text)
        + "\" is no moment. Give one as in 2026-03-14T09:26:53.589Z, 2026-03-14T10:26+01:00, "
          "\"2026-03-14 10:26\", 10:26 (today) or -1h30m (before now).");
}

std::string instantText(Date date, const ZoneCalendar& calendar)
{
    const WallTime time = calendar.wallTime(date);
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}", time.day.year, time.day.month, time.day.day,
        time.hour, time.minute);
}

} // namespace Kestry
