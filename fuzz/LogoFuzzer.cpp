#include <cstdint>
#include <string>
#include <string_view>

#include "ClientLogo.h"
#include "Verdict.h"

// Any bytes either are refused with the one sentence for stored logos, or are a PNG file whose
// header has sides that are allowed.

namespace {

using namespace KestryCore;

constexpr const char* refusal =
    "Client logos must be valid PNG images up to 256 pixels and 256 KB.";

/// A side as it is written in the header of a PNG file.
std::uint32_t side(std::string_view bytes, std::size_t position)
{
    std::uint32_t value = 0;
    for (const char byte : bytes.substr(position, 4)) {
        value = value << 8 | static_cast<std::uint8_t>(byte);
    }
    return value;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string verdict = verdictOn([&] { validateClientLogo(bytes); });
    if (!verdict.empty()) {
        require(verdict == refusal, "there is one sentence for all that is no logo");
        return 0;
    }
    constexpr std::size_t width = 16;
    constexpr std::size_t height = 20;
    require(bytes.starts_with("\x89PNG") && bytes.size() <= maximumLogoBytes, "a logo is a PNG");
    for (const std::size_t position : {width, height}) {
        const std::uint32_t pixels = side(bytes, position);
        require(pixels >= 1 && pixels <= maximumLogoPixels, "a side has 1 to 256 pixels");
    }
    return 0;
}
