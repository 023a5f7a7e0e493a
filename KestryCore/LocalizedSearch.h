#pragma once

#include <string>
#include <string_view>

#include "LocaleFolding.h"

namespace KestryCore {

/// Looks for one text inside others as the people of one locale read them: capitals and small
/// letters are the same (in Turkish "I" belongs to "ı" and "İ" to "i"), letters with and without
/// an accent are not, and it makes no difference how an accented letter is composed. A letter is
/// only found as a whole: "e" is no part of an "é".
class LocalizedSearch {
public:
    /// `wanted` is used as it stands, blanks included; empty, it is found everywhere. `locale` is
    /// a name such as "tr_TR".
    LocalizedSearch(std::string_view wanted, const std::string& locale);

    [[nodiscard]] bool isFoundIn(std::string_view text);

private:
    LocaleFolding folding_;
    std::u16string wanted_;
    std::u16string text_; // the one looked at, kept for its memory
};

} // namespace KestryCore
