#include "RoundedShape.h"

#include <QPainter>

namespace Kestry {
namespace {

constexpr double outlineWidth = 1.0;

} // namespace

RoundedShape::RoundedShape(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &RoundedShape::changed, this, [this] { update(); });
}

void RoundedShape::paint(QPainter* painter)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(color_);
    painter->drawRoundedRect(boundingRect(), radius_, radius_);
    if (outline_.alpha() == 0) {
        return;
    }
    constexpr double inset = outlineWidth / 2.0;
    painter->setPen(QPen(outline_, outlineWidth));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(
        boundingRect().adjusted(inset, inset, -inset, -inset), radius_ - inset, radius_ - inset);
}

} // namespace Kestry
