#include "DesktopChoices.h"

#include <QQuickItem>

#include <algorithm>
#include <utility>

namespace Kestry {
namespace {

using Screen = PanelPlace::Screen;

constexpr auto primaryWords = "Primary screen";
constexpr auto pointerWords = "Screen with the pointer";

std::string wordsOf(const KnownScreen& screen)
{
    return screen.model.empty() ? screen.name : screen.name + " · " + screen.model;
}

} // namespace

DesktopChoices::DesktopChoices(World world) : world_(std::move(world))
{
    placing_ = world_.state.panelPlace().observe([this](const auto&) { emit changed(); });
}

bool DesktopChoices::isThere(const std::string& name) const
{
    const auto screens = world_.screens();
    return std::ranges::find(screens, name, &KnownScreen::name) != screens.end();
}

QString DesktopChoices::screen() const
{
    const PanelPlace& place = *world_.state.panelPlace();
    switch (place.screen) {
    case Screen::pointer:
        return pointerWords;
    case Screen::named:
        return QString::fromStdString(place.screenName);
    case Screen::primary:
        break;
    }
    return primaryWords;
}

QString DesktopChoices::screenDetail() const
{
    const PanelPlace& place = *world_.state.panelPlace();
    if (place.screen == Screen::named && !isThere(place.screenName)) {
        return "Not connected. Until it is, the primary screen shows your timer";
    }
    if (place.screen == Screen::pointer) {
        return "Your timer follows when you click on another screen";
    }
    return "The screen that shows your timer";
}

QStringList DesktopChoices::sides()
{
    return {"Left", "Center", "Right"}; // in the order of PanelPlace::Side
}

void DesktopChoices::open()
{
    if (!std::exchange(isOpen_, true)) {
        world_.autostart.follow([this] { emit changed(); });
    }
    emit changed(); // while nobody looked, it may have been switched
}

void DesktopChoices::toggleAutostart()
{
    try {
        world_.autostart.set(!world_.autostart.isOn());
    } catch (const std::exception& failure) {
        world_.store.reportFailure(KestryCore::failureText(failure));
    }
    emit changed();
}

void DesktopChoices::chooseScreen(Screen screen, const std::string& name)
{
    PanelPlace place = *world_.state.panelPlace();
    place.screen = screen;
    place.screenName = name;
    world_.state.setPanelPlace(place);
}

MenuEntry DesktopChoices::entry(std::string text, Screen screen, const std::string& name)
{
    const PanelPlace& place = *world_.state.panelPlace();
    return {.text = std::move(text),
        .isChosen = place.screen == screen && place.screenName == name,
        .action = [this, screen, name] { chooseScreen(screen, name); }};
}

void DesktopChoices::openScreens(QQuickItem* item)
{
    if (!item) {
        return;
    }
    const PanelPlace& place = *world_.state.panelPlace();
    Menu menu{entry(primaryWords, Screen::primary)};
    if (world_.knowsPointer() || place.screen == Screen::pointer) {
        menu.push_back(entry(pointerWords, Screen::pointer));
    }
    menu.push_back(MenuEntry::separator());
    for (const KnownScreen& screen : world_.screens()) {
        menu.push_back(entry(wordsOf(screen), Screen::named, screen.name));
    }
    if (place.screen == Screen::named && !isThere(place.screenName)) {
        menu.push_back(
            entry(place.screenName + " · not connected", Screen::named, place.screenName));
    }
    world_.openMenu(std::move(menu), "Screen of the panel", *item);
}

void DesktopChoices::chooseSide(int side)
{
    if (side >= 0 && side < sides().size()) {
        PanelPlace place = *world_.state.panelPlace();
        place.side = static_cast<PanelPlace::Side>(side);
        world_.state.setPanelPlace(place);
    }
}

} // namespace Kestry
