#pragma once

#include <memory>

#include <QMenu>

#include "MenuEntry.h"

namespace Kestry {

/// Fills a menu of the toolkit, which has its own window, keys and accessibility, with entries.
/// Whatever it held before goes.
void fillNativeMenu(QMenu& menu, const Menu& entries);

} // namespace Kestry
