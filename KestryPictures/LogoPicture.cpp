#include "LogoPicture.h"

#include "ClientLogo.h"
#include "LedgerError.h"
#include "PictureFile.h"
#include "PictureReader.h"

namespace Kestry {

std::string logoFromPicture(std::string_view bytes)
{
    KestryCore::requirePictureSize(bytes.size());
    const Picture picture = readPicture(bytes);
    for (const int longestSide : {256, 128}) {
        std::string logo = pngFile(thumbnail(picture, longestSide));
        if (logo.size() <= KestryCore::maximumLogoBytes) {
            KestryCore::validateClientLogo(logo);
            return logo;
        }
    }
    throw KestryCore::LedgerError("This image is too large to use as a logo.");
}

} // namespace Kestry
