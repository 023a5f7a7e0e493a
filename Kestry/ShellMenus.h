#pragma once

#include <functional>

#include "Commander.h"
#include "MenuEntry.h"
#include "SoftwareUpdater.h"
#include "WindowKeys.h"

namespace Kestry {

// The commander and the updater must outlive the menus.

/// The menu of the status item.
[[nodiscard]] Menu statusMenu(Commander& commander);

/// What the window does itself, of those keys: shows its keys, and closes.
using WindowAction = std::function<void(WindowKeys::Command)>;

/// The main menu, opened from the workspace window.
[[nodiscard]] Menu mainMenu(
    Commander& commander, SoftwareUpdater& updater, const WindowAction& window);

} // namespace Kestry
