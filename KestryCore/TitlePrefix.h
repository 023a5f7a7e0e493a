#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace KestryCore {

/// Tells quickly of most titles that they cannot begin with a given prefix once both are folded.
///
/// A folded text is nearly the folds of its code points in a row, so the two can be compared as
/// far as the prefix goes, without folding the title as a whole. Where that is not certain, the
/// answer is that the title may begin so.
class TitlePrefix {
public:
    /// Takes a prefix without blanks around, not folded.
    explicit TitlePrefix(std::string_view prefix);

    /// False only where the fold of the title, blanks around aside, does not begin with the fold of
    /// the prefix.
    [[nodiscard]] bool mayBegin(std::string_view title);

private:
    /// What one code point gives when it is folded.
    struct Fold {
        char32_t codePoint = 0;
        std::array<char32_t, 3> letters{};
        std::size_t count = 0;
        bool isCertain = false; ///< All letters are here, and none changes places with others.
    };

    const Fold& foldOf(char32_t codePoint);

    std::u32string prefix_;
    /// Titles begin with few different letters, which share this without often meeting.
    std::array<Fold, 128> known_{};
};

} // namespace KestryCore
