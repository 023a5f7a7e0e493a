import QtQuick
import Kestry
import KestryItems

/// The program's one ordinary window: the sidebar, and the page that it leads to.
Rectangle {
    id: root

    required property WorkspaceBridge workspace
    required property EditorForms forms
    required property SessionMenus menus
    required property SessionBridge session
    required property SidebarSession sidebarSession
    required property OverviewBridge overview
    required property SessionsBridge sessions
    required property ClientDashboardBridge dashboard
    required property SessionExport exporter
    required property SettingsBridge settings
    required property SessionDeletion deletion
    required property PathForm chooser
    required property SavingSign saving
    /// Whether something lies over the window that goes before news of an update.
    readonly property bool isBusy: alerts.visible || root.forms.current !== null
        || root.deletion.isAsking || root.settings.isAskingToRestore
        || root.settings.cloud.signIn.isOpen
        || root.settings.isShowingKeys || root.chooser.isOpen
    readonly property bool isCovered: root.isBusy || root.settings.updates.isOpen

    color: Theme.workspace.background

    WorkspaceShortcuts {
        id: shortcuts
        workspace: root.workspace
        isCovered: root.isCovered
        onMenuRequested: root.menus.openMain(menuPlace)
        onKeysRequested: root.settings.isShowingKeys = true
        onSearchRequested: {
            if (!page.search()) {
                root.workspace.go("Sessions");
                page.search();
            }
        }
    }

    Connections {
        target: root.menus
        function onWindowActionChosen(command: int): void { shortcuts.perform(command); }
    }

    FocusScope {
        id: content
        anchors.fill: parent
        focus: true
        enabled: !root.isCovered
        // What had the keyboard before a sheet was laid over it has it again.
        onEnabledChanged: if (enabled) forceActiveFocus()
        // Keys that nothing else takes scroll the page.
        Keys.onPressed: event => page.press(event)

        Sidebar {
            id: sidebar
            width: Theme.sidebarWidth
            height: parent.height
            workspace: root.workspace
            box: root.sidebarSession
            session: root.session
            onTargetAsked: item => root.menus.openTarget(item, MenuController.Window)
        }

        WorkspaceBanners {
            id: banners
            anchors.left: sidebar.right
            anchors.right: parent.right
            workspace: root.workspace
            onExited: menuButton.forceActiveFocus(Qt.TabFocusReason)
        }

        WorkspacePage {
            id: page
            anchors.left: sidebar.right
            anchors.right: parent.right
            anchors.top: banners.bottom
            anchors.bottom: parent.bottom
            destination: root.workspace.destination
            hasClient: root.workspace.hasSelectedClient
            overview: root.overview
            sessions: root.sessions
            dashboard: root.dashboard
            exporter: root.exporter
            settings: root.settings
        }

        // It scrolls away with the page, of which it would cover something.
        Item {
            anchors.fill: page
            clip: page.scrolled > 0

            Item {
                id: menuPlace
                anchors.right: parent.right
                anchors.rightMargin: Theme.pageMargin / 2
                anchors.top: parent.top
                anchors.topMargin: Theme.pageMargin + Theme.titleLineMiddle - height / 2
                width: menuButton.width
                height: menuButton.height

                IconButton {
                    id: menuButton
                    y: -page.scrolled
                    symbol: "line.3.horizontal"
                    label: "Main menu"
                    onTriggered: root.menus.openMain(menuPlace)
                    onActiveFocusChanged: if (activeFocus) page.scrollToTop()
                }
            }
        }
    }

    EditorSheet {
        anchors.fill: parent
        forms: root.forms
        visible: root.forms.current !== null && !alerts.visible
        enabled: !root.chooser.isOpen
    }

    DeleteSessionSheet {
        anchors.fill: parent
        deletion: root.deletion
        enabled: !alerts.visible && !root.chooser.isOpen
    }

    SignInSheet {
        anchors.fill: parent
        form: root.settings.cloud.signIn
        enabled: !alerts.visible
    }

    RestoreSheet {
        anchors.fill: parent
        settings: root.settings
        enabled: !alerts.visible
    }

    UpdateSheet {
        anchors.fill: parent
        updates: root.settings.updates
        mayShow: !root.isBusy
    }

    Loader {
        id: keys
        anchors.fill: parent
        active: root.settings.isShowingKeys
        enabled: !alerts.visible
        focus: active && enabled // again, once what lay over it has gone
        source: "KeysSheet.qml"
        onLoaded: (item as KeysSheet).forceActiveFocus()
    }

    Connections {
        target: keys.item
        function onClosed(): void { root.settings.isShowingKeys = false; }
    }

    Connections {
        target: root.forms
        // A key that is always there may open a form below the keys.
        function onChanged(): void {
            if (root.forms.current) {
                root.settings.isShowingKeys = false;
            }
        }
    }

    LostKeyboard {
        home: page
        around: content
    }

    PathSheet {
        anchors.fill: parent
        chooser: root.chooser
        enabled: !alerts.visible
    }

    WorkspaceAlerts {
        id: alerts
        anchors.fill: parent
        workspace: root.workspace
    }

    SavingNotice {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: Theme.sheetMargin
        saving: root.saving
    }
}
