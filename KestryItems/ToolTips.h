#pragma once

#include <QObject>
#include <QQmlEngine>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace Kestry {

/// What views ask of tool tips. The window that shows them follows the signals; without one
/// nothing is shown.
class ToolTips final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
public:
    // No default for the parent: the engine would construct an object of its own, and never call
    // `create`.
    explicit ToolTips(QObject* parent) : QObject(parent) { }

    enum Place { BelowPointer, BesideItem };
    Q_ENUM(Place)

    /// Makes this the object that views of an engine see. Call it before the first view is loaded;
    /// the object must outlive the engine.
    void serve(QQmlEngine& engine);
    /// For the engine alone.
    static ToolTips* create(QQmlEngine* engine, QJSEngine* scripts);

    /// Asks for a tip with a plain text: below the pointer that rests on an item, or to the right
    /// of the item where something else unfolds below. `colors` are the item's ThemeColors.
    Q_INVOKABLE void show(QQuickItem* item, const QString& text, Place place, QObject* colors);
    /// Gives a tip that is shown of this item another text; an empty one hides it.
    Q_INVOKABLE void change(QQuickItem* item, const QString& text) { emit changed(item, text); }
    Q_INVOKABLE void hide() { emit hideAsked(); }

signals:
    void showAsked(
        QQuickItem* item, const QString& text, Kestry::ToolTips::Place place, QObject* colors);
    void changed(QQuickItem* item, const QString& text);
    void hideAsked();
};

} // namespace Kestry
