#include "LocalizedOrder.h"

#include <unicode/coll.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <numeric>
#include <utility>

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
        const std::string number = "1" + std::string(longestNumber - 1 - part.size(), '0') + part;
        text.append(icu::UnicodeString::fromUTF8(piece(number)));
    };
    text.append(icu::UnicodeString::fromUTF8(piece(std::string(longestNumber, '9'))));
    append(std::to_string(digits.size()));
    for (std::size_t start = 0; start < digits.size(); start += longestNumber - 1) {
        // All but the last part are full, and numbers of one length are cut at the same places.
        append(digits.substr(start, longestNumber - 1));
    }
}

/// The text with its longest numbers written so that the library compares them by their value.
icu::UnicodeString withComparableNumbers(const icu::UnicodeString& text)
{
    icu::UnicodeString result;
    for (std::int32_t position = 0; position < text.length();) {
        const std::int32_t start = position;
        std::string digits;
        while (position < text.length()
            && u_charType(text.char32At(position)) == U_DECIMAL_DIGIT_NUMBER) {
            const int value = u_charDigitValue(text.char32At(position));
            if (!digits.empty() || value != 0) {
                digits.push_back(static_cast<char>('0' + value));
            }
            position = text.moveIndex32(position, 1);
        }
        if (digits.size() >= longestNumber) {
            appendLongNumber(digits, result);
            continue;
        }
        if (position == start) {
            position = text.moveIndex32(position, 1);
        }
        result.append(text, start, position - start);
    }
    return result;
}

bool mayHoldLongNumber(std::string_view text)
{
    return text.size() >= longestNumber;
}

icu::UnicodeString prepared(std::string_view text)
{
    const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(piece(text));
    return mayHoldLongNumber(text) ? withComparableNumbers(wide) : wide;
}

} // namespace

struct LocalizedOrder::Rules {
    std::string locale;
    std::unique_ptr<const icu::Collator> collator;
};

LocalizedOrder::LocalizedOrder(const std::string& locale)
    : rules_(std::make_shared<const Rules>(Rules{locale, makeCollator(locale)}))
{
}

const std::string& LocalizedOrder::locale() const
{
    return rules_->locale;
}

std::weak_ordering LocalizedOrder::compare(std::string_view left, std::string_view right) const
{
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult result = mayHoldLongNumber(left) || mayHoldLongNumber(right)
        ? rules_->collator->compare(prepared(left), prepared(right), status)
        : rules_->collator->compareUTF8(piece(left), piece(right), status);
    requireSuccess(status);
    return result <=> 0;
}

std::vector<std::uint32_t> LocalizedOrder::ranks(const std::vector<std::string_view>& texts) const
{
    std::vector<std::uint32_t> order(texts.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::sort(order, [&](std::uint32_t left, std::uint32_t right) {
        return compare(texts[left], texts[right]) < 0;
    });
    std::vector<std::uint32_t> ranks(texts.size());
    for (std::size_t place = 1; place < order.size(); ++place) {
        const std::uint32_t last = order[place - 1];
        const bool isHigher = compare(texts[last], texts[order[place]]) < 0;
        ranks[order[place]] = ranks[last] + (isHigher ? 1 : 0);
    }
    return ranks;
}

} // namespace KestryCore
