#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace Kestry {

/// A rectangle with rounded corners and an outline drawn over its fill. The toolkit's Rectangle
/// draws the outline around a translucent fill, and cuts off edges at fractional scales.
class RoundedShape : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(QColor outline MEMBER outline_ NOTIFY changed)

public:
    explicit RoundedShape(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    double radius_ = 0.0;
    QColor color_ = Qt::black;
    QColor outline_ = Qt::transparent;
};

} // namespace Kestry
