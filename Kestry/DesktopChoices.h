#pragma once

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <string>
#include <vector>

#include "AppState.h"
#include "Autostart.h"
#include "MenuEntry.h"
#include "TimeStore.h"

class QQuickItem;

namespace Kestry {

/// A screen that is there, as people know it.
struct KnownScreen {
    std::string name;
    std::string model; ///< Empty where the screen does not tell.
};

/// How the program stands on this desktop: whether it starts with it, and where its panels are.
class DesktopChoices final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one object.")
    Q_PROPERTY(bool startsWithDesktop READ startsWithDesktop NOTIFY changed)
    Q_PROPERTY(QString screen READ screen NOTIFY changed)
    Q_PROPERTY(QString screenDetail READ screenDetail NOTIFY changed)
    Q_PROPERTY(QStringList sides READ sides CONSTANT)
    Q_PROPERTY(int side READ side NOTIFY changed)

public:
    /// All of it must outlive the object.
    struct World {
        AppState& state;
        KestryCore::TimeStore& store;
        Autostart& autostart;
        std::function<std::vector<KnownScreen>()> screens;
        /// Whether the desktop tells on which screen the pointer is.
        std::function<bool()> knowsPointer;
        std::function<void(Menu menu, const QString& name, const QQuickItem& item)> openMenu;
    };

    explicit DesktopChoices(World world);

    [[nodiscard]] bool startsWithDesktop() const { return world_.autostart.isOn(); }
    /// The screen that is wanted, in words.
    [[nodiscard]] QString screen() const;
    /// What that means while the screen is not there.
    [[nodiscard]] QString screenDetail() const;
    [[nodiscard]] static QStringList sides();
    [[nodiscard]] int side() const { return static_cast<int>(world_.state.panelPlace()->side); }

    /// Follows what is switched outside of the program from now on.
    Q_INVOKABLE void open();
    /// A failure is published as the store's `errorMessage`.
    Q_INVOKABLE void toggleAutostart();
    /// Opens the menu of screens below an item.
    Q_INVOKABLE void openScreens(QQuickItem* item);
    /// Does nothing for a number that is none of a side.
    Q_INVOKABLE void chooseSide(int side);
    /// A screen has come or gone.
    void screensChanged() { emit changed(); }

signals:
    void changed();

private:
    void chooseScreen(PanelPlace::Screen screen, const std::string& name = {});
    [[nodiscard]] MenuEntry entry(
        std::string text, PanelPlace::Screen screen, const std::string& name = {});
    [[nodiscard]] bool isThere(const std::string& name) const;

    World world_;
    bool isOpen_ = false;
    KestryCore::Subscription placing_;
};

} // namespace Kestry
