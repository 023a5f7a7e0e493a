#include "AppearanceSettings.h"

#include "AccentPalette.h"

namespace Kestry {
namespace AccentPalette = KestryCore::AccentPalette;

namespace {

constexpr const char* modeKey = "appearanceMode";
constexpr const char* accentKey = "accentColorHex";

AppearanceMode storedMode(const UserDefaults& defaults)
{
    const bool isLight = defaults.string(modeKey) == rawValue(AppearanceMode::light);
    return isLight ? AppearanceMode::light : AppearanceMode::dark;
}

std::string storedAccent(const UserDefaults& defaults)
{
    const auto normalised = AccentPalette::normalise(defaults.string(accentKey).value_or(""));
    return normalised.value_or(std::string(AccentPalette::defaultHex));
}

} // namespace

std::string_view rawValue(AppearanceMode mode)
{
    return mode == AppearanceMode::light ? "Light" : "Dark";
}

AppearanceSettings::AppearanceSettings(UserDefaults& defaults)
    : defaults_(defaults), mode_(storedMode(defaults)), accentHex_(storedAccent(defaults)),
      lightAccentHex_(AccentPalette::adapted(*accentHex_, AccentPalette::Theme::light)),
      darkAccentHex_(AccentPalette::adapted(*accentHex_, AccentPalette::Theme::dark))
{
}

void AppearanceSettings::setMode(AppearanceMode mode)
{
    mode_.assign(mode);
    defaults_.setString(modeKey, std::string(rawValue(mode)));
}

bool AppearanceSettings::setAccentHex(std::string_view text)
{
    const auto normalised = AccentPalette::normalise(text);
    if (!normalised) {
        return false;
    }
    lightAccentHex_ = AccentPalette::adapted(*normalised, AccentPalette::Theme::light);
    darkAccentHex_ = AccentPalette::adapted(*normalised, AccentPalette::Theme::dark);
    accentHex_.assign(*normalised);
    defaults_.setString(accentKey, *normalised);
    return true;
}

} // namespace Kestry
