#include "AllCodePoints.h"

namespace KestryCore {

// A lead byte, then six bits in each byte that follows.
std::string utf8(char32_t codePoint)
{
    const auto byte = [&](unsigned marker, int shift, unsigned mask) {
        return static_cast<char>(marker | (codePoint >> shift & mask));
    };
    if (codePoint < 0x80) {
        return {byte(0, 0, 0x7F)};
    }
    if (codePoint < 0x800) {
        return {byte(0xC0, 6, 0x1F), byte(0x80, 0, 0x3F)};
    }
    if (codePoint < 0x10000) {
        return {byte(0xE0, 12, 0x0F), byte(0x80, 6, 0x3F), byte(0x80, 0, 0x3F)};
    }
    return {byte(0xF0, 18, 0x07), byte(0x80, 12, 0x3F), byte(0x80, 6, 0x3F), byte(0x80, 0, 0x3F)};
}

std::string utf8(std::u32string_view codePoints)
{
    std::string text;
    for (const char32_t codePoint : codePoints) {
        text += utf8(codePoint);
    }
    return text;
}

} // namespace KestryCore
