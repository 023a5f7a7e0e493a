#include "CsvWriter.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <utility>

#include "JsonWriter.h"
#include "Text.h"

namespace KestryCore {

namespace {

constexpr std::string_view endOfLine = "\r\n";

bool beginsFormula(char character)
{
    return character == '=' || character == '+' || character == '-' || character == '@';
}

/// Whether a spreadsheet might take the text for a formula, also after skipping blanks or taking
/// a control character for a separator.
bool looksLikeFormula(std::string_view value)
{
    if (value.empty()) {
        return false;
    }
    const char first = value.front();
    if (first > ' ' && first < '\x7F') {
        return beginsFormula(first);
    }
    const std::string_view words = trimmed(value);
    if (!words.empty() && beginsFormula(words.front())) {
        return true;
    }
    const bool beginsWithControl = first == '\t' || first == '\r' || first == '\n';
    return beginsWithControl && !value.starts_with(endOfLine);
}

/// What a number that is not negative times `scale` rounds to; negative where the product in binary
/// cannot tell.
template <std::int64_t scale>
std::int64_t roundedProduct(double value)
{
    constexpr double limit = 1e12;
    const double product = value * static_cast<double>(scale);
    if (!(product >= 0.0 && product < limit)) {
        return -1;
    }
    const auto whole = static_cast<std::int64_t>(product);
    const double rest = product - static_cast<double>(whole);
    // Below the limit the product is less wrong than this margin around a half is wide.
    if (std::abs(rest - 0.5) < 0.001) {
        return -1;
    }
    return whole + static_cast<std::int64_t>(rest > 0.5);
}

/// Writes with so many decimals, which are the zeros of `scale`, and returns the end.
template <int decimals, std::int64_t scale>
char* writeNumber(char* place, char* end, double value)
{
    const std::int64_t product = roundedProduct<scale>(value);
    if (product < 0) {
        return std::to_chars(place, end, value, std::chars_format::fixed, decimals).ptr;
    }
    place = std::to_chars(place, end, product / scale).ptr;
    *place = '.';
    auto rest = static_cast<unsigned>(product % scale);
    for (int digit = decimals; digit > 0; --digit, rest /= 10) {
        place[digit] = static_cast<char>('0' + rest % 10);
    }
    return place + decimals + 1;
}

} // namespace

CsvWriter::CsvWriter(std::string_view firstLine, std::size_t expectedSize)
{
    text_.reserve(expectedSize);
    text_.append(firstLine).append(endOfLine);
}

void CsvWriter::text(std::string_view value)
{
    beginCell();
    if (looksLikeFormula(value)) {
        *place_++ = '\'';
    }
    for (auto quote = value.find('"'); quote != std::string_view::npos; quote = value.find('"')) {
        append(value.substr(0, quote + 1));
        append("\"");
        value.remove_prefix(quote + 1);
    }
    append(value);
}

void CsvWriter::time(Date date)
{
    beginCell();
    place_ = timestamps_.write(place_, date);
}

void CsvWriter::number(double value, Decimals decimals)
{
    beginCell();
    guardSign(value);
    char* const end = collected_.data() + collected_.size();
    place_ = decimals == Decimals::two ? writeNumber<2, 100>(place_, end, value)
                                       : writeNumber<6, 1'000'000>(place_, end, value);
}

void CsvWriter::exactNumber(double value)
{
    beginCell();
    guardSign(value);
    std::array<char, longestNumber> room{};
    const std::string_view digits = numberText(value, room);
    place_ += digits.copy(place_, digits.size());
    const auto tellsMoreThanDigits = [](char character) {
        return character == '.' || character == 'e';
    };
    if (std::ranges::none_of(digits, tellsMoreThanDigits)) {
        *place_++ = '.';
        *place_++ = '0';
    }
}

void CsvWriter::flag(bool value)
{
    beginCell();
    const std::string_view word = value ? "true" : "false";
    place_ += word.copy(place_, word.size());
}

void CsvWriter::empty()
{
    beginCell();
}

void CsvWriter::endLine()
{
    append("\"\r\n");
    isInLine_ = false;
}

std::string CsvWriter::take()
{
    flush();
    return std::move(text_);
}

void CsvWriter::append(std::string_view bytes)
{
    const std::size_t room =
        collected_.size() - static_cast<std::size_t>(place_ - collected_.data());
    if (bytes.size() > room) {
        flush();
    }
    if (bytes.size() > collected_.size()) {
        text_ += bytes;
        return;
    }
    place_ += bytes.copy(place_, bytes.size());
}

/// A minus begins what could be a formula.
void CsvWriter::guardSign(double value)
{
    if (value < 0.0) {
        *place_++ = '\'';
    }
}

void CsvWriter::flush()
{
    text_.append(collected_.data(), place_);
    place_ = collected_.data();
}

} // namespace KestryCore
