#pragma once

#include <QImage>

namespace Kestry {

// Pictures for an area that does not tint what it is given, and may be dark or light: white, with a
// black outline.

/// The program's mark in its place `frame` of a turn, from 0 to `statusFrameCount - 1`.
[[nodiscard]] QImage statusMark(int frame);

/// A plain symbol in place of the mark.
[[nodiscard]] QImage statusSymbol();

} // namespace Kestry
