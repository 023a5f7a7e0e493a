#pragma once

#include "MenuEntry.h"
#include "ShellCommands.h"

namespace Kestry {

// The commands outlive the menus that name them.

/// The menu of the status item.
[[nodiscard]] Menu statusMenu(ShellCommands& commands);

/// The main menu, opened from the workspace window.
[[nodiscard]] Menu mainMenu(ShellCommands& commands);

} // namespace Kestry
