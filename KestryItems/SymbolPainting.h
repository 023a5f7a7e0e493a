#pragma once

#include <QColor>
#include <QPainter>

namespace Kestry {

/// The drawing of one of the program's own symbols, as in "play.fill", in one colour; SVG. Empty
/// for a name that there is none of.
[[nodiscard]] QByteArray symbolDrawing(const QString& name, const QColor& color);

/// Draws such a drawing into a rectangle; `opacity` is that of its colour.
void paintSymbol(QPainter& painter, const QByteArray& drawing, const QRectF& area, double opacity);

} // namespace Kestry
