#include "AccentPalette.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

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

/// The surfaces that a colour must contrast with, and the colour that it may approach.
struct Ground {
    Ground(const HexColor& goal, double least, const auto& surfaces)
        : target(goal.channels()), limit(least)
    {
        std::ranges::transform(surfaces, std::back_inserter(luminances), luminanceOf);
    }

    [[nodiscard]] bool isPassedBy(const HexColor& color) const
    {
        return std::ranges::all_of(luminances, [&](double surface) {
            return contrastOf(color.relativeLuminance(), surface) >= limit;
        });
    }

    /// The way from the colour (0) to the target (1).
    [[nodiscard]] HexColor blend(const HexColor& color, double part) const
    {
        HexColor::Channels channels = color.channels();
        for (std::size_t index = 0; index < channels.size(); ++index) {
            const int channel = channels[index];
            channels[index] =
                static_cast<int>(std::round(channel + part * (target[index] - channel)));
        }
        return HexColor(channels);
    }

    HexColor::Channels target;
    double limit;
    std::vector<double> luminances{};
};

std::string nearestOn(const Ground& ground, std::string_view hex)
{
    const auto chosen = HexColor::parse(hex);
    const HexColor color = chosen ? *chosen : *HexColor::parse(defaultHex);
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

} // namespace

std::optional<std::string> normalise(std::string_view text)
{
    return normalisedHexColor(text);
}

std::string adapted(std::string_view hex, Theme theme)
{
    constexpr int white = HexColor::maximumChannel;
    return theme == Theme::dark
        ? nearestOn(Ground(HexColor({white, white, white}), leastContrast, darkBackgrounds), hex)
        : nearestOn(Ground(HexColor({0, 0, 0}), leastContrast, lightBackgrounds), hex);
}

std::string legible(std::string_view hex, std::string_view target,
    const std::vector<std::string>& surfaces, double least)
{
    const auto goal = HexColor::parse(target).value_or(*HexColor::parse(defaultHex));
    return nearestOn(Ground(goal, least, surfaces), hex);
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
