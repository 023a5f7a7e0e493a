#include "AppState.h"

namespace Kestry {
namespace {

constexpr auto screenKey = "panelScreen";
constexpr auto sideKey = "panelSide";

} // namespace

AppState::AppState(UserDefaults& defaults)
    : defaults_(defaults), notchEnabled_(defaults.boolean("notchEnabled").value_or(true)),
      menuBarEnabled_(defaults.boolean("menuBarEnabled").value_or(false)),
      panelPlace_(panelPlaceFrom(defaults.string(screenKey), defaults.string(sideKey)))
{
}

void AppState::setNotchEnabled(bool enabled)
{
    notchEnabled_.assign(enabled);
    defaults_.setBoolean("notchEnabled", enabled);
}

void AppState::setMenuBarEnabled(bool enabled)
{
    menuBarEnabled_.assign(enabled);
    defaults_.setBoolean("menuBarEnabled", enabled);
}

void AppState::setPanelPlace(const PanelPlace& place)
{
    panelPlace_.assign(place);
    defaults_.setString(screenKey, screenText(place));
    defaults_.setString(sideKey, sideText(place));
}

void AppState::openDashboard() const
{
    if (openDashboard_) {
        openDashboard_();
    }
}

void AppState::toggleNotch() const
{
    if (toggleNotch_) {
        toggleNotch_();
    }
}

void AppState::setNotchVisible(bool visible) const
{
    if (setNotchVisible_) {
        setNotchVisible_(visible);
    }
}

void AppState::installNotch(Action toggle, std::function<void(bool)> setVisible)
{
    toggleNotch_ = std::move(toggle);
    setNotchVisible_ = std::move(setVisible);
}

} // namespace Kestry
