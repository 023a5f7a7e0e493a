#pragma once

#include <QQmlEngine>

#include <memory>
#include <string>

#include "AppDelegate.h"
#include "AppearanceBridge.h"
#include "AppearanceSettings.h"
#include "DesktopPreferences.h"
#include "DesktopSettings.h"
#include "EditorForm.h"
#include "NotchWindows.h"
#include "SessionBridge.h"
#include "SessionMenus.h"
#include "StatusItem.h"
#include "TimeZoneWatch.h"
#include "TrayIcon.h"
#include "WorkspaceBridge.h"
#include "WorkspaceWindow.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// Everything that the program shows, put together: one engine for all views, the panels, the
/// workspace window and the status item.
class Surfaces {
public:
    /// Makes the panels, hidden. The delegate and the platform must outlive the surfaces.
    Surfaces(AppDelegate& delegate, AppDelegate::Platform platform);

    [[nodiscard]] NotchPanels& panels() { return *panels_; }

    /// Brings up the status item if the user wants it, and what else can wait until the strip
    /// stands on the screen.
    void showStatusItem();

private:
    void loadWorkspace(QQuickView& window);

    AppDelegate& delegate_;
    AppDelegate::Platform platform_;
    DesktopPreferences preferences_;
    DesktopSettings settings_;
    AppearanceSettings appearance_;
    AppearanceBridge appearanceBridge_;
    std::string locale_;
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar_;
    TimeZoneWatch zoneWatch_;
    KestryCore::MoneyText words_;
    SessionBridge session_;
    SessionMenus menus_;
    WorkspaceBridge workspaceBridge_;
    EditorForm form_;
    QQmlEngine engine_;
    std::unique_ptr<NotchWindows> panels_;
    WorkspaceWindow workspace_;
    std::unique_ptr<TrayIcon> tray_;
    std::unique_ptr<StatusItem> status_;
};

} // namespace Kestry
