#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include "AppState.h"
#include "Commander.h"
#include "MenuEntry.h"
#include "MenuWindow.h"
#include "SoftwareUpdater.h"
#include "TextForms.h"
#include "TimeStore.h"
#include "WindowKeys.h"

namespace Kestry {

/// The menus that views open, each below the item that asked for it.
class SessionMenus final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the menus.")
public:
    /// All but the words must outlive the menus.
    SessionMenus(Commander& commander, const KestryCore::TimeStore& store, AppState& state,
        SoftwareUpdater& updater, MenuWindow& window, KestryCore::MoneyText words);

    /// Opens the choice of what the next session is for.
    Q_INVOKABLE void openTarget(
        QQuickItem* item, Kestry::MenuController::Look look = MenuController::Panel);
    /// Opens what can be done with the title of the session in progress, from a panel. Does
    /// nothing without a session.
    Q_INVOKABLE void openTitle(QQuickItem* item);
    /// Opens the main menu, from the workspace window.
    Q_INVOKABLE void openMain(QQuickItem* item);

    /// Closes the menu that is open; does nothing without one.
    void close() { window_.close(); }
    [[nodiscard]] bool isOpen() const { return window_.isOpen(); }

signals:
    /// A menu came up, or has gone with what was chosen in it done. The number tells it from all
    /// others.
    void opened(quint64 menu);
    void closed(quint64 menu);
    void editTitleChosen();
    /// The workspace window is to do what it does at a key.
    void windowActionChosen(Kestry::WindowKeys::Command command);

private:
    [[nodiscard]] Menu titleMenu();

    Commander& commander_;
    const KestryCore::TimeStore& store_;
    AppState& state_;
    SoftwareUpdater& updater_;
    MenuWindow& window_;
    KestryCore::MoneyText words_;
};

} // namespace Kestry
