#include "LocaleCollator.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <cstdint>

#include "LedgerError.h"

namespace KestryCore {

namespace {

/// As many digits the library compares by their value in one go; further digits of a number would
/// count as a number of their own.
constexpr std::size_t longestNumber = 254;

icu::StringPiece piece(std::string_view text)
{
    return {text.data(), static_cast<std::int32_t>(text.size())};
}

void requireSuccess(UErrorCode status)
{
    if (U_FAILURE(status)) {
        throw LedgerError("Texts cannot be compared in the order of this locale.");
    }
}

std::unique_ptr<const icu::Collator> makeCollator(const std::string& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icu::Locale(locale.c_str()), status));
    requireSuccess(status);
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    // However a letter with several accents is composed.
    collator->setAttribute(UCOL_NORMALIZATION_MODE, UCOL_ON, status);
    requireSuccess(status);
    return collator;
}

/// Appends a number as a sequence of numbers of the longest length, so that it stands after every
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

/// Reads the number at a position, and moves behind it: its digits without leading zeros.
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

/// Whether there is a number that the library may compare wrongly: a long one, or one with digits
/// beyond ASCII, which in some languages it does not see after a common beginning.
bool mayHoldDifficultNumber(std::string_view text)
{
    if (text.size() >= longestNumber) {
        return true;
    }
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    for (std::size_t position = 0; position < text.size();) {
        if (U8_IS_SINGLE(bytes[position])) {
            ++position;
            continue;
        }
        UChar32 character = 0;
        U8_NEXT_OR_FFFD(bytes, position, text.size(), character);
        if (isDigit(character)) {
            return true;
        }
    }
    return false;
}

icu::UnicodeString prepared(std::string_view text)
{
    const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(piece(text));
    return mayHoldDifficultNumber(text) ? withComparableNumbers(wide) : wide;
}

} // namespace

LocaleCollator::LocaleCollator(const std::string& locale) : collator_(makeCollator(locale)) { }

std::weak_ordering LocaleCollator::compare(std::string_view left, std::string_view right) const
{
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult result = mayHoldDifficultNumber(left) || mayHoldDifficultNumber(right)
        ? collator_->compare(prepared(left), prepared(right), status)
        : collator_->compareUTF8(piece(left), piece(right), status);
    requireSuccess(status);
    return result <=> 0;
}

void LocaleCollator::addKey(
    std::string_view text, std::uint32_t member, ByteStringOrder& keys) const
{
    const icu::UnicodeString wide = prepared(text);
    // Room for the keys of most texts, so that few are worked out twice.
    auto most = 4 * static_cast<std::int32_t>(wide.length()) + 16;
    std::int32_t length =
        collator_->getSortKey(wide, keys.room(static_cast<std::size_t>(most)), most);
    if (length > most) {
        most = length;
        length = collator_->getSortKey(wide, keys.room(static_cast<std::size_t>(most)), most);
    }
    keys.add(member, static_cast<std::size_t>(length) - 1); // without the zero at its end
}

} // namespace KestryCore
