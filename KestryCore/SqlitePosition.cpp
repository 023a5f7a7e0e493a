#include "SqlitePosition.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace KestryCore {

namespace {

constexpr std::size_t longestCursor = 120; // Bytes; no cursor comes near it.

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

/// A place as `text` writes it.
std::optional<SqlitePosition> positionIn(std::string_view text)
{
    const std::size_t hyphen = text.find('-');
    if (hyphen == std::string_view::npos) {
        return std::nullopt;
    }
    const auto change = numberIn(text.substr(0, hyphen));
    const std::string_view tag = text.substr(hyphen + 1);
    if (!change || tag.empty() || !std::ranges::all_of(tag, isHexDigit)) {
        return std::nullopt;
    }
    return SqlitePosition{*change, std::string(tag)};
}

/// Cuts the text off at a letter, and gives what was behind it.
std::optional<std::string_view> cutAt(std::string_view& text, std::size_t place)
{
    if (place >= text.size()) {
        return std::nullopt;
    }
    const std::string_view rest = text.substr(place + 1);
    text = text.substr(0, place);
    return rest;
}

} // namespace

CloudCursor SqliteReading::cursor() const
{
    std::string text = position.text();
    text += start > 0 ? '-' + std::to_string(start) : std::string();
    text += delivered ? '/' + delivered->text() : std::string();
    return {std::move(text)};
}

std::optional<SqliteReading> SqliteReading::of(const CloudCursor& cursor)
{
    std::string_view text = cursor.bytes;
    if (text.size() > longestCursor) {
        return std::nullopt;
    }
    const auto deliveredText = cutAt(text, text.find('/'));
    const std::size_t first = text.find('-');
    const auto startText =
        first < text.size() ? cutAt(text, text.find('-', first + 1)) : std::nullopt;
    const auto position = positionIn(text);
    const std::int64_t start = startText ? numberIn(*startText).value_or(0) : 0;
    const auto delivered = deliveredText ? positionIn(*deliveredText) : std::nullopt;
    const bool isSound =
        position && (!startText || start > 0) && deliveredText.has_value() == delivered.has_value();
    if (!isSound) {
        return std::nullopt;
    }
    return SqliteReading{*position, start, delivered};
}

} // namespace KestryCore
