#include "ClientLogo.h"

#include <png.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "LedgerError.h"

namespace KestryCore {

namespace {

constexpr std::string_view pngSignature = "\x89PNG\r\n\x1A\n";

std::uint32_t bigEndian(std::string_view bytes)
{
    std::uint32_t value = 0;
    for (const char byte : bytes.substr(0, 4)) {
        value = value << 8 | static_cast<std::uint8_t>(byte);
    }
    return value;
}

/// Whether a chunk holds packed text or a packed colour profile. Neither has a part in the image,
/// and 256 KB of them unpack to 256 MB.
bool isPackedExtra(std::string_view type)
{
    return type == "zTXt" || type == "iTXt" || type == "iCCP";
}

/// The file up to its end chunk, but for packed extras. None when the file ends before that, or
/// when an animation header promises a number of frames other than one: the decoder below reads
/// the first frame alone and would notice neither.
std::optional<std::string> singleImage(std::string_view bytes)
{
    constexpr std::size_t lengthAndType = 8;
    constexpr std::size_t checksum = 4;
    std::string image(pngSignature);
    bytes.remove_prefix(pngSignature.size());
    while (bytes.size() >= lengthAndType + checksum) {
        const std::size_t length = bigEndian(bytes);
        const std::string_view type = bytes.substr(4, 4);
        if (length > bytes.size() - lengthAndType - checksum) {
            return std::nullopt;
        }
        if (type == "acTL" && (length < 4 || bigEndian(bytes.substr(lengthAndType)) != 1)) {
            return std::nullopt;
        }
        const std::string_view chunk = bytes.substr(0, lengthAndType + length + checksum);
        // What comes before the header chunk is left for the decoder to refuse.
        const bool isFirst = image.size() == pngSignature.size();
        image += isFirst || !isPackedExtra(type) ? chunk : std::string_view();
        if (type == "IEND") {
            return image;
        }
        bytes.remove_prefix(chunk.size());
    }
    return std::nullopt;
}

bool decodesWhole(std::string_view bytes)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    const std::unique_ptr<png_image, decltype(&png_image_free)> owner(&image, &png_image_free);
    if (png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) {
        return false;
    }
    if (image.width < 1 || image.width > maximumLogoPixels || image.height < 1
        || image.height > maximumLogoPixels) {
        return false;
    }
    image.format = PNG_FORMAT_RGBA;
    std::vector<png_byte> pixels(PNG_IMAGE_SIZE(image));
    const bool finished = png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) != 0;
    return finished && PNG_IMAGE_FAILED(image) == 0;
}

bool isLogo(std::string_view bytes)
{
    if (bytes.empty() || bytes.size() > maximumLogoBytes || !bytes.starts_with(pngSignature)) {
        return false;
    }
    const std::optional<std::string> image = singleImage(bytes);
    return image && decodesWhole(*image);
}

} // namespace

void validateClientLogo(std::string_view bytes)
{
    if (!isLogo(bytes)) {
        throw LedgerError("Client logos must be valid PNG images up to 256 pixels and 256 KB.");
    }
}

} // namespace KestryCore
