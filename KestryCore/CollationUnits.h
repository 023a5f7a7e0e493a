#pragma once

#include <unicode/coll.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace KestryCore {

/// The letters of one collator as small numbers, its units: comparing the units of two texts says
/// what the collator says of them when it looks at letters and numbers alone, not yet at accents
/// and capitals. Texts whose units are equal are left to the collator, and so is every text with
/// something in it that has no units:
///
/// - characters beyond the European alphabets, and marks that stand beside their letter;
/// - letters that the collator takes together with their neighbour, as "ch" in Czech;
/// - numbers of hundreds of digits.
///
/// Why the orders agree: for each character the collator tells the bytes that stand for it on its
/// first level, and it compares texts as the chains of these bytes. None of those kept here begins
/// with all the bytes of another, so the first character to differ decides, by its place among
/// them. A number begins with a byte that nothing else here begins with, and among numbers the
/// longer one is higher.
class CollationUnits {
public:
    /// Of a collator that sorts numbers by their value.
    explicit CollationUnits(const icu::Collator& collator);

    /// How many units a text of so many bytes has at most.
    [[nodiscard]] static constexpr std::size_t most(std::size_t bytes) { return 3 * bytes; }

    /// Writes the units of a text, none of them zero, and tells how many; none when the text must
    /// be left to the collator, whatever was written by then.
    [[nodiscard]] std::optional<std::size_t> write(
        std::string_view text, std::uint8_t* units) const;

private:
    class Builder;

    /// What is known of a character: its unit in the low byte, zero where the collator passes over
    /// it, and in the others the marks that say that there is more to it.
    using Code = std::uint16_t;
    static constexpr Code hasNoUnits = 0x100;
    static constexpr Code isDigit = 0x200;
    static constexpr Code isSpelled = 0x400; ///< The low byte is the place of its spelling.
    static constexpr Code joinsNext = 0x800; ///< May be one letter with what comes after it.
    static constexpr Code joinsPrevious = 0x1000;

    /// A character that is sorted as several letters.
    struct Spelling {
        std::array<std::uint8_t, 4> units{};
        std::size_t length = 0;
    };

    static constexpr char32_t lettersEnd = 0x460;  ///< Latin, Greek and Cyrillic.
    static constexpr char32_t signsBegin = 0x2010; ///< Dashes, quotation marks and the like.
    static constexpr char32_t signsEnd = 0x2040;
    static constexpr std::size_t codeCount = lettersEnd + (signsEnd - signsBegin);

    [[nodiscard]] Code codeOf(char32_t character) const;
    std::uint8_t* writeSpelling(Code code, std::uint8_t* units) const;
    /// Writes the number that begins at a position, and moves that behind it; null when the number
    /// is too long.
    std::uint8_t* writeNumber(
        std::string_view text, std::size_t& position, std::uint8_t* units) const;

    std::array<Code, codeCount> codes_{};
    std::array<Spelling, 32> spellings_{};
    std::uint8_t numberUnit_ = 0;
};

} // namespace KestryCore
