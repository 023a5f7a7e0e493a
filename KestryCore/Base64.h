#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace KestryCore {

/// Standard base64 (RFC 4648, section 4) with padding and no line breaks.
[[nodiscard]] std::string encodeBase64(std::string_view bytes);

/// The bytes of standard, padded base64; nullopt when a character is outside the alphabet, or the
/// padding is missing or misplaced.
[[nodiscard]] std::optional<std::string> decodeBase64(std::string_view text);

} // namespace KestryCore
