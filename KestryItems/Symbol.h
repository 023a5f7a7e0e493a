#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace Kestry {

/// One of the program's own symbols, drawn in one colour at any size. Draws nothing for an unknown
/// name.
class Symbol : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// The symbol's name, as in "play.fill".
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)

public:
    explicit Symbol(QQuickItem* parent = nullptr);

    [[nodiscard]] QString name() const { return name_; }
    void setName(const QString& name);
    [[nodiscard]] QColor color() const { return color_; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    void load();

    QString name_;
    QColor color_ = Qt::white;
    QByteArray drawing_; ///< SVG in the colour.
};

} // namespace Kestry
