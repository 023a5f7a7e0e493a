#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <string>
#include <vector>

#include "AppState.h"
#include "AppearanceForm.h"
#include "CloudSyncBridge.h"
#include "DesktopChoices.h"
#include "FolderOpener.h"
#include "SoftwareUpdateBridge.h"
#include "TimeStore.h"

namespace Kestry {

/// Gives the settings page its values, as they are now, and its calls. It owns no preference.
class SettingsBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one bridge.")
    Q_PROPERTY(bool notchEnabled READ notchEnabled NOTIFY changed)
    Q_PROPERTY(bool menuBarEnabled READ menuBarEnabled NOTIFY changed)
    Q_PROPERTY(QString exportDetail READ exportDetail NOTIFY changed)
    Q_PROPERTY(bool canRestore READ canRestore NOTIFY changed)
    Q_PROPERTY(bool isAskingToRestore READ isAskingToRestore NOTIFY changed)
    Q_PROPERTY(Kestry::AppearanceForm* appearance READ appearance CONSTANT)
    Q_PROPERTY(Kestry::DesktopChoices* desktop READ desktop CONSTANT)
    Q_PROPERTY(Kestry::CloudSyncBridge* cloud READ cloud CONSTANT)
    Q_PROPERTY(Kestry::SoftwareUpdateBridge* updates READ updates CONSTANT)
    Q_PROPERTY(bool isShowingKeys READ isShowingKeys WRITE setShowingKeys NOTIFY changed)
    Q_PROPERTY(QString versionLine READ versionLine CONSTANT)

public:
    /// All of it must outlive the bridge.
    struct World {
        KestryCore::TimeStore& store;
        AppState& state;
        FolderOpener& folders;
        AppearanceForm& appearance;
        DesktopChoices& desktop;
        CloudSyncBridge& cloud;
        SoftwareUpdateBridge& updates;
        /// The version of the program; empty for a build without one.
        std::function<std::string()> version;
    };

    explicit SettingsBridge(World world);

    [[nodiscard]] bool notchEnabled() const { return *world_.state.notchEnabled(); }
    [[nodiscard]] bool menuBarEnabled() const { return *world_.state.menuBarEnabled(); }
    /// How many sessions an export has.
    [[nodiscard]] QString exportDetail() const;
    /// Whether there is a backup to restore.
    [[nodiscard]] bool canRestore() const { return canRestore_; }
    /// Whether the user is asked before the backup is restored.
    [[nodiscard]] bool isAskingToRestore() const { return isAskingToRestore_; }
    [[nodiscard]] AppearanceForm* appearance() const { return &world_.appearance; }
    [[nodiscard]] DesktopChoices* desktop() const { return &world_.desktop; }
    [[nodiscard]] CloudSyncBridge* cloud() const { return &world_.cloud; }
    [[nodiscard]] SoftwareUpdateBridge* updates() const { return &world_.updates; }
    /// Whether the sheet of keys lies over the window.
    [[nodiscard]] bool isShowingKeys() const { return isShowingKeys_; }
    void setShowingKeys(bool isShowing);
    [[nodiscard]] QString versionLine() const;

    /// Shows the strip or takes it away, and stores the choice.
    Q_INVOKABLE void toggleNotch();
    /// Shows the item in the status area or takes it away, and stores the choice.
    Q_INVOKABLE void toggleMenuBar();
    /// Opens the data directory in the desktop's file browser. Makes no directory: where there is
    /// none, and where nothing can open it, the store's `errorMessage` says so.
    Q_INVOKABLE void openFolder();
    /// Asks first. Does nothing without a backup.
    Q_INVOKABLE void askToRestore();
    Q_INVOKABLE void cancelRestore();
    /// Restores the backup. A failure is published as the store's `errorMessage`.
    Q_INVOKABLE void confirmRestore();

signals:
    void changed();

private:
    void refresh();
    void setAskingToRestore(bool isAsking);

    World world_;
    bool canRestore_ = false;
    bool isAskingToRestore_ = false;
    bool isShowingKeys_ = false;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
