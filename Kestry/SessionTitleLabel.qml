import QtQuick
import Kestry
import KestryItems

/// The title as it stands, with the project after it. A title that does not fit is asked to be
/// shown whole while the pointer is on it.
Item {
    id: root

    required property SessionBridge session
    required property NotchSurface surface
    readonly property bool asksForPreview: visible && pointer.hovered && names.isFirstCut

    signal editAsked
    signal menuAsked

    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: "Session title: " + root.session.label
    Accessible.description: "Double-click or press Return to edit"
    Accessible.onPressAction: root.editAsked()
    Keys.onReturnPressed: root.editAsked()
    Keys.onEnterPressed: root.editAsked()
    Keys.onMenuPressed: root.menuAsked()
    onAsksForPreviewChanged: {
        if (asksForPreview) {
            root.surface.previewTitle(root.session.label);
        } else {
            root.surface.dismissPreview();
        }
    }

    Rectangle {
        anchors.fill: parent
        anchors.leftMargin: -Theme.tightSpacing
        radius: Theme.controlRadius
        color: Theme.dark.highlight
        visible: root.activeFocus
    }

    TwoTexts {
        id: names
        objectName: "names"
        anchors.fill: parent
        first: root.session.label
        second: root.session.title.length > 0 ? root.session.projectName : ""
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onDoubleClicked: event => {
            if (event.button === Qt.LeftButton) {
                root.editAsked();
            }
        }
        onPressed: event => {
            if (event.button === Qt.RightButton) {
                root.menuAsked();
            }
        }
    }

    HoverHandler { id: pointer }
}
