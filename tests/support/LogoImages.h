#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Images made to measure, and files damaged on purpose, to try the rule for stored logos on.
namespace KestryCore::LogoImages {

enum class Pixels { grey, greyWithAlpha, palette, colour, colourWithAlpha };

struct ImageForm {
    std::uint32_t width = 1;
    std::uint32_t height = 1;
    Pixels pixels = Pixels::colourWithAlpha;
    int bitDepth = 8;
    bool interlaced = false;
};

/// The bytes of a sound PNG file of a plain image.
[[nodiscard]] std::string png(const ImageForm& form = {});

/// Puts a chunk, with its right checksum, directly after the header chunk of a PNG file.
[[nodiscard]] std::string withChunk(
    const std::string& png, std::string_view type, std::string_view content);

/// An animation header that promises so many frames.
[[nodiscard]] std::string animationHeader(std::uint32_t frameCount);

/// The file made exactly so long by a chunk that decoders skip.
[[nodiscard]] std::string paddedTo(const std::string& png, std::size_t size);

/// The file with one bit flipped inside the first chunk of a type.
[[nodiscard]] std::string withDamagedChunk(const std::string& png, std::string_view type);

/// The first bytes of a photograph in another format.
[[nodiscard]] std::string jpeg();

} // namespace KestryCore::LogoImages
