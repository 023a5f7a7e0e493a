#include "AvatarShape.h"

#include <QPainter>
#include <QTextBoundaryFinder>

#include "ContinuousCorners.h"

namespace Kestry {
namespace {

constexpr double radius = 0.3; // of the size

} // namespace

AvatarShape::AvatarShape(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &AvatarShape::changed, this, [this] { update(); });
}

void AvatarShape::setLogo(const QVariant& logo)
{
    logo_ = logo.value<QImage>();
    emit changed();
}

QString AvatarShape::initial() const
{
    const QString trimmed = name_.trimmed();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, trimmed);
    const auto end = finder.toNextBoundary();
    return end > 0 ? trimmed.left(end).toUpper() : QString();
}

QBrush AvatarShape::logoBrush(const QSizeF& size, double scale) const
{
    // In the pixels of the screen, so that a large logo is averaged and not sampled.
    const QSize pixels = (size * scale).toSize().expandedTo(QSize(1, 1));
    QImage image = logo_.scaled(pixels, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    image = image.copy((image.width() - pixels.width()) / 2, (image.height() - pixels.height()) / 2,
        pixels.width(), pixels.height());
    QBrush brush(image);
    brush.setTransform(
        QTransform::fromScale(size.width() / pixels.width(), size.height() / pixels.height()));
    return brush;
}

void AvatarShape::paint(QPainter* painter)
{
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->setPen(Qt::NoPen);
    painter->setBrush(
        hasLogo() ? logoBrush(boundingRect().size(), painter->deviceTransform().m11()) : color_);
    painter->drawPath(continuousCorners(boundingRect(), radius * width()));
}

} // namespace Kestry
