#include "CanonicalReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

#include "Base64.h"
#include "JsonWriter.h"

namespace KestryCore {

namespace {

constexpr bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

constexpr bool isPlain(char character)
{
    return static_cast<unsigned char>(character) >= 0x20 && character != '"' && character != '\\'
        && character != '/';
}

constexpr std::array<bool, 256> plainCharacters = [] {
    std::array<bool, 256> plain{};
    for (std::size_t code = 0; code < plain.size(); ++code) {
        plain[code] = isPlain(static_cast<char>(code));
    }
    return plain;
}();

/// The character that a letter after a backslash means; 0 for another letter.
std::optional<char> unescaped(char letter)
{
    switch (letter) {
    case '"':
    case '\\':
    case '/':
        return letter;
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return std::nullopt;
    }
}

} // namespace

void CanonicalReader::read(bool& flag)
{
    flag = takes("true");
    if (!flag) {
        expect("false");
    }
}

void CanonicalReader::read(std::int64_t& number)
{
    const char* const start = position_;
    const auto [end, error] = std::from_chars(position_, end_, number);
    std::array<char, 24> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    const std::string_view canonical(
        digits.data(), static_cast<std::size_t>(written.ptr - digits.data()));
    if (error != std::errc{}
        || canonical != std::string_view(start, static_cast<std::size_t>(end - start))) {
        throw NotCanonical{};
    }
    position_ = end;
}

void CanonicalReader::read(double& number)
{
    // Numbers of up to 15 digits are the shortest form of the double that they name, and both
    // their digits and the power of ten are exact doubles, so that one division rounds right.
    constexpr std::array<double, 16> powersOfTen{
        1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr std::size_t exactDigits = 15;
    const char* next = position_;
    std::uint64_t digits = 0;
    const auto takeDigits = [&] {
        const char* const first = next;
        for (; next != end_ && isDigit(*next); ++next) {
            digits = digits * 10 + static_cast<std::uint64_t>(*next - '0');
        }
        return static_cast<std::size_t>(next - first);
    };
    const std::size_t count = takeDigits();
    std::size_t decimals = 0;
    const bool isWhole = next == end_ || *next != '.';
    if (!isWhole) {
        ++next;
        decimals = takeDigits();
    }
    const std::string_view text(position_, static_cast<std::size_t>(next - position_));
    const bool hasExponent = next != end_ && *next == 'e';
    const bool isPlainForm = count > 0 && text.front() != '0' && !hasExponent
        && (isWhole || (decimals > 0 && text.back() != '0'));
    if (isPlainForm && count + decimals <= exactDigits) {
        number = static_cast<double>(digits) / powersOfTen[decimals];
        position_ = next;
        return;
    }
    readAnyNumber(number);
}

void CanonicalReader::readAnyNumber(double& number)
{
    const auto [end, error] = std::from_chars(position_, end_, number);
    // The standard library reads "inf" and "nan" too.
    if (error != std::errc{} || !std::isfinite(number)) {
        throw NotCanonical{};
    }
    std::array<char, longestNumber> digits{};
    if (numberText(number, digits)
        != std::string_view(position_, static_cast<std::size_t>(end - position_))) {
        throw NotCanonical{};
    }
    position_ = end;
}

void CanonicalReader::read(std::string& text)
{
    expect("\"");
    text.clear();
    while (true) {
        const char* const start = position_;
        while (position_ != end_ && plainCharacters[static_cast<unsigned char>(*position_)]) {
            ++position_;
        }
        text.append(start, position_);
        if (takes("\"")) {
            return;
        }
        expect("\\");
        text += escapedCharacter();
    }
}

char CanonicalReader::escapedCharacter()
{
    const std::optional<char> character = position_ == end_ ? std::nullopt : unescaped(*position_);
    if (character) {
        ++position_;
        return *character;
    }
    expect("u00");
    constexpr std::size_t none = std::string_view::npos;
    constexpr std::string_view hexDigits = "0123456789abcdef";
    const std::size_t high = position_ == end_ ? none : hexDigits.find(*position_++);
    const std::size_t low = position_ == end_ ? none : hexDigits.find(*position_++);
    const std::size_t code = high * 16 + low;
    constexpr std::string_view shorter = "\b\f\n\r\t";
    if (high > 1 || low == none || shorter.find(static_cast<char>(code)) != none) {
        throw NotCanonical{};
    }
    return static_cast<char>(code);
}

void CanonicalReader::read(Uuid& uuid)
{
    constexpr std::size_t length = 36;
    expect("\"");
    const std::string_view text = rest().substr(0, length);
    // Only lower-case letters have both bits; digits and hyphens lack the one, capitals the other.
    unsigned lowerCase = 0;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        lowerCase |= static_cast<unsigned>(code & code << 1U) & 0x40U;
    }
    const std::optional<Uuid> parsed = Uuid::parse(text);
    if (lowerCase != 0 || !parsed) {
        throw NotCanonical{};
    }
    uuid = *parsed;
    position_ += length;
    expect("\"");
}

std::string CanonicalReader::readBytes()
{
    std::string text;
    read(text);
    std::optional<std::string> content = decodeBase64(text);
    if (!content || encodeBase64(*content) != text) {
        throw NotCanonical{};
    }
    return std::move(*content);
}

void CanonicalReader::read(std::vector<TimeSpan>& spans)
{
    expect("[");
    if (takes("]")) {
        return;
    }
    // Most sessions have few intervals: gathered here, they need one allocation of the right size.
    constexpr std::size_t few = 8;
    std::array<TimeSpan, few> gathered{};
    std::size_t count = 0;
    do {
        if (count == few) {
            spans.insert(spans.end(), gathered.begin(), gathered.end());
            count = 0;
        }
        read(gathered[count++]);
    } while (takes(","));
    spans.insert(
        spans.end(), gathered.begin(), gathered.begin() + static_cast<std::ptrdiff_t>(count));
    expect("]");
}

} // namespace KestryCore
