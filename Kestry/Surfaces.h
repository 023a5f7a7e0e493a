#pragma once

#include <QQmlEngine>

#include <memory>
#include <string>

#include "AppDelegate.h"
#include "AppearanceBridge.h"
#include "AppearanceForm.h"
#include "AppearanceSettings.h"
#include "AutostartChoice.h"
#include "BackgroundWork.h"
#include "ClientDashboardBridge.h"
#include "ClockWatch.h"
#include "CloudSyncBridge.h"
#include "DesktopChoices.h"
#include "DesktopFolders.h"
#include "DesktopPreferences.h"
#include "DesktopSettings.h"
#include "EditorForms.h"
#include "InterfaceFont.h"
#include "MenuWindow.h"
#include "NotchWindows.h"
#include "OverviewBridge.h"
#include "PanelStage.h"
#include "PathForm.h"
#include "PatientFiles.h"
#include "PortalFileChooser.h"
#include "SavingSign.h"
#include "SessionBridge.h"
#include "SessionDeletion.h"
#include "SessionExport.h"
#include "SessionMenus.h"
#include "SessionsBridge.h"
#include "SettingsBridge.h"
#include "SidebarSession.h"
#include "SoftwareUpdateBridge.h"
#include "StatusItem.h"
#include "TimeZoneWatch.h"
#include "TipWindow.h"
#include "ToolTips.h"
#include "TrayIcon.h"
#include "WorkspaceBridge.h"
#include "WorkspaceWindow.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// Creates everything that the program shows and connects it: one QML engine for all views, the
/// panels, the workspace window and the status item.
class Surfaces {
public:
    /// Creates the panels, hidden. All of it must outlive the surfaces. `files` are those of the
    /// platform, which tell when the disk is slow.
    Surfaces(AppDelegate& delegate, AppDelegate::Platform platform, PatientFiles& files,
        CloudAccount& account);
    Surfaces(const Surfaces&) = delete;
    Surfaces& operator=(const Surfaces&) = delete;
    ~Surfaces();

    [[nodiscard]] NotchPanels& panels() { return *panels_; }

    /// Creates the status item if it is switched on. Called after the strip is on the screen, so
    /// that the strip does not wait for it.
    void showStatusItem();
    /// Reads what the first view with texts and the workspace window would wait for.
    void prepareWorkspace();

private:
    [[nodiscard]] EditorWorld editorWorld();
    [[nodiscard]] SessionList::World listWorld();
    void loadWorkspace(QQuickView& window);

    AppDelegate& delegate_;
    AppDelegate::Platform platform_;
    PatientFiles& files_;
    DesktopPreferences preferences_;
    DesktopSettings settings_;
    InterfaceFont font_;
    AppearanceSettings appearance_;
    AppearanceBridge appearanceBridge_;
    AppearanceForm appearanceForm_;
    std::string locale_;
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar_;
    TimeZoneWatch zoneWatch_;
    Today today_;
    ClockWatch clockWatch_;
    KestryCore::MoneyText words_;
    ClientLogos logos_;
    SessionBridge session_;
    SidebarSession sidebarSession_;
    WorkspaceBridge workspaceBridge_;
    ToolTips toolTips_{nullptr};
    std::unique_ptr<PanelStage> stage_;
    QQmlEngine engine_;
    MenuWindow menuWindow_;
    TipWindow tipWindow_;
    SessionMenus menus_;
    SessionDeletion deletion_;
    SessionsBridge sessions_;
    OverviewBridge overview_;
    ClientDashboardBridge dashboard_;
    PortalFileChooser portalChooser_;
    PathForm fileChooser_{portalChooser_};
    SessionExport export_;
    DesktopFolders folders_;
    std::unique_ptr<Autostart> autostart_;
    DesktopChoices desktopChoices_;
    CloudSyncBridge cloudSync_;
    SoftwareUpdateBridge updates_;
    SettingsBridge settingsBridge_;
    BackgroundWork background_;
    EditorForms forms_;
    std::unique_ptr<NotchWindows> panels_;
    SavingSign saving_;
    WorkspaceWindow workspace_;
    std::unique_ptr<TrayIcon> tray_;
    std::unique_ptr<StatusItem> status_;
};

} // namespace Kestry
