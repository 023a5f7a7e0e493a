#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Kestry {

/// The formats that a picture is read from. No others are tried, whatever decoders are installed:
/// some start programs or fetch files.
enum class PictureFormat { png, jpeg, gif, webp, heif };

/// The format that the first bytes name; nullopt for any other. `heif` is HEIC and AVIF.
[[nodiscard]] std::optional<PictureFormat> pictureFormat(std::string_view bytes);

/// Whether a file that begins like a picture reaches its own end. The decoders fill up what is
/// missing of PNG, JPEG and WebP, and of a GIF file they get only the beginning; they find the end
/// of HEIF themselves, for which this is true.
[[nodiscard]] bool reachesItsEnd(std::string_view bytes, PictureFormat format);

/// The chunks of a whole PNG file that belong to its pixels. Others may hold text that the decoder
/// would unpack to many times its size.
[[nodiscard]] std::string pngWithoutExtras(std::string_view bytes);

/// A whole GIF file of the first image alone. The decoder would unpack all of them, thousands in
/// some files.
[[nodiscard]] std::string gifOfFirstImage(std::string_view bytes);

/// The number of pixels that the header of a WebP or HEIF file declares, as these decoders tell the
/// size too late: the largest where a file declares several. 0 where no size is found, and for the
/// other formats.
[[nodiscard]] std::uint64_t declaredPixels(std::string_view bytes, PictureFormat format);

} // namespace Kestry
