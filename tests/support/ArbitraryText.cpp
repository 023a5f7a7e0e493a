#include "ArbitraryText.h"

#include <initializer_list>

namespace KestryCore {

std::string utf8(char32_t codePoint)
{
    // A lead byte, then six bits in each byte that follows.
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

namespace {

rc::Gen<char32_t> codePoint()
{
    return rc::gen::oneOf(rc::gen::inRange<char32_t>(0x20, 0x7F),
        rc::gen::element(U'"', U'\\', U'/', U'\n', U'\0', U'\x1F', U'\x7F', U'\u2028'),
        rc::gen::inRange<char32_t>(0x80, 0xD800), rc::gen::inRange<char32_t>(0xE000, 0x110000));
}

} // namespace

rc::Gen<std::string> arbitraryText()
{
    return rc::gen::map(
        rc::gen::container<std::u32string>(codePoint()), [](const std::u32string& codePoints) {
            std::string text;
            for (const char32_t next : codePoints) {
                text += utf8(next);
            }
            return text;
        });
}

} // namespace KestryCore
