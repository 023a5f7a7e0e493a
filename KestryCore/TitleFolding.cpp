#include "TitleFolding.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdint>

#include "LedgerError.h"

namespace KestryCore {

namespace {

bool isAscii(std::string_view text)
{
    return std::ranges::all_of(text, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

char loweredAscii(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// Told by the place that a mark takes: strokes through letters, the points of Hebrew, Arabic and
/// Syriac, and all that stands above, below or beside letters at large.
bool mayBeLeftOut(UChar32 codePoint)
{
    const int place = u_getCombiningClass(codePoint);
    return place == 1 || (place >= 10 && place <= 36) || place >= 200;
}

icu::UnicodeString withoutMarks(const icu::UnicodeString& text)
{
    icu::UnicodeString result;
    for (std::int32_t index = 0; index < text.length(); index = text.moveIndex32(index, 1)) {
        const UChar32 codePoint = text.char32At(index);
        if (!mayBeLeftOut(codePoint)) {
            result.append(codePoint);
        }
    }
    return result;
}

void requireComparison(UErrorCode status)
{
    if (U_FAILURE(status)) {
        throw LedgerError("The titles of earlier sessions could not be compared.");
    }
}

icu::UnicodeString folded(std::string_view title)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::StringPiece bytes(title.data(), static_cast<std::int32_t>(title.size()));
    const auto text = icu::UnicodeString::fromUTF8(bytes);
    const icu::Normalizer2* decomposing = icu::Normalizer2::getNFDInstance(status);
    requireComparison(status);
    const icu::UnicodeString decomposed = decomposing->normalize(text, status);
    requireComparison(status);
    return withoutMarks(decomposed).foldCase();
}

} // namespace

std::string foldedTitle(std::string_view title)
{
    std::string result;
    if (isAscii(title)) {
        result.resize(title.size());
        std::ranges::transform(title, result.begin(), loweredAscii);
        return result;
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* composing = icu::Normalizer2::getNFCInstance(status);
    requireComparison(status);
    composing->normalize(folded(title), status).toUTF8String(result);
    requireComparison(status);
    return result;
}

} // namespace KestryCore
