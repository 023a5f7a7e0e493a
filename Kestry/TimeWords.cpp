#include "TimeWords.h"

#include <cmath>
#include <optional>
#include <string>

#include "Text.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::Calendar;
using KestryCore::CalendarDay;
using KestryCore::Date;
using KestryCore::WallTime;

namespace {

/// Takes a text apart from its front.
class Scanner {
public:
    explicit Scanner(std::string_view text) : rest_(text) { }

    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }

    bool take(char expected)
    {
        if (rest_.empty() || rest_.front() != expected) {
            return false;
        }
        rest_.remove_prefix(1);
        return true;
    }

    bool takeAny(std::string_view expected)
    {
        return !rest_.empty() && expected.find(rest_.front()) != std::string_view::npos
            && take(rest_.front());
    }

    /// All digits from here, or none when there are not so many.
    std::optional<int> number(std::size_t fewest, std::size_t most)
    {
        const std::size_t count = digitCount();
        if (count < fewest || count > most) {
            return std::nullopt;
        }
        int value = 0;
        for (const char digit : rest_.substr(0, count)) {
            value = value * 10 + (digit - '0');
        }
        rest_.remove_prefix(count);
        return value;
    }

    /// The digits of a decimal fraction.
    std::optional<double> fraction()
    {
        constexpr std::size_t mostDigits = 9;
        const std::size_t count = digitCount();
        const auto digits = number(1, mostDigits);
        if (!digits) {
            return std::nullopt;
        }
        return *digits / std::pow(10.0, static_cast<double>(count));
    }

    void skipBlanks()
    {
        while (take(' ')) { }
    }

private:
    [[nodiscard]] std::size_t digitCount() const
    {
        const std::size_t end = rest_.find_first_not_of("0123456789");
        return end == std::string_view::npos ? rest_.size() : end;
    }

    std::string_view rest_;
};

/// Hours and minutes, and seconds with a fraction if need be, into `time`.
bool readClock(Scanner& text, WallTime& time)
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

bool readDay(Scanner& text, CalendarDay& day)
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

/// A distance from UTC in seconds: "Z", "+01:00", "+0100", "+01".
std::optional<double> readOffset(Scanner& text)
{
    if (text.takeAny("Zz")) {
        return 0.0;
    }
    const double sign = text.take('-') ? -1.0 : 1.0;
    if (sign > 0.0 && !text.take('+')) {
        return std::nullopt;
    }
    const auto digits = text.number(2, 4);
    if (!digits) {
        return std::nullopt;
    }
    // Three digits name neither hours nor hours and minutes.
    int hours = *digits >= 100 ? *digits / 100 : *digits;
    int minutes = *digits >= 100 ? *digits % 100 : 0;
    if (text.take(':')) {
        const auto after = text.number(2, 2);
        if (!after || *digits >= 100) {
            return std::nullopt;
        }
        hours = *digits;
        minutes = *after;
    }
    if (hours > 23 || minutes > 59) {
        return std::nullopt;
    }
    return sign * (hours * 3600.0 + minutes * 60.0);
}

std::string twoDigits(int number)
{
    return (number < 10 ? "0" : "") + std::to_string(number);
}

Date localDate(const WallTime& time, const Calendar& calendar)
{
    if (const auto date = calendar.date(time)) {
        return *date;
    }
    throw UsageError("The clocks of " + calendar.timeZone() + " skip " + twoDigits(time.hour) + ":"
        + twoDigits(time.minute) + " on that day. Give a time before or after it.");
}

/// A day, a time and perhaps a zone.
std::optional<Date> readDayAndTime(std::string_view words, const Calendar& calendar)
{
    Scanner text(words);
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

std::optional<Date> readTimeToday(std::string_view words, Date now, const Calendar& calendar)
{
    Scanner text(words);
    WallTime time{calendar.day(now), 0, 0, 0.0};
    if (!readClock(text, time) || !text.isAtEnd()) {
        return std::nullopt;
    }
    return localDate(time, calendar);
}

/// "1:30" or "1:30:15".
std::optional<double> readColonDuration(std::string_view words)
{
    constexpr std::size_t mostHourDigits = 6;
    Scanner text(words);
    const auto hours = text.number(1, mostHourDigits);
    if (!hours || !text.take(':')) {
        return std::nullopt;
    }
    const auto minutes = text.number(2, 2);
    if (!minutes || *minutes > 59) {
        return std::nullopt;
    }
    const auto seconds = text.take(':') ? text.number(2, 2) : std::optional(0);
    if (!seconds || *seconds > 59 || !text.isAtEnd()) {
        return std::nullopt;
    }
    return *hours * 3600.0 + *minutes * 60.0 + *seconds;
}

/// "1h30m", "90m", "1.5h", "45s": units from the largest down, each once, a fraction only in the
/// last part, and below 60 what stands under a larger unit.
std::optional<double> readUnitDuration(std::string_view words)
{
    constexpr std::string_view units = "hms";
    constexpr double unitSeconds[] = {3600.0, 60.0, 1.0};
    constexpr std::size_t mostDigits = 7;
    Scanner text(words);
    double total = 0.0;
    bool isFirst = true;
    bool hasFraction = false;
    std::size_t next = 0;
    while (!text.isAtEnd()) {
        const auto whole = text.number(1, mostDigits);
        const auto fraction = whole && text.take('.') ? text.fraction() : std::optional(0.0);
        hasFraction = fraction != 0.0;
        text.skipBlanks();
        while (next < units.size() && !text.take(units[next])) {
            ++next;
        }
        if (!whole || !fraction || next == units.size() || (!isFirst && *whole > 59)) {
            return std::nullopt;
        }
        total += (*whole + *fraction) * unitSeconds[next++];
        isFirst = false;
        text.skipBlanks();
        if (hasFraction && !text.isAtEnd()) {
            return std::nullopt;
        }
    }
    return isFirst ? std::nullopt : std::optional(total);
}

std::optional<double> durationIn(std::string_view words)
{
    if (const auto duration = readColonDuration(words)) {
        return duration;
    }
    return readUnitDuration(words);
}

} // namespace

Date readInstant(std::string_view text, Date now, const Calendar& calendar)
{
    const std::string_view words = KestryCore::trimmed(text);
    if (words.starts_with('-')) {
        if (const auto ago = readUnitDuration(words.substr(1))) {
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

double readDuration(std::string_view text)
{
    if (const auto duration = durationIn(KestryCore::trimmed(text))) {
        return *duration;
    }
    throw UsageError("\"" + std::string(text)
        + "\" is no length of time. Give one as in 1h30m, 90m, 1.5h or 1:30.");
}

} // namespace Kestry
