#include "KestryMark.h"

#include <QPainter>

#include "MarkPainting.h"

namespace Kestry {

KestryMark::KestryMark(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void KestryMark::setSize(double size)
{
    if (size != size_) {
        size_ = size;
        setImplicitSize(size, size);
        redraw();
    }
}

void KestryMark::setColor(const QColor& color)
{
    if (color != color_) {
        color_ = color;
        redraw();
    }
}

void KestryMark::setAngle(double angle)
{
    if (angle != angle_) {
        angle_ = angle;
        redraw();
    }
}

void KestryMark::redraw()
{
    emit changed();
    update();
}

void KestryMark::paint(QPainter* painter)
{
    const double middle = size_ / 2.0;
    painter->translate(middle, middle);
    painter->rotate(angle_);
    painter->translate(-middle, -middle);
    paintMark(*painter, size_, color_);
}

} // namespace Kestry
