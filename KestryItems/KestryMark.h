#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace Kestry {

/// The program's mark. It is not in the accessibility tree; the view around it has the words.
class KestryMark : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// The side of its square, in pixels.
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)
    /// The rotation, clockwise in degrees.
    Q_PROPERTY(double angle READ angle WRITE setAngle NOTIFY changed)

public:
    explicit KestryMark(QQuickItem* parent = nullptr);

    [[nodiscard]] double size() const { return size_; }
    void setSize(double size);
    [[nodiscard]] QColor color() const { return color_; }
    void setColor(const QColor& color);
    [[nodiscard]] double angle() const { return angle_; }
    void setAngle(double angle);

    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    void redraw();

    double size_ = 0.0;
    QColor color_ = Qt::white;
    double angle_ = 0.0;
};

} // namespace Kestry
