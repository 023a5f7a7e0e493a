#pragma once

#include <QColor>
#include <QPainter>

namespace Kestry {

/// Draws the program's mark, twelve ticks in a ring of which the ninth is longer, into the square
/// from (0, 0) to (size, size) of the painter's coordinates.
void paintMark(QPainter& painter, double size, const QColor& color);

} // namespace Kestry
