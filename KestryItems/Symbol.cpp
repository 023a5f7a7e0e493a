#include "Symbol.h"

#include <QPainter>

#include "SymbolPainting.h"

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
    drawing_ = symbolDrawing(name_, color_);
    emit changed();
    update();
}

void Symbol::paint(QPainter* painter)
{
    paintSymbol(*painter, drawing_, boundingRect(), color_.alphaF());
}

} // namespace Kestry
