#include "ShellMenus.h"

namespace Kestry {
namespace {

MenuEntry entry(std::string text, std::function<void()> action)
{
    return {.text = std::move(text), .action = std::move(action)};
}

MenuEntry entry(std::string text, std::string shortcut, std::function<void()> action)
{
    return {.text = std::move(text), .shortcut = std::move(shortcut), .action = std::move(action)};
}

Menu sessionMenu(ShellCommands& commands)
{
    return {
        entry("Start / pause / resume", "Ctrl+T", [&] { commands.toggleSession(); }),
        entry("Stop & save", "Ctrl+Shift+S", [&] { commands.stopSession(); }),
        entry("Show notch controls", "Ctrl+Alt+N", [&] { commands.showNotch(); }),
    };
}

} // namespace

Menu statusMenu(ShellCommands& commands)
{
    return {
        entry("Open Kestry", [&] { commands.openMain(); }),
        entry("Show notch controls", [&] { commands.showNotch(); }),
        MenuEntry::separator(),
        entry("Start / pause / resume", [&] { commands.toggleSession(); }),
        entry("Stop & save session", [&] { commands.stopSession(); }),
        MenuEntry::separator(),
        entry("Quit Kestry", [&] { commands.quit(); }),
    };
}

Menu mainMenu(ShellCommands& commands)
{
    MenuEntry updates = entry("Check for Updates…", nullptr);
    updates.isEnabled = false; // for as long as a build has no updater
    MenuEntry newProject = entry("New project", [&] { commands.newProject(); });
    newProject.isEnabled = commands.clientForNewProject().has_value();
    MenuEntry session{.text = "Session", .entries = sessionMenu(commands)};
    return {
        std::move(updates),
        MenuEntry::separator(),
        entry("New client", "Ctrl+N", [&] { commands.newClient(); }),
        std::move(newProject),
        MenuEntry::separator(),
        std::move(session),
        MenuEntry::separator(),
        entry("Settings…", "Ctrl+,", [&] { commands.openSettings(); }),
        entry("Quit Kestry", "Ctrl+Q", [&] { commands.quit(); }),
    };
}

} // namespace Kestry
