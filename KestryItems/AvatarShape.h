#pragma once

#include <QColor>
#include <QImage>
#include <QQuickPaintedItem>
#include <QVariant>

namespace Kestry {

/// The square of an avatar, with continuous corners: filled with the logo, or with a colour where
/// there is none. A logo that is no square is cut at its longer sides.
class AvatarShape : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name MEMBER name_ NOTIFY changed)
    /// An image, whose copies share its pixels; without a logo a null one, or anything else.
    Q_PROPERTY(QVariant logo READ logo WRITE setLogo NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(bool hasLogo READ hasLogo NOTIFY changed)
    Q_PROPERTY(QString initial READ initial NOTIFY changed)

public:
    explicit AvatarShape(QQuickItem* parent = nullptr);

    [[nodiscard]] QVariant logo() const { return logo_; }
    void setLogo(const QVariant& logo);
    [[nodiscard]] bool hasLogo() const { return !logo_.isNull(); }
    /// The first character of the name as people count them, in upper case; empty without one.
    [[nodiscard]] QString initial() const;

    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    [[nodiscard]] QBrush logoBrush(const QSizeF& size, double scale) const;

    QString name_;
    QImage logo_;
    QColor color_ = Qt::transparent;
};

} // namespace Kestry
