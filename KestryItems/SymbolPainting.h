#pragma once

#include <QColor>
#include <QPainter>

namespace Kestry {

/// Returns one of the program's own symbols, such as "play.fill", in one colour, as SVG; empty for
/// an unknown name.
[[nodiscard]] QByteArray symbolDrawing(const QString& name, const QColor& color);

/// Draws what `symbolDrawing` returned into a rectangle, with an opacity from 0 to 1.
void paintSymbol(QPainter& painter, const QByteArray& drawing, const QRectF& area, double opacity);

} // namespace Kestry
