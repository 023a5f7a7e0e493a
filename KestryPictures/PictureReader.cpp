#include "PictureReader.h"

#include <gdk-pixbuf/gdk-pixbuf.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "LedgerError.h"
#include "PictureFile.h"
#include "PictureFormat.h"

namespace Kestry {

using KestryCore::LedgerError;
using KestryCore::unreadablePicture;

namespace {

constexpr const char* tooLarge = "This image is too large to use as a logo.";

struct Unreference {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using Loader = std::unique_ptr<GdkPixbufLoader, Unreference>;

const char* loaderName(PictureFormat format)
{
    switch (format) {
    case PictureFormat::png:
        return "png";
    case PictureFormat::jpeg:
        return "jpeg";
    case PictureFormat::gif:
        return "gif";
    case PictureFormat::webp:
        return "webp";
    case PictureFormat::heif:
        return "heif/avif";
    }
    return "";
}

/// What the decoder is given of a whole file.
std::string neededBytes(std::string_view bytes, PictureFormat format)
{
    if (format == PictureFormat::png) {
        return pngWithoutExtras(bytes);
    }
    return format == PictureFormat::gif ? gifOfFirstImage(bytes) : std::string(bytes);
}

bool isTooLarge(int width, int height)
{
    return std::uint64_t{static_cast<unsigned>(width)} * static_cast<unsigned>(height)
        > maximumPicturePixels;
}

/// What the decoder tells while it works.
struct Progress {
    bool isTooLarge = false;
    int rows = 0; ///< How far down pixels are decoded.
};

/// Called when the decoder knows the size, and before it takes memory for the pixels.
void noteSize(GdkPixbufLoader* loader, int width, int height, gpointer progress)
{
    if (isTooLarge(width, height)) {
        static_cast<Progress*>(progress)->isTooLarge = true;
        gdk_pixbuf_loader_set_size(loader, 0, 0);
    }
}

void noteRows(GdkPixbufLoader*, int, int y, int, int height, gpointer progress)
{
    int& rows = static_cast<Progress*>(progress)->rows;
    rows = std::max(rows, y + height);
}

/// Whether the loader takes all of the bytes and finds them sound. Always closes it.
bool decode(GdkPixbufLoader* loader, std::string_view bytes)
{
    const bool written = gdk_pixbuf_loader_write(loader,
                             reinterpret_cast<const guchar*>(bytes.data()), bytes.size(), nullptr)
        != FALSE;
    return gdk_pixbuf_loader_close(loader, nullptr) != FALSE && written;
}

/// Whether the decoder tells of each row of a sound picture: that of GIF tells only of those that
/// the first image covers, that of WebP of none in an animation. Both find missing pixels
/// themselves.
bool tellsOfEachRow(GdkPixbufLoader* loader, PictureFormat format)
{
    GdkPixbufAnimation* const images = gdk_pixbuf_loader_get_animation(loader);
    return format != PictureFormat::gif
        && (images == nullptr || gdk_pixbuf_animation_is_static_image(images) != FALSE);
}

int scaledSide(int side, double scale)
{
    return std::max(1, static_cast<int>(std::lround(side * scale)));
}

gboolean appendTo(const gchar* bytes, gsize size, GError**, gpointer file)
{
    static_cast<std::string*>(file)->append(bytes, size);
    return TRUE;
}

} // namespace

void PictureDeleter::operator()(GdkPixbuf* picture) const
{
    g_object_unref(picture);
}

Picture readPicture(std::string_view bytes)
{
    const std::optional<PictureFormat> format = pictureFormat(bytes);
    if (!format || !reachesItsEnd(bytes, *format)) {
        throw LedgerError(unreadablePicture);
    }
    if (declaredPixels(bytes, *format) > maximumPicturePixels) {
        throw LedgerError(tooLarge);
    }
    const Loader loader(gdk_pixbuf_loader_new_with_type(loaderName(*format), nullptr));
    if (!loader) {
        throw LedgerError(unreadablePicture);
    }
    Progress progress;
    g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(&noteSize), &progress);
    g_signal_connect(loader.get(), "area-updated", G_CALLBACK(&noteRows), &progress);
    const bool isSound = decode(loader.get(), neededBytes(bytes, *format));
    GdkPixbuf* pixels = gdk_pixbuf_loader_get_pixbuf(loader.get());
    if (progress.isTooLarge) {
        throw LedgerError(tooLarge);
    }
    // Some decoders leave the rows that are missing empty, without a word.
    const bool isWhole = pixels != nullptr
        && (!tellsOfEachRow(loader.get(), *format)
            || progress.rows >= gdk_pixbuf_get_height(pixels));
    if (!isSound || !isWhole) {
        throw LedgerError(unreadablePicture);
    }
    g_object_ref(pixels);
    return Picture(pixels);
}

Picture thumbnail(const Picture& picture, int longestSide)
{
    const int width = gdk_pixbuf_get_width(picture.get());
    const int height = gdk_pixbuf_get_height(picture.get());
    const double scale = std::min(1.0, static_cast<double>(longestSide) / std::max(width, height));
    // Bilinear means, where a picture gets smaller, that each pixel is the mean of all that it
    // covers.
    const Picture small(gdk_pixbuf_scale_simple(
        picture.get(), scaledSide(width, scale), scaledSide(height, scale), GDK_INTERP_BILINEAR));
    if (!small) {
        throw LedgerError("This image could not be read.");
    }
    gdk_pixbuf_copy_options(picture.get(), small.get());
    Picture upright(gdk_pixbuf_apply_embedded_orientation(small.get()));
    if (!upright) {
        throw LedgerError("This image could not be read.");
    }
    return upright;
}

std::string pngFile(const Picture& picture)
{
    std::string file;
    if (gdk_pixbuf_save_to_callback(picture.get(), &appendTo, &file, "png", nullptr, nullptr)
        == 0) {
        throw LedgerError("The logo could not be saved.");
    }
    return file;
}

} // namespace Kestry
