#include "JsonWriter.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cmath>
#include <utility>

#include "LedgerError.h"
#include "Text.h"

namespace KestryCore {

namespace {

constexpr double smallestPlainMagnitude = 0.0001;
constexpr double exponentFromMagnitude = 1e16;

std::chars_format notation(double number)
{
    const double magnitude = std::abs(number);
    const bool plain = magnitude == 0.0
        || (magnitude >= smallestPlainMagnitude && magnitude < exponentFromMagnitude);
    return plain ? std::chars_format::fixed : std::chars_format::scientific;
}

/// The letter that escapes a character after a backslash, or 0.
constexpr char shortEscape(char character)
{
    switch (character) {
    case '"':
    case '\\':
    case '/':
        return character;
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return 0;
    }
}

constexpr bool needsEscape(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || shortEscape(character) != 0;
}

} // namespace

std::string_view numberText(double number, std::array<char, longestNumber>& room)
{
    assert(std::isfinite(number));
    // Adding zero takes the sign from a negative zero: the two compare as equal, so records that
    // are equal would otherwise have different bytes.
    const auto result =
        std::to_chars(room.data(), room.data() + room.size(), number + 0.0, notation(number));
    return {room.data(), static_cast<std::size_t>(result.ptr - room.data())};
}

void JsonWriter::beginElement()
{
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (!scopes_.empty()) {
        if (!scopes_.back().isEmpty) {
            text_ += ',';
        }
        scopes_.back().isEmpty = false;
    }
}

void JsonWriter::beginValue()
{
    assert(afterKey_ || scopes_.empty() || !scopes_.back().isObject);
    beginElement();
}

void JsonWriter::begin(char bracket, bool isObject)
{
    beginValue();
    text_ += bracket;
    scopes_.push_back(Scope{text_.size(), isObject, true, {}});
}

void JsonWriter::beginObject()
{
    begin('{', true);
}

void JsonWriter::endObject()
{
    assert(!afterKey_ && !scopes_.empty() && scopes_.back().isObject);
    if (order_ == JsonKeyOrder::sorted) {
        sortMembers(scopes_.back());
    }
    scopes_.pop_back();
    text_ += '}';
}

void JsonWriter::beginArray()
{
    begin('[', false);
}

void JsonWriter::endArray()
{
    assert(!scopes_.empty() && !scopes_.back().isObject);
    scopes_.pop_back();
    text_ += ']';
}

void JsonWriter::key(std::string_view name)
{
    assert(!afterKey_ && !scopes_.empty() && scopes_.back().isObject);
    beginElement();
    if (order_ == JsonKeyOrder::sorted) {
        scopes_.back().members.push_back(Member{std::string(name), text_.size()});
    }
    appendQuoted(name);
    text_ += ':';
    afterKey_ = true;
}

void JsonWriter::value(std::string_view text)
{
    beginValue();
    appendQuoted(text);
}

void JsonWriter::value(bool flag)
{
    beginValue();
    text_ += flag ? "true" : "false";
}

void JsonWriter::value(std::int64_t number)
{
    beginValue();
    std::array<char, 24> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    text_.append(digits.data(), result.ptr);
}

void JsonWriter::value(double number)
{
    if (!std::isfinite(number)) {
        throw LedgerError("A number in the data is not finite and can't be saved.");
    }
    beginValue();
    std::array<char, longestNumber> digits{};
    text_ += numberText(number, digits);
}

void JsonWriter::null()
{
    beginValue();
    text_ += "null";
}

void JsonWriter::json(std::string_view written)
{
    beginValue();
    text_ += written;
}

std::string JsonWriter::take()
{
    assert(order_ == JsonKeyOrder::declared || scopes_.empty());
    return std::exchange(text_, {});
}

void JsonWriter::appendQuoted(std::string_view text)
{
    if (!isWellFormedUtf8(text)) {
        throw LedgerError("A text in the data is not valid UTF-8 and can't be saved.");
    }
    constexpr std::string_view hexDigits = "0123456789abcdef";
    text_ += '"';
    while (!text.empty()) {
        const auto special = std::find_if(text.begin(), text.end(), needsEscape);
        text_.append(text.begin(), special);
        text.remove_prefix(static_cast<std::size_t>(special - text.begin()));
        if (text.empty()) {
            break;
        }
        const char character = text.front();
        text.remove_prefix(1);
        text_ += '\\';
        if (const char letter = shortEscape(character); letter != 0) {
            text_ += letter;
        } else {
            text_ += "u00";
            text_ += hexDigits[character >> 4 & 0x0F];
            text_ += hexDigits[character & 0x0F];
        }
    }
    text_ += '"';
}

void JsonWriter::sortMembers(const Scope& scope)
{
    const auto& members = scope.members;
    if (std::ranges::is_sorted(members, {}, &Member::key)) {
        return;
    }
    std::vector<std::size_t> order(members.size());
    for (std::size_t index = 0; index < order.size(); ++index) {
        order[index] = index;
    }
    std::ranges::sort(order, {}, [&](std::size_t index) { return members[index].key; });
    std::string sorted;
    for (const std::size_t index : order) {
        // A member's text runs up to the comma before the next one.
        const std::size_t start = members[index].start;
        const std::size_t end =
            index + 1 < members.size() ? members[index + 1].start - 1 : text_.size();
        if (!sorted.empty()) {
            sorted += ',';
        }
        sorted.append(text_, start, end - start);
    }
    text_.replace(scope.start, text_.size() - scope.start, sorted);
}

} // namespace KestryCore
