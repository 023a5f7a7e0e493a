#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Picture files made to measure, and what is in a PNG file.
namespace Kestry::PictureFiles {

struct Colour {
    int red = 0;
    int green = 0;
    int blue = 0;
    int alpha = 255;

    friend bool operator==(const Colour&, const Colour&) = default;
};

inline constexpr Colour red{255, 0, 0};
inline constexpr Colour green{0, 255, 0};
inline constexpr Colour blue{0, 0, 255};
inline constexpr Colour white{255, 255, 255};

/// The letter of the colour above that this one is nearly, as "R", and "?" when it is none of them.
[[nodiscard]] char letter(const Colour& colour);

/// What a picture shows at a place.
using Painter = std::function<Colour(int x, int y)>;

struct Size {
    int width = 0;
    int height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

/// Red, green, blue and white in the quarters of a picture, in the order of reading.
[[nodiscard]] Painter quarters(Size size);

/// A colour, opacity included, by chance for each pixel; always the same one.
[[nodiscard]] Painter noise();

/// The file of a picture in a format that the image library can write: png, jpeg, webp.
[[nodiscard]] std::string file(const char* format, Size size, const Painter& painter);

/// A JPEG file with another number of the EXIF orientation; `isLittleEndian` as some cameras write.
[[nodiscard]] std::string withOrientation(
    const std::string& jpeg, int orientation, bool isLittleEndian = false);

/// A GIF file of plain frames, each a letter of a colour above, at the upper left of the canvas.
/// They cover all of it unless they have a size of their own.
[[nodiscard]] std::string gif(
    Size canvas, std::string_view frames, const std::optional<Size>& frameSize = std::nullopt);

/// A WebP file of plain frames.
[[nodiscard]] std::string animatedWebp(Size size, const std::vector<Colour>& frames);

/// A PNG file of an animation: this picture, which every decoder shows, and then a red one.
[[nodiscard]] std::string animatedPng(Size size, const Painter& painter);

/// A PNG file of one row, with a pixel of each colour of its palette.
[[nodiscard]] std::string palettePng(const std::vector<Colour>& colours);

/// A PNG file with a sound header for such a size, and hardly any pixels.
[[nodiscard]] std::string pngOfHeaderAlone(std::uint32_t width, std::uint32_t height);

/// A decoded PNG file.
struct Pixels {
    Size size;
    std::vector<std::uint8_t> bytes; ///< Red, green, blue and alpha of each pixel.

    [[nodiscard]] Colour at(int x, int y) const;
    /// The letters of the four quarters' middles, in the order of reading.
    [[nodiscard]] std::string quarters() const;
};

[[nodiscard]] Pixels pixels(const std::string& png);

/// The types of the chunks of a PNG file, in their order; a type that follows itself once.
[[nodiscard]] std::vector<std::string> chunkTypes(const std::string& png);

} // namespace Kestry::PictureFiles
