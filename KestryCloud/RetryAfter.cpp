#include "RetryAfter.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <charconv>

namespace Kestry {

namespace {

constexpr double longestSeconds = 86'400.0; // a longer wish is not meant for a person who waits
constexpr double referenceUnixSeconds = 978'307'200.0; // a `Date` counts from 2001

std::optional<double> secondsIn(const std::string& value)
{
    unsigned long seconds = 0;
    const char* const end = value.data() + value.size();
    const auto [rest, failure] = std::from_chars(value.data(), end, seconds);
    if (failure != std::errc() || rest != end) {
        return std::nullopt;
    }
    return static_cast<double>(seconds);
}

std::optional<double> unixSecondsOf(const std::string& value)
{
    QDateTime date = QLocale::c().toDateTime(
        QString::fromStdString(value), QStringLiteral("ddd, dd MMM yyyy hh:mm:ss 'GMT'"));
    if (!date.isValid()) {
        return std::nullopt;
    }
    date.setTimeSpec(Qt::UTC);
    return static_cast<double>(date.toSecsSinceEpoch());
}

} // namespace

std::optional<double> retryAfterSeconds(const std::string& value, KestryCore::Date now)
{
    std::optional<double> seconds = secondsIn(value);
    if (!seconds) {
        const auto date = unixSecondsOf(value);
        if (!date) {
            return std::nullopt;
        }
        seconds = *date - (now.seconds + referenceUnixSeconds);
    }
    return std::clamp(*seconds, 0.0, longestSeconds);
}

} // namespace Kestry
