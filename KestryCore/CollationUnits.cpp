#include "CollationUnits.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstring>

namespace KestryCore {

namespace {

/// One byte tells the length of a number, and the collator would divide longer ones.
constexpr std::size_t longestNumber = 253;

bool isAsciiDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// Reads one character and moves behind it; ill-formed bytes are no character that has units.
char32_t nextCharacter(std::string_view text, std::size_t& position)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    UChar32 character = 0;
    U8_NEXT_OR_FFFD(bytes, position, text.size(), character);
    return static_cast<char32_t>(character);
}

} // namespace

CollationUnits::Code CollationUnits::codeOf(char32_t character) const
{
    if (character < lettersEnd) {
        return codes_[character];
    }
    if (character >= signsBegin && character < signsEnd) {
        return codes_[lettersEnd + (character - signsBegin)];
    }
    return hasNoUnits;
}

std::uint8_t* CollationUnits::writeSpelling(Code code, std::uint8_t* units) const
{
    const Spelling& spelling = spellings_[code & 0xFFU];
    return std::copy_n(spelling.units.begin(), spelling.length, units);
}

std::uint8_t* CollationUnits::writeNumber(
    std::string_view text, std::size_t& position, std::uint8_t* units) const
{
    std::size_t end = position;
    while (end < text.size() && isAsciiDigit(text[end])) {
        ++end;
    }
    while (position + 1 < end && text[position] == '0') {
        ++position;
    }
    const std::size_t length = end - position;
    if (length > longestNumber) {
        return nullptr;
    }
    *units++ = numberUnit_;
    *units++ = static_cast<std::uint8_t>(length);
    std::memcpy(units, text.data() + position, length);
    position = end;
    return units + length;
}

std::optional<std::size_t> CollationUnits::write(std::string_view text, std::uint8_t* units) const
{
    std::uint8_t* next = units;
    Code last = 0;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        const Code code = U8_IS_SINGLE(text[position])
            ? codes_[static_cast<std::uint8_t>(text[position++])]
            : codeOf(nextCharacter(text, position));
        if ((code & hasNoUnits) != 0 || ((last & joinsNext) != 0 && (code & joinsPrevious) != 0)) {
            return std::nullopt;
        }
        last = code;
        if ((code & isDigit) != 0) {
            position = start;
            next = writeNumber(text, position, next);
            if (next == nullptr) {
                return std::nullopt;
            }
        } else if ((code & isSpelled) != 0) {
            next = writeSpelling(code, next);
        } else {
            *next = static_cast<std::uint8_t>(code);
            next += *next != 0 ? 1 : 0;
        }
    }
    return static_cast<std::size_t>(next - units);
}

} // namespace KestryCore
