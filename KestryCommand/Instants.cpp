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

/// Reads the seconds with their fraction, if there are any, into `time`.
bool readSeconds(TextScanner& text, WallTime& time)
{
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

/// Reads "am" or "pm" after a clock of twelve hours. Returns whether it was there.
bool readHalfOfDay(TextScanner& text, bool& isAfternoon)
{
    text.skipBlanks();
    isAfternoon = text.takeAny("Pp");
    if (!isAfternoon && !text.takeAny("Aa")) {
        return false;
    }
    const bool isDotted = text.take('.');
    if (text.takeAny("Mm") && isDotted) {
        text.take('.');
    }
    return true;
}

/// Reads "14:30", with optional seconds and their fraction, "2:30pm" or "2 pm" into `time`.
bool readClock(TextScanner& text, WallTime& time)
{
    constexpr int halfDay = 12;
    const auto hour = text.number(1, 2);
    if (!hour) {
        return false;
    }
    const bool hasMinutes = text.take(':');
    const auto minute = hasMinutes ? text.number(2, 2) : std::optional(0);
    if (!minute || *minute > 59 || (hasMinutes && !readSeconds(text, time))) {
        return false;
    }
    time.hour = *hour;
    time.minute = *minute;
    bool isAfternoon = false;
    TextScanner half = text;
    if (readHalfOfDay(half, isAfternoon)) {
        text = half;
        time.hour = *hour % halfDay + (isAfternoon ? halfDay : 0);
        return *hour >= 1 && *hour <= halfDay;
    }
    return hasMinutes && *hour < 2 * halfDay;
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

/// Reads a time on the day of `now`, or on the one that "today" or "yesterday" before it names.
std::optional<Date> readTimeNearby(std::string_view words, Date now, const ZoneCalendar& calendar)
{
    TextScanner text(words);
    WallTime time{calendar.day(now), 0, 0, 0.0};
    const bool isYesterday = text.takeWord("yesterday");
    if (isYesterday || text.takeWord("today")) {
        time.day = KestryCore::daysAfter(time.day, isYesterday ? -1 : 0);
        text.take(',');
        if (!text.take(' ')) {
            return std::nullopt;
        }
        text.skipBlanks();
    }
    if (!readClock(text, time) || !text.isAtEnd()) {
        return std::nullopt;
    }
    return localDate(time, calendar);
}

} // namespace

std::optional<Date> instantIn(std::string_view text, Date now, const ZoneCalendar& calendar)
{
    const std::string_view words = KestryCore::trimmed(text);
    if (words.starts_with('-')) {
        const auto ago = unitDuration(words.substr(1));
        return ago ? std::optional(now + -*ago) : std::nullopt;
    }
    const auto date = readDayAndTime(words, calendar);
    return date ? date : readTimeNearby(words, now, calendar);
}

Date readInstant(std::string_view text, Date now, const ZoneCalendar& calendar)
{
    if (const auto date = instantIn(text, now, calendar)) {
        return *date;
    }
    throw UsageError("\"" + std::string(text)
        + "\" is no moment. Give one as in 2026-03-14T09:26:53.589Z, 2026-03-14T10:26+01:00, "
          "\"2026-03-14 10:26\", 10:26 (today), \"yesterday 14:30\" or -1h30m (before now).");
}

std::string instantText(Date date, const ZoneCalendar& calendar)
{
    const WallTime time = calendar.wallTime(date);
    return fmt::format("{:04}-{:02}-{:02} {:02}:{:02}", time.day.year, time.day.month, time.day.day,
        time.hour, time.minute);
}

} // namespace Kestry
