#include "Symbol.h"

#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

namespace Kestry {

Symbol::Symbol(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void Symbol::setName(const QString& name)
{
    if (name != name_) {
        name_ = name;
        load();
    }
}

void Symbol::setColor(const QColor& color)
{
    if (color != color_) {
        color_ = color;
        load();
    }
}

void Symbol::load()
{
    QFile file(":/symbols/" + name_ + ".svg");
    drawing_ = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    drawing_.replace("currentColor", color_.name().toLatin1());
    emit changed();
    update();
}

void Symbol::paint(QPainter* painter)
{
    QSvgRenderer renderer(drawing_);
    painter->setOpacity(color_.alphaF());
    renderer.render(painter, boundingRect());
}

} // namespace Kestry
