#include "LocalizedOrder.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <unordered_map>

#include "LedgerError.h"

namespace KestryCore {

namespace {

/// Finds a text without copying it first.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const
    {
        return std::hash<std::string_view>{}(text);
    }
};

using KeysByText = std::unordered_map<std::string, std::string, TextHash, std::equal_to<>>;

/// The library compares this many digits of a number by their value; those after them would count
/// as a number of their own.
constexpr std::size_t longestNumber = 254;

icu::StringPiece piece(std::string_view text)
{
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

constexpr const char* noOrder = "Texts cannot be compared in the order of this locale.";

void requireOrder(UErrorCode status)
{
    if (U_FAILURE(status)) {
        throw LedgerError(noOrder);
    }
}

std::unique_ptr<const icu::Collator> makeCollator(const std::string& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icu::Locale(locale.c_str()), status));
    requireOrder(status);
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    // However a letter with several accents is composed.
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    requireOrder(status);
    return collator;
}

/// Appends a number as a sequence of numbers of the longest length, so that it comes after every
/// number that is short enough to be left alone, and among its like by its length first.
void appendLongNumber(const std::string& digits, icu::UnicodeString& text)
{
    const auto append = [&](const std::string& part) {
        // The leading one keeps the zeros after it from being left out.
        std::string number(longestNumber - part.size(), '0');
        number.front() = '1';
        number += part;
        text.append(icu::UnicodeString::fromUTF8(piece(number)));
    };
    text.append(icu::UnicodeString::fromUTF8(piece(std::string(longestNumber, '9'))));
    append(std::to_string(digits.size()));
    for (std::size_t start = 0; start < digits.size(); start += longestNumber - 1) {
        // All but the last part are full, and numbers of one length are cut at the same places.
        append(digits.substr(start, longestNumber - 1));
    }
}

bool isDigit(UChar32 character)
{
    return u_charType(character) == U_DECIMAL_DIGIT_NUMBER;
}

/// Reads the number at a position and moves behind it. Returns its digits without leading zeros.
std::string readNumber(const icu::UnicodeString& text, std::int32_t& position)
{
    std::string digits;
    for (; position < text.length() && isDigit(text.char32At(position));
         position = text.moveIndex32(position, 1)) {
        const int value = u_charDigitValue(text.char32At(position));
        if (!digits.empty() || value != 0) {
            digits.push_back(static_cast<char>('0' + value));
        }
    }
    return digits.empty() ? "0" : digits;
}

/// The text with its numbers written so that the library compares them by their value.
icu::UnicodeString withComparableNumbers(const icu::UnicodeString& text)
{
    icu::UnicodeString result;
    for (std::int32_t position = 0; position < text.length();) {
        const UChar32 character = text.char32At(position);
        if (!isDigit(character)) {
            result.append(character);
            position = text.moveIndex32(position, 1);
            continue;
        }
        const std::string digits = readNumber(text, position);
        if (digits.size() < longestNumber) {
            result.append(icu::UnicodeString::fromUTF8(piece(digits)));
        } else {
            appendLongNumber(digits, result);
        }
    }
    return result;
}

std::string makeKey(const icu::Collator& collator, std::string_view text)
{
    icu::UnicodeString wide = icu::UnicodeString::fromUTF8(piece(text));
    // Only a text this long can contain a number that is too long.
    if (text.size() >= longestNumber) {
        wide = withComparableNumbers(wide);
    }
    const auto compute = [&](std::uint8_t* room, std::size_t size) {
        const auto length = static_cast<std::size_t>(
            collator.getSortKey(wide, room, static_cast<std::int32_t>(size)));
        if (length == 0) {
            throw LedgerError(noOrder);
        }
        return length;
    };
    // Room for the keys of most texts, so that few are computed twice.
    std::array<std::uint8_t, 512> room{};
    const std::size_t length = compute(room.data(), room.size());
    const std::size_t keyLength = length - 1; // without the zero at its end
    if (length <= room.size()) {
        return {room.begin(), room.begin() + static_cast<std::ptrdiff_t>(keyLength)};
    }
    std::string key(length, '\0');
    (void)compute(reinterpret_cast<std::uint8_t*>(key.data()), key.size());
    key.resize(keyLength);
    return key;
}

} // namespace

struct LocalizedOrder::Rules {
    std::string locale;
    std::unique_ptr<const icu::Collator> collator;
    KeysByText keys{};
};

LocalizedOrder::LocalizedOrder(const std::string& locale)
    : rules_(std::make_shared<Rules>(Rules{locale, makeCollator(locale)}))
{
}

const std::string& LocalizedOrder::locale() const
{
    return rules_->locale;
}

std::vector<std::string_view> LocalizedOrder::keys(const std::vector<std::string_view>& texts) const
{
    // Titles change over time. The keys of old ones must not be kept for ever.
    constexpr std::size_t mostRemembered = std::size_t{1} << 18;
    KeysByText& known = rules_->keys;
    if (known.size() > mostRemembered) {
        known.clear();
    }
    std::vector<std::string_view> result;
    result.reserve(texts.size());
    for (const std::string_view text : texts) {
        auto found = known.find(text);
        if (found == known.end()) {
            found = known.emplace(text, makeKey(*rules_->collator, text)).first;
        }
        result.emplace_back(found->second);
    }
    return result;
}

} // namespace KestryCore
