#pragma once

#include <string>
#include <string_view>

namespace KestryCore {

/// Whether a code point is trimmed from names and titles: the Unicode space separators (Zs), the
/// line and paragraph separators, tab to carriage return, and next line (U+0085). The
/// zero-width space, the byte order mark and the information separators are not blanks.
[[nodiscard]] bool isBlank(char32_t codePoint);

/// The text without the blanks at both ends. Ill-formed UTF-8 is kept.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// Whether two texts are equal under Unicode default case folding.
[[nodiscard]] bool equalsIgnoringCase(std::string_view left, std::string_view right);

/// The text under Unicode default case folding: equal for texts that differ only in case.
[[nodiscard]] std::string foldedCase(std::string_view text);

/// Whether the bytes are well-formed UTF-8.
[[nodiscard]] bool isWellFormedUtf8(std::string_view text);

} // namespace KestryCore
