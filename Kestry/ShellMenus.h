#pragma once

#include "Commander.h"
#include "MenuEntry.h"

namespace Kestry {

// The commander must outlive the menus.

/// The menu of the status item.
[[nodiscard]] Menu statusMenu(Commander& commander);

/// The main menu, opened from the workspace window.
[[nodiscard]] Menu mainMenu(Commander& commander);

} // namespace Kestry
