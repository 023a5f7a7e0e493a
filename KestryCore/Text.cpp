#include "Text.h"

#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace KestryCore {

namespace {

icu::UnicodeString folded(std::string_view text)
{
    const icu::StringPiece piece(text.data(), static_cast<std::int32_t>(text.size()));
    return icu::UnicodeString::fromUTF8(piece).foldCase();
}

} // namespace

bool isBlank(char32_t codePoint)
{
    return (codePoint >= 0x0009 && codePoint <= 0x000D) || codePoint == 0x0020
        || codePoint == 0x0085 || codePoint == 0x00A0 || codePoint == 0x1680
        || (codePoint >= 0x2000 && codePoint <= 0x200A) || codePoint == 0x2028
        || codePoint == 0x2029 || codePoint == 0x202F || codePoint == 0x205F || codePoint == 0x3000;
}

std::string_view trimmed(std::string_view text)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    // The library counts in 32 bits, which every text of a file that can be read fits.
    std::int32_t start = 0;
    auto end = static_cast<std::int32_t>(text.size());
    while (start < end) {
        std::int32_t next = start;
        UChar32 codePoint = 0;
        U8_NEXT(bytes, next, end, codePoint);
        if (codePoint < 0 || !isBlank(static_cast<char32_t>(codePoint))) {
            break;
        }
        start = next;
    }
    while (end > start) {
        std::int32_t previous = end;
        UChar32 codePoint = 0;
        U8_PREV(bytes, start, previous, codePoint);
        if (codePoint < 0 || !isBlank(static_cast<char32_t>(codePoint))) {
            break;
        }
        end = previous;
    }
    return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
}

bool equalsIgnoringCase(std::string_view left, std::string_view right)
{
    return folded(left) == folded(right);
}

std::string foldedCase(std::string_view text)
{
    std::string result;
    folded(text).toUTF8String(result);
    return result;
}

bool isWellFormedUtf8(std::string_view text)
{
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t position = 0;
    while (position < text.size()) {
        UChar32 codePoint = 0;
        U8_NEXT(bytes, position, text.size(), codePoint);
        if (codePoint < 0) {
            return false;
        }
    }
    return true;
}

} // namespace KestryCore
