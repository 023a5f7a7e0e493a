#include "LogoImages.h"

#include <png.h>
#include <zlib.h>

#include <array>
#include <stdexcept>
#include <vector>

namespace KestryCore::LogoImages {

namespace {

constexpr std::size_t endOfHeaderChunk = 8 + 12 + 13;
constexpr std::size_t chunkOverhead = 12;

int colourType(Pixels pixels)
{
    switch (pixels) {
    case Pixels::grey:
        return PNG_COLOR_TYPE_GRAY;
    case Pixels::greyWithAlpha:
        return PNG_COLOR_TYPE_GRAY_ALPHA;
    case Pixels::palette:
        return PNG_COLOR_TYPE_PALETTE;
    case Pixels::colour:
        return PNG_COLOR_TYPE_RGB;
    case Pixels::colourWithAlpha:
        return PNG_COLOR_TYPE_RGB_ALPHA;
    }
    throw std::logic_error("an unknown kind of pixels");
}

std::string bigEndian(std::uint32_t value)
{
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

std::string chunk(std::string_view type, std::string_view content)
{
    const std::string checked = std::string(type) + std::string(content);
    const auto* bytes = reinterpret_cast<const Bytef*>(checked.data());
    const uLong checksum = crc32(0, bytes, static_cast<uInt>(checked.size()));
    return bigEndian(static_cast<std::uint32_t>(content.size())) + checked
        + bigEndian(static_cast<std::uint32_t>(checksum));
}

void appendTo(png_structp writer, png_bytep bytes, png_size_t size)
{
    auto* file = static_cast<std::string*>(png_get_io_ptr(writer));
    file->append(reinterpret_cast<const char*>(bytes), size);
}

void writeHeader(png_structp writer, png_infop info, const ImageForm& form)
{
    png_set_IHDR(writer, info, form.width, form.height, form.bitDepth, colourType(form.pixels),
        form.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
        PNG_FILTER_TYPE_DEFAULT);
    if (form.pixels == Pixels::palette) {
        constexpr std::array<png_color, 2> colours{{{0xB7, 0xA5, 0xFF}, {0x10, 0x10, 0x10}}};
        png_set_PLTE(writer, info, colours.data(), static_cast<int>(colours.size()));
    }
    png_write_info(writer, info);
}

} // namespace

std::string png(const ImageForm& form)
{
    std::string file;
    png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(writer);
    png_set_write_fn(writer, &file, &appendTo, nullptr);
    writeHeader(writer, info, form);
    std::vector<png_byte> row(png_get_rowbytes(writer, info));
    std::vector<png_bytep> rows(form.height, row.data());
    png_write_image(writer, rows.data());
    png_write_end(writer, nullptr);
    png_destroy_write_struct(&writer, &info);
    return file;
}

std::string withChunk(const std::string& png, std::string_view type, std::string_view content)
{
    return png.substr(0, endOfHeaderChunk) + chunk(type, content) + png.substr(endOfHeaderChunk);
}

std::string animationHeader(std::uint32_t frameCount)
{
    constexpr std::uint32_t playForEver = 0;
    return bigEndian(frameCount) + bigEndian(playForEver);
}

std::string paddedTo(const std::string& png, std::size_t size)
{
    return withChunk(png, "paDd", std::string(size - png.size() - chunkOverhead, 'x'));
}

std::string withDamagedChunk(const std::string& png, std::string_view type)
{
    std::string damaged = png;
    const std::size_t typePosition = damaged.find(type);
    damaged.at(typePosition + type.size() + 2) ^= 1;
    return damaged;
}

std::string jpeg()
{
    using namespace std::string_literals;
    return "\xFF\xD8\xFF\xE0\x00\x10JFIF\x00\x01\x01\x00\x00\x01\x00\x01\x00\x00\xFF\xD9"s;
}

} // namespace KestryCore::LogoImages
