#pragma once

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

    /// Shows a text, as it is, below the pointer that rests on an item.
    Q_INVOKABLE void show(const QQuickItem* item, const QString& text);
    Q_INVOKABLE void hide();
};

} // namespace Kestry
