#include "Spelling.h"

#include <algorithm>

namespace KestryCore {

namespace {

/// Longer texts are not misspelt words; comparing them would only cost time.
constexpr std::size_t maximumLength = 64;

char lowered(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

std::string lowered(std::string_view word)
{
    std::string result(word);
    std::ranges::transform(result, result.begin(), [](char letter) { return lowered(letter); });
    return result;
}

} // namespace

std::size_t editDistance(std::string_view left, std::string_view right)
{
    const std::string from = lowered(left);
    const std::string to = lowered(right);
    std::vector<std::size_t> beforePrevious;
    std::vector<std::size_t> previous(to.size() + 1);
    for (std::size_t column = 0; column <= to.size(); ++column) {
        previous[column] = column;
    }
    for (std::size_t row = 1; row <= from.size(); ++row) {
        std::vector<std::size_t> current(to.size() + 1);
        current[0] = row;
        for (std::size_t column = 1; column <= to.size(); ++column) {
            const std::size_t replaced = from[row - 1] == to[column - 1] ? 0 : 1;
            current[column] = std::min(
                {previous[column] + 1, current[column - 1] + 1, previous[column - 1] + replaced});
            const bool swapped = row > 1 && column > 1 && from[row - 1] == to[column - 2]
                && from[row - 2] == to[column - 1];
            if (swapped) {
                current[column] = std::min(current[column], beforePrevious[column - 2] + 1);
            }
        }
        beforePrevious = std::move(previous);
        previous = std::move(current);
    }
    return previous[to.size()];
}

std::optional<std::string> nearestWord(
    std::string_view word, const std::vector<std::string>& candidates)
{
    if (word.empty() || word.size() > maximumLength) {
        return std::nullopt;
    }
    const std::size_t limit = std::max<std::size_t>(1, word.size() / 3);
    std::optional<std::string> nearest;
    std::size_t nearestDistance = limit + 1;
    for (const std::string& candidate : candidates) {
        const std::size_t distance = editDistance(word, candidate);
        if (distance < nearestDistance) {
            nearest = candidate;
            nearestDistance = distance;
        }
    }
    return nearest;
}

} // namespace KestryCore
