#pragma once

#include <QMenu>
#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include "AppState.h"
#include "AppearanceSettings.h"
#include "Commander.h"
#include "MenuEntry.h"
#include "MenuPalette.h"
#include "MenuStyle.h"
#include "TextForms.h"
#include "TimeStore.h"

namespace Kestry {

/// The menus that views open, each in a window of its own, beside the item that asked. Whoever
/// must not fold away under an open menu follows `opened` and `closed`.
class SessionMenus final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the menus.")
public:
    /// All but the words must outlive the menus.
    SessionMenus(Commander& commander, const KestryCore::TimeStore& store, AppState& state,
        const AppearanceSettings& appearance, KestryCore::MoneyText words);

    /// What the next session is for; from a panel, which is always dark.
    Q_INVOKABLE void openTarget(QQuickItem* anchor);
    /// What can be done with the title of the session in progress; from a panel too.
    Q_INVOKABLE void openTitle(QQuickItem* anchor);
    /// The main menu, in the window's theme.
    Q_INVOKABLE void openMain(QQuickItem* anchor);

    /// Closes the menu that is open, if one is.
    void close();

signals:
    void opened(quint64 menu);
    void closed(quint64 menu);
    void editTitleChosen();

private:
    void open(const Menu& entries, QQuickItem* anchor, MenuTheme theme);
    [[nodiscard]] Menu titleMenu();

    Commander& commander_;
    const KestryCore::TimeStore& store_;
    AppState& state_;
    const AppearanceSettings& appearance_;
    KestryCore::MoneyText words_;
    MenuStyle style_;
    std::unique_ptr<QMenu> menu_; ///< The one that is open, or was last.
};

} // namespace Kestry
