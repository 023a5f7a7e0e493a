#include "PanelPlace.h"

#include <string_view>

namespace Kestry {
namespace {

constexpr std::string_view primaryScreen = "primary";
constexpr std::string_view pointerScreen = "pointer";
// Before a name, which may be any text.
constexpr std::string_view namePrefix = "screen:";
constexpr std::string_view leftSide = "left";
constexpr std::string_view centerSide = "center";
constexpr std::string_view rightSide = "right";

PanelPlace::Side sideFrom(std::string_view text)
{
    if (text == leftSide) {
        return PanelPlace::Side::left;
    }
    return text == rightSide ? PanelPlace::Side::right : PanelPlace::Side::center;
}

} // namespace

std::string screenText(const PanelPlace& place)
{
    switch (place.screen) {
    case PanelPlace::Screen::pointer:
        return std::string(pointerScreen);
    case PanelPlace::Screen::named:
        return std::string(namePrefix) + place.screenName;
    case PanelPlace::Screen::primary:
        break;
    }
    return std::string(primaryScreen);
}

std::string sideText(const PanelPlace& place)
{
    switch (place.side) {
    case PanelPlace::Side::left:
        return std::string(leftSide);
    case PanelPlace::Side::right:
        return std::string(rightSide);
    case PanelPlace::Side::center:
        break;
    }
    return std::string(centerSide);
}

PanelPlace panelPlaceFrom(
    const std::optional<std::string>& screen, const std::optional<std::string>& side)
{
    PanelPlace place;
    place.side = sideFrom(side.value_or(""));
    if (screen == pointerScreen) {
        place.screen = PanelPlace::Screen::pointer;
    } else if (screen && screen->starts_with(namePrefix) && screen->size() > namePrefix.size()) {
        place.screen = PanelPlace::Screen::named;
        place.screenName = screen->substr(namePrefix.size());
    }
    return place;
}

} // namespace Kestry
