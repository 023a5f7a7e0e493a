#pragma once

#include <QRect>

namespace Kestry {

// Places of what comes up beside an item. All are on the desktop, in device-independent pixels.

/// Which edge of its item a menu is aligned with.
enum class MenuSide { left, right };

/// The place of a menu of a size below an item, or above it where there is more room. Within the
/// bounds, and not as high as wanted where they are lower; the menu then scrolls.
[[nodiscard]] QRect menuFrame(const QRect& item, QSize size, const QRect& bounds, MenuSide side);

/// The place of a tool tip below a pointer, or above it where there is no room. Within the bounds.
[[nodiscard]] QRect tipFrameAtPointer(QPoint pointer, QSize size, const QRect& bounds);

/// The place of a tool tip to the right of an item, or to its left where there is no room. Within
/// the bounds.
[[nodiscard]] QRect tipFrameBeside(const QRect& item, QSize size, const QRect& bounds);

} // namespace Kestry
