#pragma once

#include <QColor>
#include <QObject>
#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

#include <vector>

#include "AppearanceSettings.h"
#include "DesktopPreferences.h"

namespace Kestry {

/// The theme, the accent and the preferences for motion and transparency, as properties for views.
class AppearanceBridge final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Appearance)
    QML_SINGLETON
    /// Of the workspace window; the panels are always dark.
    Q_PROPERTY(bool isDark READ isDark NOTIFY changed)
    Q_PROPERTY(QColor lightAccent READ lightAccent NOTIFY changed)
    Q_PROPERTY(QColor darkAccent READ darkAccent NOTIFY changed)
    /// Text on a fill of the accent.
    Q_PROPERTY(QColor onLightAccent READ onLightAccent NOTIFY changed)
    Q_PROPERTY(QColor onDarkAccent READ onDarkAccent NOTIFY changed)
    Q_PROPERTY(bool reducesMotion READ reducesMotion NOTIFY changed)
    /// How much larger texts are than they are by default.
    Q_PROPERTY(double textScale READ textScale NOTIFY changed)
    Q_PROPERTY(bool reducesTransparency READ reducesTransparency NOTIFY changed)
    Q_PROPERTY(bool increasesContrast READ increasesContrast NOTIFY changed)

public:
    /// Both must outlive the bridge.
    AppearanceBridge(const AppearanceSettings& settings, const DesktopPreferences& preferences);

    /// Makes this the object that views of an engine see. Call it before the first view is loaded;
    /// the bridge must outlive the engine.
    void serve(QQmlEngine& engine);
    /// For the engine alone.
    static AppearanceBridge* create(QQmlEngine* engine, QJSEngine* scripts);

    [[nodiscard]] bool isDark() const { return *settings_.mode() == AppearanceMode::dark; }
    [[nodiscard]] QColor lightAccent() const;
    [[nodiscard]] QColor darkAccent() const;
    [[nodiscard]] QColor onLightAccent() const;
    [[nodiscard]] QColor onDarkAccent() const;
    [[nodiscard]] bool reducesMotion() const { return *preferences_.reducesMotion(); }
    [[nodiscard]] double textScale() const { return *preferences_.textScale(); }
    [[nodiscard]] bool reducesTransparency() const { return *preferences_.reducesTransparency(); }
    [[nodiscard]] bool increasesContrast() const { return *preferences_.increasesContrast(); }

    /// The colour nearest to `color`, on the way to `target`, that can be read as text on each of
    /// the surfaces, which are opaque colours.
    Q_INVOKABLE [[nodiscard]] static QColor legible(
        const QColor& color, const QColor& target, const QVariantList& surfaces);
    /// The same for a control, which can be found with less contrast.
    Q_INVOKABLE [[nodiscard]] static QColor distinct(
        const QColor& color, const QColor& target, const QVariantList& surfaces);

signals:
    void changed();

private:
    const AppearanceSettings& settings_;
    const DesktopPreferences& preferences_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
