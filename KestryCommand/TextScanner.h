#pragma once

#include <cmath>
#include <cstddef>
#include <optional>
#include <string_view>

namespace Kestry {

/// Reads a text from its beginning.
class TextScanner {
public:
    explicit TextScanner(std::string_view text) : rest_(text) { }

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

    /// Takes a word in small letters, however it is written here.
    bool takeWord(std::string_view expected)
    {
        TextScanner ahead = *this;
        for (const char letter : expected) {
            const auto capital = static_cast<char>(letter - 'a' + 'A');
            if (!ahead.take(letter) && !ahead.take(capital)) {
                return false;
            }
        }
        *this = ahead;
        return true;
    }

    /// The number in all digits from here. Returns nullopt, and reads nothing, unless there are at
    /// least `fewest` and at most `most` of them.
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

    /// The number in the next `count` digits, whatever follows them; nullopt when there are fewer.
    std::optional<int> digits(std::size_t count)
    {
        if (digitCount() < count) {
            return std::nullopt;
        }
        TextScanner front(rest_.substr(0, count));
        rest_.remove_prefix(count);
        return front.number(count, count);
    }

    /// The value of the digits as a decimal fraction, below 1.
    std::optional<double> fraction()
    {
        constexpr std::size_t mostDigits = 9;
        const std::size_t count = digitCount();
        const auto value = number(1, mostDigits);
        if (!value) {
            return std::nullopt;
        }
        return *value / std::pow(10.0, static_cast<double>(count));
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

} // namespace Kestry
