#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace KestryCore {

/// Converts texts to a form that is equal for texts that differ only in case or in the composition
/// of their letters, by the rules of one locale. In this form each accent follows its letter as a
/// character of its own.
///
/// Caches letters; use one instance for many texts.
class LocaleFolding {
public:
    /// `locale` is a name such as "tr_TR".
    explicit LocaleFolding(const std::string& locale);

    /// Replaces the content of `folded` by the form of a text, in UTF-16.
    void fold(std::string_view text, std::u16string& folded);

private:
    /// The rules for capitals that differ from those of most languages.
    enum class CaseRule : std::uint8_t {
        usual,
        dotlessI,       ///< "I" is the capital of "ı", and "İ" that of "i".
        dotBelowAccents ///< Small "i" and "j" may keep their dot below an accent.
    };

    /// The form of one character, as long as nothing beside it matters.
    struct Letter {
        std::array<char16_t, 3> form{};
        std::uint8_t length = 0; ///< 0 until the letter is met for the first time.
        bool dependsOnNeighbours = false;
    };

    static constexpr char32_t lettersEnd = 0x460;  ///< Latin, Greek and Cyrillic.
    static constexpr char32_t signsBegin = 0x2000; ///< Dashes, quotation marks and the like.
    static constexpr char32_t signsEnd = 0x2070;

    [[nodiscard]] static CaseRule caseRule(const std::string& locale);
    /// Folds letter by letter. Returns false when that is not enough for this text.
    bool foldLetters(std::string_view text, std::u16string& folded);
    [[nodiscard]] const Letter* letter(char32_t character);
    [[nodiscard]] Letter learned(char32_t character) const;

    CaseRule rule_;
    std::array<Letter, lettersEnd + (signsEnd - signsBegin)> letters_{};
};

} // namespace KestryCore
