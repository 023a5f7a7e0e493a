#include "SqlitePosition.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace KestryCore {

namespace {

constexpr std::size_t longestCursor = 100; // Bytes; no cursor comes near it.

bool isHexDigit(char letter)
{
    return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'f');
}

/// A number in plain digits, from 0.
std::optional<std::int64_t> numberIn(std::string_view text)
{
    std::int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    const bool isWhole = error == std::errc() && rest == end && number >= 0;
    return isWhole && std::to_string(number) == text ? std::optional(number) : std::nullopt;
}

} // namespace

CloudCursor SqliteReading::cursor() const
{
    return {start > 0 ? position.text() + '-' + std::to_string(start) : position.text()};
}

std::optional<SqliteReading> SqliteReading::of(const CloudCursor& cursor)
{
    const std::string_view text = cursor.bytes;
    const std::size_t first = text.find('-');
    if (first == std::string_view::npos || text.size() > longestCursor) {
        return std::nullopt;
    }
    const std::size_t second = std::min(text.find('-', first + 1), text.size());
    const auto change = numberIn(text.substr(0, first));
    const std::string_view tag = text.substr(first + 1, second - first - 1);
    if (!change || tag.empty() || !std::ranges::all_of(tag, isHexDigit)) {
        return std::nullopt;
    }
    SqliteReading reading{{*change, std::string(tag)}, 0};
    if (second < text.size()) {
        const auto start = numberIn(text.substr(second + 1));
        if (!start || *start == 0) {
            return std::nullopt;
        }
        reading.start = *start;
    }
    return reading;
}

} // namespace KestryCore
