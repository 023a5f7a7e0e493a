#pragma once

#include <string>
#include <string_view>

namespace KestryCore {

/// The UTF-8 bytes of a code point that is no surrogate.
[[nodiscard]] std::string utf8(char32_t codePoint);
[[nodiscard]] std::string utf8(std::u32string_view codePoints);

/// Hands over every code point that a text can hold, with the unassigned ones.
template <class Action>
void forEachCodePoint(Action action)
{
    for (char32_t codePoint = 0; codePoint < 0x110000; ++codePoint) {
        if (codePoint < 0xD800 || codePoint >= 0xE000) {
            action(codePoint);
        }
    }
}

} // namespace KestryCore
