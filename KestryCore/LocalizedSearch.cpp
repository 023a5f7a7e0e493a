#include "LocalizedSearch.h"

#include <unicode/uchar.h>
#include <unicode/utf16.h>

#include <cstddef>

namespace KestryCore {

namespace {

/// Whether a letter begins or ends here, so that no accent is torn from the letter below it, and
/// no Korean syllable apart.
bool isLetterBoundary(std::u16string_view text, std::size_t position)
{
    if (position == 0 || position == text.size()) {
        return true;
    }
    UChar32 character = 0;
    U16_GET(text, 0, position, text.size(), character);
    const auto syllablePart = u_getIntPropertyValue(character, UCHAR_HANGUL_SYLLABLE_TYPE);
    return u_getCombiningClass(character) == 0 && syllablePart != U_HST_VOWEL_JAMO
        && syllablePart != U_HST_TRAILING_JAMO;
}

} // namespace

LocalizedSearch::LocalizedSearch(std::string_view wanted, const std::string& locale)
    : folding_(locale)
{
    folding_.fold(wanted, wanted_);
}

bool LocalizedSearch::isFoundIn(std::string_view text)
{
    folding_.fold(text, text_);
    const std::u16string_view searched = text_;
    for (std::size_t place = searched.find(wanted_); place != std::u16string_view::npos;
         place = searched.find(wanted_, place + 1)) {
        if (isLetterBoundary(searched, place)
            && isLetterBoundary(searched, place + wanted_.size())) {
            return true;
        }
    }
    return false;
}

} // namespace KestryCore
