#include "PictureFormat.h"

#include <algorithm>

namespace Kestry {

namespace {

std::uint32_t byteAt(std::string_view bytes, std::size_t position)
{
    return position < bytes.size() ? static_cast<std::uint8_t>(bytes[position]) : 0;
}

/// The number at a position; bytes beyond the end count as 0.
std::uint32_t bigEndian(std::string_view bytes, std::size_t position, std::size_t width = 4)
{
    std::uint32_t value = 0;
    for (std::size_t index = 0; index < width; ++index) {
        value = value << 8 | byteAt(bytes, position + index);
    }
    return value;
}

std::uint32_t littleEndian(std::string_view bytes, std::size_t position, std::size_t width = 4)
{
    std::uint32_t value = 0;
    for (std::size_t index = width; index > 0; --index) {
        value = value << 8 | byteAt(bytes, position + index - 1);
    }
    return value;
}

bool hasPngEnd(std::string_view bytes)
{
    constexpr std::size_t signature = 8;
    constexpr std::size_t overhead = 12; // Length, type and checksum.
    bytes.remove_prefix(signature);
    while (bytes.size() >= overhead) {
        const std::size_t length = bigEndian(bytes, 0);
        if (length > bytes.size() - overhead) {
            return false;
        }
        if (bytes.substr(4, 4) == "IEND") {
            return true;
        }
        bytes.remove_prefix(overhead + length);
    }
    return false;
}

/// The position of the next marker inside or behind the packed pixels of a JPEG. A stuffed zero
/// and restart markers belong to the pixels.
std::size_t endOfScan(std::string_view bytes, std::size_t position)
{
    while ((position = bytes.find('\xFF', position)) != std::string_view::npos) {
        const std::uint32_t code = byteAt(bytes, position + 1);
        if (code != 0x00 && code != 0xFF && (code < 0xD0 || code > 0xD7)) {
            return position;
        }
        ++position;
    }
    return bytes.size();
}

bool hasJpegEnd(std::string_view bytes)
{
    constexpr std::uint32_t endOfImage = 0xD9;
    constexpr std::uint32_t startOfScan = 0xDA;
    std::size_t position = 2;
    while (position + 1 < bytes.size()) {
        const std::uint32_t code = byteAt(bytes, position + 1);
        if (byteAt(bytes, position) != 0xFF || code == 0xFF) {
            ++position; // Decoders skip what is between two segments.
            continue;
        }
        if (code == endOfImage) {
            return true;
        }
        position += 2 + bigEndian(bytes, position + 2, 2);
        if (code == startOfScan) {
            position = endOfScan(bytes, position);
        }
    }
    return false;
}

bool hasWebpEnd(std::string_view bytes)
{
    constexpr std::size_t header = 8;
    return bytes.size() - header >= littleEndian(bytes, 4);
}

/// The bytes of a GIF table of colours, of which these flags tell.
std::size_t gifTable(std::uint32_t flags)
{
    return (flags & 0x80) != 0 ? std::size_t{3} << ((flags & 7) + 1) : 0;
}

/// The position of the first block of a GIF file.
std::size_t gifBegin(std::string_view bytes)
{
    constexpr std::size_t header = 13;
    constexpr std::size_t flags = 10;
    return header + gifTable(byteAt(bytes, flags));
}

/// The position behind a chain of GIF parts, each with its length before it, down to an empty one.
std::size_t behindGifParts(std::string_view bytes, std::size_t position)
{
    while (position < bytes.size()) {
        const std::size_t length = byteAt(bytes, position);
        position += 1 + length;
        if (length == 0) {
            return position;
        }
    }
    return bytes.size() + 1;
}

constexpr std::uint32_t gifImage = ',';
constexpr std::uint32_t gifExtension = '!';
constexpr std::uint32_t gifEnd = ';';

/// The position behind the GIF block at a position. Decoders skip what is between two blocks.
std::size_t behindGifBlock(std::string_view bytes, std::size_t position)
{
    constexpr std::size_t imageHeader = 11;
    constexpr std::size_t imageFlags = 9;
    constexpr std::size_t extensionHeader = 2;
    switch (byteAt(bytes, position)) {
    case gifImage:
        return behindGifParts(
            bytes, position + imageHeader + gifTable(byteAt(bytes, position + imageFlags)));
    case gifExtension:
        return behindGifParts(bytes, position + extensionHeader);
    default:
        return position + 1;
    }
}

bool hasGifEnd(std::string_view bytes)
{
    std::size_t position = gifBegin(bytes);
    while (position < bytes.size() && byteAt(bytes, position) != gifEnd) {
        position = behindGifBlock(bytes, position);
    }
    return position < bytes.size();
}

std::uint64_t product(std::uint32_t width, std::uint32_t height)
{
    return std::uint64_t{width} * height;
}

/// The pixels of the first chunk: the canvas of an extended file, or the only image.
std::uint64_t webpPixels(std::string_view bytes)
{
    constexpr std::size_t content = 20;
    const std::string_view chunk = bytes.substr(std::min<std::size_t>(bytes.size(), 12), 4);
    if (chunk == "VP8X") {
        return product(
            littleEndian(bytes, content + 4, 3) + 1, littleEndian(bytes, content + 7, 3) + 1);
    }
    constexpr std::uint32_t side = 0x3FFF;
    if (chunk == "VP8L") {
        const std::uint32_t sides = littleEndian(bytes, content + 1);
        return product((sides & side) + 1, (sides >> 14 & side) + 1);
    }
    if (chunk == "VP8 ") {
        return product(
            littleEndian(bytes, content + 6, 2) & side, littleEndian(bytes, content + 8, 2) & side);
    }
    return 0;
}

/// How many bytes of content come before the first box inside this one; nullopt for a box that has
/// no boxes of interest inside.
std::optional<std::size_t> boxesBegin(std::string_view type)
{
    if (type == "meta") {
        return 4;
    }
    return type == "iprp" || type == "ipco" ? std::optional<std::size_t>(0) : std::nullopt;
}

/// The most pixels of all sizes that are declared for images of the file: that of a picture out of
/// tiles, and those of the tiles.
std::uint64_t heifPixels(std::string_view boxes)
{
    constexpr std::size_t header = 8;
    std::uint64_t most = 0;
    while (boxes.size() >= header) {
        const std::string_view type = boxes.substr(4, 4);
        std::size_t begin = header;
        std::uint64_t length = bigEndian(boxes, 0);
        if (length == 1) {
            begin = 2 * header;
            length = std::uint64_t{bigEndian(boxes, 8)} << 32 | bigEndian(boxes, 12);
        }
        if (length == 0 || length > boxes.size()) {
            length = boxes.size(); // 0 stands for the rest of the file.
        }
        if (length < begin) {
            break;
        }
        const std::string_view content = boxes.substr(begin, length - begin);
        if (type == "ispe") {
            most = std::max(most, product(bigEndian(content, 4), bigEndian(content, 8)));
        } else if (const auto inside = boxesBegin(type); inside && *inside <= content.size()) {
            most = std::max(most, heifPixels(content.substr(*inside)));
        }
        boxes.remove_prefix(length);
    }
    return most;
}

} // namespace

std::optional<PictureFormat> pictureFormat(std::string_view bytes)
{
    using enum PictureFormat;
    if (bytes.starts_with("\x89PNG\r\n\x1A\n")) {
        return png;
    }
    if (bytes.starts_with("\xFF\xD8\xFF")) {
        return jpeg;
    }
    if (bytes.starts_with("GIF87a") || bytes.starts_with("GIF89a")) {
        return gif;
    }
    constexpr std::size_t beginning = 12;
    if (bytes.size() < beginning) {
        return std::nullopt;
    }
    if (bytes.starts_with("RIFF") && bytes.substr(8, 4) == "WEBP") {
        return webp;
    }
    return bytes.substr(4, 4) == "ftyp" ? std::optional(heif) : std::nullopt;
}

std::string pngWithoutExtras(std::string_view bytes)
{
    constexpr std::size_t signature = 8;
    constexpr std::size_t overhead = 12;
    std::string kept(bytes.substr(0, signature));
    bytes.remove_prefix(signature);
    while (bytes.size() >= overhead) {
        const std::string_view chunk = bytes.substr(0, overhead + bigEndian(bytes, 0));
        const std::string_view type = chunk.substr(4, 4);
        // A capital letter marks what no decoder may skip; tRNS is what is transparent.
        const bool isNeeded = type[0] >= 'A' && type[0] <= 'Z';
        kept += isNeeded || type == "tRNS" ? chunk : std::string_view();
        if (type == "IEND") {
            break;
        }
        bytes.remove_prefix(chunk.size());
    }
    return kept;
}

std::string gifOfFirstImage(std::string_view bytes)
{
    std::size_t position = gifBegin(bytes);
    bool isBehindImage = false;
    while (position < bytes.size() && byteAt(bytes, position) != gifEnd && !isBehindImage) {
        isBehindImage = byteAt(bytes, position) == gifImage;
        position = behindGifBlock(bytes, position);
    }
    return std::string(bytes.substr(0, position)) + static_cast<char>(gifEnd);
}

bool reachesItsEnd(std::string_view bytes, PictureFormat format)
{
    switch (format) {
    case PictureFormat::png:
        return hasPngEnd(bytes);
    case PictureFormat::jpeg:
        return hasJpegEnd(bytes);
    case PictureFormat::webp:
        return hasWebpEnd(bytes);
    case PictureFormat::gif:
        return hasGifEnd(bytes);
    case PictureFormat::heif:
        break;
    }
    return true;
}

std::uint64_t declaredPixels(std::string_view bytes, PictureFormat format)
{
    if (format == PictureFormat::webp) {
        return webpPixels(bytes);
    }
    return format == PictureFormat::heif ? heifPixels(bytes) : 0;
}

} // namespace Kestry
