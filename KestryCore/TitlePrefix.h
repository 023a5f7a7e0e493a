#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace KestryCore {

/// Decides quickly for most titles that they cannot begin with a given prefix when both are folded.
///
/// A folded text is mostly the folds of its code points in a row, so the two can be compared along
/// the prefix without folding the whole title. What may differ is that a letter combines with what
/// follows (か and its voicing mark), and that marks change places. Where that could matter, the
/// answer is that the title may begin with the prefix.
class TitlePrefix {
public:
    explicit TitlePrefix(std::string_view foldedPrefix);

    /// False only when the fold of the title, without the blanks around it, does not begin with the
    /// prefix.
    [[nodiscard]] bool mayBegin(std::string_view title);

private:
    /// What the fold of a code point does to the text before it.
    enum class Joining {
        never,
        asMark, ///< Nothing, but it may change places with other marks.
        maybe,  ///< It may combine with it, or is too unusual to decide.
    };

    /// The fold of one code point.
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
