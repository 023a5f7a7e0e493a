#include "MarkPainting.h"

namespace Kestry {
namespace {

constexpr int tickCount = 12;
constexpr int fullTicks = 8; // the rest are faint
constexpr int longTick = 8;
constexpr double faintOpacity = 0.25;

// In parts of the mark's size.
constexpr double tickWidth = 0.085;
constexpr double tickLength = 0.22;
constexpr double longTickLength = 0.29;
constexpr double tickDistance = 0.35;

} // namespace

void paintMark(QPainter& painter, double size, const QColor& color)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.translate(size / 2.0, size / 2.0);
    for (int tick = 0; tick < tickCount; ++tick) {
        const double width = tickWidth * size;
        const double length = (tick == longTick ? longTickLength : tickLength) * size;
        QColor fill = color;
        fill.setAlphaF(
            static_cast<float>(color.alphaF() * (tick < fullTicks ? 1.0 : faintOpacity)));
        painter.setBrush(fill);
        const QRectF bar(-width / 2.0, -tickDistance * size - length / 2.0, width, length);
        painter.drawRoundedRect(bar, width / 2.0, width / 2.0);
        painter.rotate(360.0 / tickCount);
    }
    painter.restore();
}

} // namespace Kestry
