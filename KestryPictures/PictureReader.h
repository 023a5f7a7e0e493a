#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

using GdkPixbuf = struct _GdkPixbuf;

namespace Kestry {

/// A decoded picture. Unlike a value it has one owner.
struct PictureDeleter {
    void operator()(GdkPixbuf* picture) const;
};
using Picture = std::unique_ptr<GdkPixbuf, PictureDeleter>;

/// The largest picture, in pixels, that is decoded.
inline constexpr std::uint64_t maximumPicturePixels = 100'000'000;

/// The first image of a whole picture file, as it is stored: not turned upright. Throws LedgerError
/// for a file that is no picture, damaged or cut off, and for one of more pixels than
/// `maximumPicturePixels`, before these are decoded.
[[nodiscard]] Picture readPicture(std::string_view bytes);

/// The picture turned upright, made smaller until no side is longer than `longestSide` pixels, and
/// never made larger. A side is at least one pixel long. Throws LedgerError when there is too
/// little memory.
[[nodiscard]] Picture thumbnail(const Picture& picture, int longestSide);

/// A PNG file of the picture, without anything that does not belong to its pixels. Throws
/// LedgerError when there is too little memory.
[[nodiscard]] std::string pngFile(const Picture& picture);

} // namespace Kestry
