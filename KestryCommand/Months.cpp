#include "Months.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "Text.h"
#include "TextScanner.h"
#include "UsageError.h"

namespace Kestry {

using KestryCore::CalendarDay;

namespace {

/// The years with four digits.
constexpr int firstYear = 1;

std::optional<CalendarDay> wellWritten(std::string_view words)
{
    TextScanner text(words);
    const auto year = text.number(4, 4);
    if (!year || *year < firstYear || !text.take('-')) {
        return std::nullopt;
    }
    const auto month = text.number(2, 2);
    if (!month || *month < 1 || *month > 12 || !text.isAtEnd()) {
        return std::nullopt;
    }
    return CalendarDay{*year, *month, 1};
}

bool isDigit(char letter)
{
    return letter >= '0' && letter <= '9';
}

bool isLetter(char letter)
{
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

/// The runs of digits and the runs of letters in a text.
std::vector<std::string> parts(std::string_view words)
{
    std::vector<std::string> result;
    char previous = ' ';
    for (const char letter : words) {
        const bool continues =
            (isDigit(letter) && isDigit(previous)) || (isLetter(letter) && isLetter(previous));
        if (continues) {
            result.back() += letter;
        } else if (isDigit(letter) || isLetter(letter)) {
            result.emplace_back(1, letter);
        }
        previous = letter;
    }
    return result;
}

/// The number of a month given by its English name or the beginning of it.
std::optional<int> namedMonth(const std::string& word)
{
    constexpr std::array<const char*, 12> names{"january", "february", "march", "april", "may",
        "june", "july", "august", "september", "october", "november", "december"};
    constexpr std::size_t fewestLetters = 3;
    const std::string folded = KestryCore::foldedCase(word);
    const auto found = std::ranges::find_if(
        names, [&](std::string_view name) { return name.starts_with(folded); });
    if (word.size() < fewestLetters || found == names.end()) {
        return std::nullopt;
    }
    return static_cast<int>(found - names.begin()) + 1;
}

std::optional<int> monthNumber(const std::string& word)
{
    constexpr std::size_t mostDigits = 2;
    if (!isDigit(word.front())) {
        return namedMonth(word);
    }
    return word.size() <= mostDigits ? std::optional(std::stoi(word)) : std::nullopt;
}

/// The correct form of the month that a text seems to mean; nullopt when it can't be guessed.
std::optional<std::string> nearMonth(std::string_view words)
{
    constexpr std::size_t yearDigits = 4;
    std::vector<std::string> found = parts(words);
    if (found.size() == 1 && isDigit(found[0].front()) && found[0].size() == yearDigits + 2) {
        found = {found[0].substr(0, yearDigits), found[0].substr(yearDigits)};
    }
    const auto isYear = [](const std::string& word) {
        return word.size() == yearDigits && isDigit(word.front());
    };
    if (found.size() == 2 && isYear(found[1])) {
        std::swap(found[0], found[1]);
    }
    if (found.size() < 2 || !isYear(found[0])) {
        return std::nullopt;
    }
    const auto month = monthNumber(found[1]);
    return month ? std::optional(fmt::format("{}-{:02}", found[0], std::clamp(*month, 1, 12)))
                 : std::nullopt;
}

} // namespace

CalendarDay readMonth(std::string_view text)
{
    const std::string_view words = KestryCore::trimmed(text);
    if (const auto month = wellWritten(words)) {
        return *month;
    }
    const auto near = nearMonth(words);
    const bool hasNear = near && wellWritten(*near);
    const auto named = parts(words).size() == 1 ? namedMonth(parts(words)[0]) : std::nullopt;
    const std::string advice = hasNear
        ? fmt::format("Did you mean \"{}\"?", *near)
        : fmt::format("Give its year and number, as in \"2026-{:02}\".", named.value_or(3));
    throw UsageError(fmt::format("\"{}\" is no month. {}", text, advice));
}

} // namespace Kestry
