#include "SpokenDuration.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

namespace Kestry {
namespace {

struct ClockParts {
    std::int64_t hours = 0;
    int minutes = 0;
    int seconds = 0;
};

std::optional<ClockParts> clockParts(double seconds)
{
    constexpr double beyondWholeNumbers = 9223372036854775808.0; // 2 to the 63rd
    if (!(std::abs(seconds) < beyondWholeNumbers)) {             // also false for NaN
        return std::nullopt;
    }
    const auto whole = std::max<std::int64_t>(0, static_cast<std::int64_t>(seconds));
    return ClockParts{
        whole / 3600, static_cast<int>(whole % 3600 / 60), static_cast<int>(whole % 60)};
}

void appendPart(std::string& text, std::int64_t count, const char* unit)
{
    if (!text.empty()) {
        text += ", ";
    }
    text += std::to_string(count) + " " + unit + (count == 1 ? "" : "s");
}

} // namespace

std::string spokenDuration(double seconds)
{
    const auto parts = clockParts(seconds);
    if (!parts) {
        return "unknown";
    }
    std::string text;
    if (parts->hours > 0) {
        appendPart(text, parts->hours, "hour");
    }
    if (parts->minutes > 0) {
        appendPart(text, parts->minutes, "minute");
    }
    if (parts->seconds > 0 || text.empty()) {
        appendPart(text, parts->seconds, "second");
    }
    return text;
}

} // namespace Kestry
