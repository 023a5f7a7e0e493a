#include "AccentPalette.h"

#include <algorithm>
#include <cmath>

#include "HexColor.h"

namespace KestryCore::AccentPalette {
namespace {

constexpr int bisections = 24;
constexpr double blackLuminance = 0.0;
constexpr double whiteLuminance = 1.0;

double luminanceOf(std::string_view hex)
{
    const auto color = HexColor::parse(hex);
    return color ? color->relativeLuminance() : blackLuminance;
}

double contrastOf(double left, double right)
{
    return (std::max(left, right) + 0.05) / (std::min(left, right) + 0.05);
}

/// The backgrounds that an accent must contrast with in one theme, and the colour that it may
/// approach.
struct Ground {
    explicit Ground(Theme theme) : target(theme == Theme::dark ? HexColor::maximumChannel : 0)
    {
        std::ranges::transform(theme == Theme::dark ? darkBackgrounds : lightBackgrounds,
            luminances.begin(), luminanceOf);
    }

    [[nodiscard]] bool isPassedBy(const HexColor& color) const
    {
        return std::ranges::all_of(luminances, [&](double background) {
            return contrastOf(color.relativeLuminance(), background) >= leastContrast;
        });
    }

    /// The way from the colour (0) to white or black (1).
    [[nodiscard]] HexColor blend(const HexColor& color, double part) const
    {
        HexColor::Channels channels = color.channels();
        for (int& channel : channels) {
            channel = static_cast<int>(std::round(channel + part * (target - channel)));
        }
        return HexColor(channels);
    }

    int target;
    std::array<double, 2> luminances{};
};

} // namespace

std::optional<std::string> normalise(std::string_view text)
{
    return normalisedHexColor(text);
}

std::string adapted(std::string_view hex, Theme theme)
{
    const auto chosen = HexColor::parse(hex);
    const HexColor color = chosen ? *chosen : *HexColor::parse(defaultHex);
    const Ground ground(theme);
    if (ground.isPassedBy(color)) {
        return color.text();
    }
    double low = 0.0;
    double high = 1.0;
    HexColor best = ground.blend(color, high);
    for (int round = 0; round < bisections; ++round) {
        const double middle = (low + high) / 2.0;
        const HexColor blend = ground.blend(color, middle);
        if (ground.isPassedBy(blend)) {
            best = blend;
            high = middle;
        } else {
            low = middle;
        }
    }
    return best.text();
}

double contrast(std::string_view left, std::string_view right)
{
    return contrastOf(luminanceOf(left), luminanceOf(right));
}

std::string onAccent(std::string_view hex)
{
    const double luminance = luminanceOf(hex);
    const bool isBlack =
        contrastOf(whiteLuminance, luminance) <= contrastOf(luminance, blackLuminance);
    return isBlack ? "000000" : "FFFFFF";
}

} // namespace KestryCore::AccentPalette
