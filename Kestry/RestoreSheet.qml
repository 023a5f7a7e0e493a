import QtQuick
import Kestry

/// Asks before the backup takes the place of the ledger, in a view of its own each time.
FocusScope {
    id: root

    required property SettingsBridge settings

    visible: root.settings.isAskingToRestore
    focus: visible && enabled // again, once what lay over it has gone

    Loader {
        id: question
        anchors.fill: parent
        active: root.visible
        focus: true
        source: "RestoreQuestion.qml"
        onLoaded: (item as RestoreQuestion).forceActiveFocus()
    }

    Connections {
        target: question.item
        function onConfirmed(): void { root.settings.confirmRestore(); }
        function onCancelled(): void { root.settings.cancelRestore(); }
    }
}
