#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace Kestry {

/// A rectangle with round corners and an outline that lies on its fill. The toolkit's own lays the
/// outline around a translucent fill, and cuts edges short at scales that are no whole numbers.
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
