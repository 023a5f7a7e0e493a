#include "UtcText.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace KestryCore {

namespace {

using Milliseconds = std::chrono::sys_time<std::chrono::milliseconds>;

constexpr auto secondsFrom1970To2001 = static_cast<std::int64_t>(referenceDateSecondsSince1970);

/// The year of `distantPast` counts by the Julian calendar, as history does; the reckoning below
/// knows the Gregorian one alone, in which every date of a ledger lies.
constexpr std::string_view distantPastText = "0001-01-01T00:00:00.000Z";
static_assert(distantPastText.size() == TimestampWriter::size);

/// Rounded down.
std::int64_t wholeSeconds(double seconds)
{
    const auto cutOff = static_cast<std::int64_t>(seconds);
    return static_cast<double>(cutOff) > seconds ? cutOff - 1 : cutOff;
}

/// To the nearest millisecond, for most decimal fractions have no exact binary form: cut off,
/// 0.589 would show as 588.
Milliseconds roundedToMilliseconds(Date date)
{
    const std::int64_t whole = wholeSeconds(date.seconds);
    const double rest = date.seconds - static_cast<double>(whole);
    const std::chrono::seconds since1970(whole + secondsFrom1970To2001);
    const int halves = static_cast<int>(rest * 2000.0);
    return Milliseconds(since1970 + std::chrono::milliseconds((halves + 1) / 2));
}

/// Writes a number with leading zeros at `place`, and the character behind it.
template <std::size_t digits>
char* writeNumber(char* place, unsigned number, char behind)
{
    for (std::size_t index = digits; index-- > 0; number /= 10) {
        place[index] = static_cast<char>('0' + number % 10);
    }
    place[digits] = behind;
    return place + digits + 1;
}

/// "2026-03-14", and the character behind it.
char* writeDay(char* place, std::chrono::sys_days day, char behind)
{
    const std::chrono::year_month_day date(day);
    place = writeNumber<4>(place, static_cast<unsigned>(static_cast<int>(date.year())), '-');
    place = writeNumber<2>(place, static_cast<unsigned>(date.month()), '-');
    return writeNumber<2>(place, static_cast<unsigned>(date.day()), behind);
}

} // namespace

std::string utcDayText(Date date)
{
    const std::chrono::sys_seconds moment(
        std::chrono::seconds(wholeSeconds(date.seconds) + secondsFrom1970To2001));
    std::array<char, 16> room{};
    char* end = writeDay(room.data(), std::chrono::floor<std::chrono::days>(moment), ' ');
    return {room.data(), end - 1};
}

char* TimestampWriter::write(char* place, Date date)
{
    if (date == distantPast) {
        return std::ranges::copy(distantPastText, place).out;
    }
    const Milliseconds moment = roundedToMilliseconds(date);
    const auto day = std::chrono::floor<std::chrono::days>(moment);
    const auto milliseconds = static_cast<unsigned>((moment - day).count());
    if (day_ != day) {
        day_ = day;
        writeDay(dayText_.data(), day, 'T');
    }
    place = std::ranges::copy(dayText_, place).out;
    place = writeNumber<2>(place, milliseconds / 3'600'000, ':');
    place = writeNumber<2>(place, milliseconds / 60'000 % 60, ':');
    place = writeNumber<2>(place, milliseconds / 1000 % 60, '.');
    return writeNumber<3>(place, milliseconds % 1000, 'Z');
}

} // namespace KestryCore
