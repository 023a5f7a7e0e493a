#include "ShellMenus.h"

#include "WindowKeys.h"

namespace Kestry {
namespace {

MenuEntry entry(std::string text, std::function<void()> action)
{
    return {.text = std::move(text), .action = std::move(action)};
}

MenuEntry entry(std::string text, WindowKeys::Command command, std::function<void()> action)
{
    return {.text = std::move(text),
        .shortcut = WindowKeys::keyText(command),
        .action = std::move(action)};
}

Menu sessionMenu(Commander& commander)
{
    return {
        entry("Start / pause / resume", WindowKeys::ToggleSession,
            [&] { commander.toggleSession(); }),
        entry("Stop & save", WindowKeys::StopSession, [&] { commander.stopSession(); }),
        entry("Show notch controls", WindowKeys::ShowNotch, [&] { commander.showNotch(); }),
    };
}

} // namespace

Menu statusMenu(Commander& commander)
{
    return {
        entry("Open Kestry", [&] { commander.openMain(); }),
        entry("Show notch controls", [&] { commander.showNotch(); }),
        MenuEntry::separator(),
        entry("Start / pause / resume", [&] { commander.toggleSession(); }),
        entry("Stop & save session", [&] { commander.stopSession(); }),
        MenuEntry::separator(),
        entry("Quit Kestry", [&] { commander.quit(); }),
    };
}

Menu mainMenu(Commander& commander, SoftwareUpdater& updater, const WindowAction& window)
{
    MenuEntry updates = entry("Check for Updates…", [&] { updater.checkForUpdates(); });
    updates.isEnabled = updater.mayCheck();
    MenuEntry newProject = entry("New project", [&] { commander.newProject(); });
    newProject.isEnabled = commander.clientForNewProject().has_value();
    MenuEntry session{.text = "Session", .entries = sessionMenu(commander)};
    return {
        std::move(updates),
        MenuEntry::separator(),
        entry("New client", WindowKeys::NewClient, [&] { commander.newClient(); }),
        std::move(newProject),
        MenuEntry::separator(),
        entry("Settings…", WindowKeys::OpenSettings, [&] { commander.openSettings(); }),
        MenuEntry::separator(),
        std::move(session),
        MenuEntry::separator(),
        entry(
            "Keyboard shortcuts", WindowKeys::ShowKeys, [window] { window(WindowKeys::ShowKeys); }),
        entry(
            "Close window", WindowKeys::CloseWindow, [window] { window(WindowKeys::CloseWindow); }),
        entry("Quit Kestry", WindowKeys::Quit, [&] { commander.quit(); }),
    };
}

} // namespace Kestry
