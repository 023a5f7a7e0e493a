#include "Durations.h"

#include <array>
#include <string>

#include "Text.h"
#include "TextScanner.h"
#include "UsageError.h"

namespace Kestry {

namespace {

/// "1:30" or "1:30:15".
std::optional<double> colonDuration(std::string_view words)
{
    constexpr std::size_t mostHourDigits = 6;
    TextScanner text(words);
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

} // namespace

std::optional<double> unitDuration(std::string_view words)
{
    constexpr std::string_view units = "hms";
    constexpr std::array unitSeconds{3600.0, 60.0, 1.0};
    constexpr std::size_t mostDigits = 7;
    TextScanner text(words);
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

double readDuration(std::string_view text)
{
    const std::string_view words = KestryCore::trimmed(text);
    if (const auto duration = colonDuration(words)) {
        return *duration;
    }
    if (const auto duration = unitDuration(words)) {
        return *duration;
    }
    throw UsageError("\"" + std::string(text)
        + "\" is no length of time. Give one as in 1h30m, 90m, 1.5h or 1:30.");
}

} // namespace Kestry
