#pragma once

#include <QColor>
#include <QPalette>

namespace Kestry {

enum class MenuTheme { light, dark };

/// The colours of a native menu, the same as those of the views that open it.
[[nodiscard]] QPalette menuPalette(MenuTheme theme, const QColor& accent);

} // namespace Kestry
