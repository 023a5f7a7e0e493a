#pragma once

#include <string>
#include <string_view>

#include "LocaleFolding.h"

namespace KestryCore {

/// Looks for one text in others by the rules of one locale: capitals and small letters are equal
/// (in Turkish "I" belongs to "ı" and "İ" to "i"), letters with and without an accent are
/// different, and the composition of an accented letter does not matter. A letter is found only as
/// a whole: "e" is not part of an "é".
class LocalizedSearch {
public:
    /// `wanted` is not changed, blanks included; when empty it is found everywhere. `locale` is a
    /// name such as "tr_TR".
    LocalizedSearch(std::string_view wanted, const std::string& locale);

    [[nodiscard]] bool isFoundIn(std::string_view text);

private:
    LocaleFolding folding_;
    std::u16string wanted_;
    std::u16string text_; // the one looked at, kept for its memory
};

} // namespace KestryCore
