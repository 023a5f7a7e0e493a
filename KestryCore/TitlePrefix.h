#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace KestryCore {

/// Tells quickly of most titles that they cannot begin with a given prefix once both are folded.
///
/// A folded text is nearly the folds of its code points in a row, so the two can be compared as
/// far as the prefix goes, without folding the title as a whole. What can be otherwise in the whole
/// is that a letter becomes one with what follows (か and its voicing mark), and that marks change
/// places; where that might matter, the answer is that the title may begin so.
class TitlePrefix {
public:
    explicit TitlePrefix(std::string_view foldedPrefix);

    /// False only where the fold of the title, blanks around aside, does not begin with the prefix.
    [[nodiscard]] bool mayBegin(std::string_view title);

private:
    /// What a code point's fold does to what stands before it.
    enum class Joining {
        never,
        asMark, ///< Nothing, but it may change places with other marks.
        maybe,  ///< It may become one letter with it, or is too unusual to tell.
    };

    /// What one code point gives when it is folded.
    struct Fold {
        char32_t codePoint = 0;
        std::array<char32_t, 3> letters{};
        std::size_t count = 0;
        Joining joining = Joining::maybe;
    };

    const Fold& foldOf(char32_t codePoint);
    /// Whether the letters at the start of the text may change the one before them.
    bool mayChangeWhatIsBefore(std::string_view text, Joining before);

    std::u32string prefix_;
    /// Titles begin with few different letters, which share this without often meeting.
    std::array<Fold, 256> known_{};
};

} // namespace KestryCore
