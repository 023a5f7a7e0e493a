#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace Kestry {

/// The program's mark. It says nothing to those who listen: what stands beside it does.
class KestryMark : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// The sides of the square that it fills.
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)
    /// Turned clockwise by so many degrees.
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
