#include "TextForms.h"

#include <unicode/currunit.h>
#include <unicode/numberformatter.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "LedgerError.h"
#include "RecordValidation.h"
#include "Text.h"

namespace KestryCore {

namespace {

constexpr double centsPerDollar = 100.0;
constexpr double secondsPerMinute = 60.0;
constexpr double secondsPerHour = 3600.0;
constexpr double maximumRateDollars = 1'000'000.0;
constexpr double maximumHours = 744.0;
/// How far a rate in cents may lie from a whole number, because its decimal text has no exact
/// binary form.
constexpr double centTolerance = 0.00001;
/// Whole numbers from here on cannot be counted.
constexpr double countLimit = 9223372036854775808.0;
constexpr const char* notCountable = "\xE2\x80\x94"; // an em dash

icu::number::LocalizedNumberFormatter dollars(const icu::Locale& locale, std::int32_t decimals)
{
    UErrorCode status = U_ZERO_ERROR;
    return icu::number::NumberFormatter::withLocale(locale)
        .unit(icu::CurrencyUnit(u"USD", status))
        .precision(icu::number::Precision::fixedFraction(decimals))
        .roundingMode(UNUM_ROUND_HALFUP);
}

std::string format(const icu::number::LocalizedNumberFormatter& formatter, double cents)
{
    UErrorCode status = U_ZERO_ERROR;
    std::string text;
    formatter.formatDouble(cents / centsPerDollar, status).toString(status).toUTF8String(text);
    if (U_FAILURE(status)) {
        throw LedgerError("An amount of money could not be put into words.");
    }
    return text;
}

/// A count of whole units, rounded down, at least 0; nullopt when it cannot be counted.
std::optional<std::int64_t> wholeCount(double value)
{
    if (!(std::abs(value) < countLimit)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(std::max(0.0, value));
}

template <class... Values>
std::string printed(const char* form, Values... values)
{
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), form, values...);
    return text.data();
}

/// With two decimals and a point, whatever locale the process runs in.
std::string twoDecimals(double value)
{
    std::array<char, 320> room{};
    const auto written =
        std::to_chars(room.data(), room.data() + room.size(), value, std::chars_format::fixed, 2);
    return {room.data(), written.ptr};
}

/// Whether a number, which no double can hold, is nearer to zero than any of them. Its text is one
/// that was read as a number.
bool isNextToNothing(std::string_view text)
{
    const std::size_t exponentAt = std::min(text.size(), text.find_first_of("eE"));
    const std::string_view digits = text.substr(0, exponentAt);
    const std::string_view exponentText = text.substr(std::min(text.size(), exponentAt + 1));
    const auto point = static_cast<double>(std::min(digits.size(), digits.find('.')));
    const auto first =
        static_cast<double>(std::min(digits.size(), digits.find_first_of("123456789")));
    double exponent = 0.0;
    for (const char letter : exponentText) {
        exponent = letter >= '0' && letter <= '9' ? exponent * 10.0 + (letter - '0') : exponent;
    }
    exponent = exponentText.starts_with('-') ? -exponent : exponent;
    return exponent + point - first < 0.0;
}

/// The whole text as a number: digits with a point, a sign and an exponent if need be.
std::optional<double> readNumber(std::string_view text)
{
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    double value = 0.0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range && isNextToNothing(text)) {
        value = text.starts_with('-') ? -0.0 : 0.0;
        error = std::errc();
    }
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

} // namespace

struct MoneyText::Formats {
    icu::number::LocalizedNumberFormatter exact;
    icu::number::LocalizedNumberFormatter whole;
};

MoneyText::MoneyText(const std::string& locale)
{
    const icu::Locale named = icu::Locale::createCanonical(locale.c_str());
    formats_ = std::make_shared<const Formats>(Formats{dollars(named, 2), dollars(named, 0)});
}

std::string MoneyText::money(double cents) const
{
    return format(formats_->exact, cents);
}

std::string MoneyText::wholeMoney(double cents) const
{
    return format(formats_->whole, cents);
}

std::string MoneyText::rateLong(Cents cents) const
{
    return money(static_cast<double>(cents)) + " / hour";
}

std::string MoneyText::rateShort(Cents cents) const
{
    return money(static_cast<double>(cents)) + " / hr";
}

std::string MoneyText::rateCompact(Cents cents) const
{
    const auto amount = static_cast<double>(cents);
    return (cents % 100 == 0 ? wholeMoney(amount) : money(amount)) + "/hr";
}

std::string clockText(double seconds)
{
    const auto count = wholeCount(seconds);
    if (!count) {
        return notCountable;
    }
    const auto whole = static_cast<long long>(*count);
    return printed("%02lld:%02lld:%02lld", whole / 3600, whole % 3600 / 60, whole % 60);
}

std::string durationText(double seconds)
{
    const auto count = wholeCount(seconds / secondsPerMinute);
    if (!count) {
        return notCountable;
    }
    const auto minutes = static_cast<long long>(*count);
    return printed("%lldh %lldm", minutes / 60, minutes % 60);
}

std::string editRateText(Cents cents)
{
    return twoDecimals(static_cast<double>(cents) / centsPerDollar);
}

std::string editHoursText(double seconds)
{
    return std::to_string(wholeCount(seconds).value_or(0) / 3600);
}

std::string editMinutesText(double seconds)
{
    const double minutes = std::fmod(seconds, secondsPerHour) / secondsPerMinute;
    return twoDecimals(std::floor(minutes * 100.0) / 100.0);
}

std::optional<Cents> readRate(std::string_view text)
{
    const std::string_view words = trimmed(text);
    if (words.empty()) {
        return std::nullopt;
    }
    const auto value = readNumber(words);
    if (value && *value >= 0.0 && *value <= maximumRateDollars) {
        const double cents = *value * centsPerDollar;
        const double whole = std::round(cents);
        if (std::abs(cents - whole) < centTolerance) {
            return static_cast<Cents>(whole);
        }
    }
    throw LedgerError("Enter a USD hourly rate from 0 to 1,000,000 with up to two decimal places.");
}

double readHoursAndMinutes(std::string_view hours, std::string_view minutes)
{
    const auto wholeHours = readNumber(hours);
    const auto parts = readNumber(minutes);
    const bool inRange = wholeHours && parts && *wholeHours >= 0.0 && *wholeHours <= maximumHours
        && *wholeHours == std::floor(*wholeHours) && *parts >= 0.0 && *parts < 60.0;
    const double seconds = inRange ? *wholeHours * secondsPerHour + *parts * secondsPerMinute : 0.0;
    if (!(seconds > 0.0 && seconds <= maximumSessionDuration)) {
        throw LedgerError(
            "Enter whole hours and minutes from 0 to 59. The duration must be greater "
            "than zero and no more than 744 hours (31 days).");
    }
    return seconds;
}

double readHoursAndMinutes(
    std::string_view hours, std::string_view minutes, double openedWithSeconds)
{
    const bool isUntouched =
        hours == editHoursText(openedWithSeconds) && minutes == editMinutesText(openedWithSeconds);
    return isUntouched ? openedWithSeconds : readHoursAndMinutes(hours, minutes);
}

} // namespace KestryCore
