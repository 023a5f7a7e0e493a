#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace KestryCore {

inline constexpr std::size_t maximumLogoBytes = 262'144;
inline constexpr std::uint32_t maximumLogoPixels = 256;

/// Checks the bytes of a logo: one complete PNG image (W3C PNG, third edition) of a single frame,
/// at most `maximumLogoBytes` long, each side from 1 to `maximumLogoPixels`, that can be decoded to
/// its last row. Throws the one LedgerError for logos otherwise.
void validateClientLogo(std::string_view bytes);

} // namespace KestryCore
