#pragma once

#include <QColor>
#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace Kestry {

/// Tool tips in windows of their own, so that they can be larger than the panel that they are of.
class ToolTips final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    using QObject::QObject;

    enum Place { BelowPointer, BesideItem };
    Q_ENUM(Place)

    /// The look of the tips that are shown from now on.
    Q_INVOKABLE void wear(
        const QColor& background, const QColor& outline, const QColor& text, int fontPixels);

    /// Shows a text, as it is: below the pointer that rests on an item, or to the right of the
    /// item where something else unfolds below.
    Q_INVOKABLE void show(const QQuickItem* item, const QString& text, Place place);
    Q_INVOKABLE void hide();

private:
    QColor text_;
};

} // namespace Kestry
