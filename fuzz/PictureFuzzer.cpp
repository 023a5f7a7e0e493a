#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "ClientLogo.h"
#include "LogoPicture.h"
#include "PictureFile.h"
#include "Verdict.h"

// Any bytes of a picture either are refused in words that a person knows, or become a logo: one
// that may be stored, and that becomes itself again.

namespace {

using namespace KestryCore;

constexpr std::array<std::string_view, 4> refusals{unreadablePicture,
    "This image could not be read.", "The logo could not be saved.",
    "This image is too large to use as a logo."};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::string logo;
    const std::string verdict = verdictOn([&] { logo = Kestry::logoFromPicture(bytes); });
    if (!verdict.empty()) {
        require(
            std::ranges::find(refusals, verdict) != refusals.end(), "the reason is a known one");
        return 0;
    }
    require(verdictOn([&] { validateClientLogo(logo); }).empty(), "the logo may be stored");
    require(Kestry::logoFromPicture(logo) == logo, "a logo becomes itself");
    return 0;
}
