#include "SymbolPainting.h"

#include <QFile>
#include <QSvgRenderer>

namespace Kestry {

QByteArray symbolDrawing(const QString& name, const QColor& color)
{
    QFile file(":/symbols/" + name + ".svg");
    QByteArray drawing = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return drawing.replace("currentColor", color.name().toLatin1());
}

void paintSymbol(QPainter& painter, const QByteArray& drawing, const QRectF& area, double opacity)
{
    QSvgRenderer renderer(drawing);
    painter.save();
    painter.setOpacity(opacity);
    renderer.render(&painter, area);
    painter.restore();
}

} // namespace Kestry
