#include "PictureFiles.h"

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <png.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <random>
#include <stdexcept>

#include "LogoImages.h"

namespace Kestry::PictureFiles {

namespace {

constexpr std::array<std::pair<char, Colour>, 4> letters{
    {{'R', red}, {'G', green}, {'B', blue}, {'W', white}}};

std::string number(std::uint32_t value, int width, bool isLittleEndian)
{
    std::string bytes;
    for (int index = 0; index < width; ++index) {
        const int shift = 8 * (isLittleEndian ? index : width - 1 - index);
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

/// The packed pixels of a GIF frame of one colour. A code that empties the dictionary comes before
/// it can grow, so that each pixel stays one byte.
std::string gifPixels(std::size_t count, char colour)
{
    constexpr char clear = '\x80';
    constexpr char end = '\x81';
    constexpr std::size_t betweenClears = 100;
    std::string codes;
    for (std::size_t index = 0; index < count; ++index) {
        codes += index % betweenClears == 0 ? std::string(1, clear) : std::string();
        codes += colour;
    }
    codes += end;
    std::string blocks(1, '\x07');
    constexpr std::size_t longest = 255;
    for (std::size_t begin = 0; begin < codes.size(); begin += longest) {
        const std::string block = codes.substr(begin, longest);
        blocks += static_cast<char>(block.size()) + block;
    }
    return blocks + '\0';
}

/// A chunk of a PNG file, with its right checksum.
std::string pngChunk(std::string_view type, const std::string& content)
{
    constexpr std::size_t beginning = 33;
    return KestryCore::LogoImages::withChunk(std::string(beginning, '\0'), type, content)
        .substr(beginning);
}

/// The packed pixels of a PNG file.
std::string pixelsOf(const std::string& png)
{
    std::string found;
    for (std::size_t at = 8; at + 12 <= png.size();) {
        const auto byte = [&](std::size_t place) { return static_cast<std::uint8_t>(png[place]); };
        const std::size_t length = std::size_t{byte(at)} << 24 | std::size_t{byte(at + 1)} << 16
            | std::size_t{byte(at + 2)} << 8 | byte(at + 3);
        found += png.compare(at + 4, 4, "IDAT") == 0 ? png.substr(at + 8, length) : std::string();
        at += length + 12;
    }
    return found;
}

} // namespace

char letter(const Colour& colour)
{
    constexpr int tolerance = 40; // JPEG and HEIC change colours a little.
    for (const auto& [name, exact] : letters) {
        if (std::abs(exact.red - colour.red) < tolerance
            && std::abs(exact.green - colour.green) < tolerance
            && std::abs(exact.blue - colour.blue) < tolerance) {
            return name;
        }
    }
    return '?';
}

Painter quarters(Size size)
{
    return [size](int x, int y) {
        const bool isRight = 2 * x >= size.width;
        return 2 * y >= size.height ? (isRight ? white : blue) : (isRight ? green : red);
    };
}

Painter noise()
{
    return [random = std::mt19937(1)](int, int) mutable {
        const auto bits = static_cast<std::uint32_t>(random());
        const auto part = [&](unsigned shift) { return static_cast<int>(bits >> shift & 0xFF); };
        return Colour{part(0), part(8), part(16), part(24)};
    };
}

std::string file(const char* format, Size size, const Painter& painter)
{
    GdkPixbuf* const picture = gdk_pixbuf_new(GDK_COLORSPACE_RGB, TRUE, 8, size.width, size.height);
    for (int y = 0; y < size.height; ++y) {
        guchar* pixel = gdk_pixbuf_get_pixels(picture) + y * gdk_pixbuf_get_rowstride(picture);
        for (int x = 0; x < size.width; ++x) {
            const Colour colour = painter(x, y);
            for (const int part : {colour.red, colour.green, colour.blue, colour.alpha}) {
                *pixel++ = static_cast<guchar>(part);
            }
        }
    }
    gchar* bytes = nullptr;
    gsize length = 0;
    const bool isWritten =
        gdk_pixbuf_save_to_buffer(picture, &bytes, &length, format, nullptr, nullptr) != FALSE;
    g_object_unref(picture);
    if (!isWritten) {
        throw std::logic_error(std::string("The image library can't write ") + format);
    }
    const std::string content(bytes, length);
    g_free(bytes);
    return content;
}

std::string withOrientation(const std::string& jpeg, int orientation, bool isLittleEndian)
{
    const auto field = [&](std::uint32_t value, int width) {
        return number(value, width, isLittleEndian);
    };
    constexpr std::uint32_t orientationTag = 0x0112;
    constexpr std::uint32_t shortNumber = 3;
    const std::string exif = std::string("Exif\0\0", 6) + (isLittleEndian ? "II" : "MM")
        + field(42, 2) + field(8, 4) + field(1, 2) + field(orientationTag, 2)
        + field(shortNumber, 2) + field(1, 4) + field(static_cast<std::uint32_t>(orientation), 2)
        + field(0, 2) + field(0, 4);
    const auto length = static_cast<std::uint32_t>(exif.size() + 2);
    return jpeg.substr(0, 2) + "\xFF\xE1" + number(length, 2, false) + exif + jpeg.substr(2);
}

std::string gif(Size canvas, std::string_view frames, const std::optional<Size>& frameSize)
{
    const auto sides = [](Size size) {
        return number(static_cast<std::uint32_t>(size.width), 2, true)
            + number(static_cast<std::uint32_t>(size.height), 2, true);
    };
    const Size size = frameSize.value_or(canvas);
    std::string bytes = "GIF89a" + sides(canvas) + std::string("\xF6\0\0", 3);
    for (const auto& each : letters) {
        bytes += {static_cast<char>(each.second.red), static_cast<char>(each.second.green),
            static_cast<char>(each.second.blue)};
    }
    bytes.append(std::size_t{3} * (128 - letters.size()), '\0');
    for (const char frame : frames) {
        const auto* const named =
            std::ranges::find(letters, frame, &decltype(letters)::value_type::first);
        bytes += std::string(",\0\0\0\0", 5) + sides(size) + '\0'
            + gifPixels(
                static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height),
                static_cast<char>(named - letters.begin()));
    }
    return bytes + ';';
}

std::string animatedWebp(Size size, const std::vector<Colour>& frames)
{
    const auto chunk = [](const char* type, const std::string& content) {
        const std::string padding(content.size() % 2, '\0');
        return type + number(static_cast<std::uint32_t>(content.size()), 4, true) + content
            + padding;
    };
    const std::string sides = number(static_cast<std::uint32_t>(size.width - 1), 3, true)
        + number(static_cast<std::uint32_t>(size.height - 1), 3, true);
    constexpr char isAnimated = '\x02';
    std::string chunks = chunk("VP8X", isAnimated + std::string(3, '\0') + sides)
        + chunk("ANIM", std::string(6, '\0'));
    constexpr std::size_t fileHeader = 12;
    for (const Colour& frame : frames) {
        const Painter plain = [frame](int, int) { return frame; };
        const std::string image = file("webp", size, plain).substr(fileHeader);
        chunks += chunk("ANMF", std::string(6, '\0') + sides + number(100, 3, true) + '\0' + image);
    }
    return "RIFF" + number(static_cast<std::uint32_t>(chunks.size() + 4), 4, true) + "WEBP"
        + chunks;
}

std::string animatedPng(Size size, const Painter& painter)
{
    const auto big = [](std::uint32_t value) { return number(value, 4, false); };
    const auto frame = [&](std::uint32_t place) {
        const std::string sides = big(static_cast<std::uint32_t>(size.width))
            + big(static_cast<std::uint32_t>(size.height));
        return big(place) + sides + std::string(14, '\0'); // at the corner, without a wait
    };
    const std::string next = file("png", size, [](int, int) { return red; });
    const std::string frames =
        pngChunk("fcTL", frame(1)) + pngChunk("fdAT", big(2) + pixelsOf(next));
    std::string bytes = file("png", size, painter);
    constexpr std::size_t lastChunk = 12;
    bytes.insert(bytes.size() - lastChunk, frames);
    using KestryCore::LogoImages::withChunk;
    return withChunk(withChunk(bytes, "fcTL", frame(0)), "acTL", big(2) + big(0));
}

std::string palettePng(const std::vector<Colour>& colours)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(colours.size());
    image.height = 1;
    image.format = PNG_FORMAT_RGBA_COLORMAP;
    image.colormap_entries = image.width;
    std::vector<std::uint8_t> indices;
    std::vector<std::uint8_t> map;
    for (const Colour& each : colours) {
        indices.push_back(static_cast<std::uint8_t>(indices.size()));
        for (const int part : {each.red, each.green, each.blue, each.alpha}) {
            map.push_back(static_cast<std::uint8_t>(part));
        }
    }
    std::string bytes(4096, '\0');
    png_alloc_size_t size = bytes.size();
    if (png_image_write_to_memory(&image, bytes.data(), &size, 0, indices.data(), 0, map.data())
        == 0) {
        throw std::logic_error(image.message);
    }
    bytes.resize(size);
    return bytes;
}

std::string pngOfHeaderAlone(std::uint32_t width, std::uint32_t height)
{
    std::string small = KestryCore::LogoImages::png();
    constexpr std::size_t signature = 8;
    constexpr std::size_t headerChunk = 25;
    const std::string sides = number(width, 4, false) + number(height, 4, false);
    const std::string rest = small.substr(signature + headerChunk);
    const std::string depthAndColour = small.substr(signature + 8 + sides.size(), 5);
    // A file without its header chunk but for the signature, and the new one put behind that.
    const std::string stub = small.substr(0, signature) + small.substr(signature, headerChunk);
    const std::string chunk =
        KestryCore::LogoImages::withChunk(stub, "IHDR", sides + depthAndColour)
            .substr(signature + headerChunk);
    return small.substr(0, signature) + chunk + rest;
}

Colour Pixels::at(int x, int y) const
{
    const std::size_t begin = 4 * static_cast<std::size_t>(y * size.width + x);
    return {bytes.at(begin), bytes.at(begin + 1), bytes.at(begin + 2), bytes.at(begin + 3)};
}

std::string Pixels::quarters() const
{
    std::string found;
    for (const int y : {size.height / 4, size.height * 3 / 4}) {
        for (const int x : {size.width / 4, size.width * 3 / 4}) {
            found += letter(at(x, y));
        }
    }
    return found;
}

Pixels pixels(const std::string& png)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, png.data(), png.size()) == 0) {
        throw std::logic_error("no PNG file");
    }
    image.format = PNG_FORMAT_RGBA;
    Pixels found{{static_cast<int>(image.width), static_cast<int>(image.height)},
        std::vector<std::uint8_t>(PNG_IMAGE_SIZE(image))};
    png_image_finish_read(&image, nullptr, found.bytes.data(), 0, nullptr);
    return found;
}

std::vector<std::string> chunkTypes(const std::string& png)
{
    std::vector<std::string> types;
    std::size_t position = 8;
    while (position + 12 <= png.size()) {
        std::size_t length = 0;
        for (std::size_t index = 0; index < 4; ++index) {
            length = length << 8 | static_cast<std::uint8_t>(png[position + index]);
        }
        const std::string type = png.substr(position + 4, 4);
        if (types.empty() || types.back() != type) {
            types.push_back(type);
        }
        position += 12 + length;
    }
    return types;
}

} // namespace Kestry::PictureFiles
