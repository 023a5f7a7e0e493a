import QtQuick
import Kestry
import KestryItems

/// The bubble with a title too long for its field. One too long for the screen scrolls.
Item {
    id: root

    required property NotchSurface surface

    implicitHeight: title.implicitHeight + 2 * Theme.previewPadding

    Rectangle {
        id: bubble
        anchors.fill: parent
        radius: root.surface.detailRadius
        color: Qt.alpha(Theme.dark.background, root.surface.isComposited ? Theme.previewOpacity : 1)
        border.color: Theme.dark.outline

        NumberAnimation {
            id: fade
            target: bubble
            property: "opacity"
            to: 1
            easing.type: Easing.InOutQuad
        }

        Flickable {
            id: scroller
            anchors.fill: parent
            anchors.margins: bubble.border.width
            contentHeight: root.implicitHeight - 2 * bubble.border.width
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height
            clip: true

            Text {
                id: title
                x: Theme.previewPadding - bubble.border.width
                y: x
                width: root.width - 2 * Theme.previewPadding
                text: root.surface.previewedTitle
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: Theme.dark.primaryText
                font.pixelSize: Theme.panelBodyFont
                font.weight: Font.Medium
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }

        ScrollMark {
            anchors.rightMargin: Theme.tightSpacing
            y: Theme.tightSpacing
            height: parent.height - 2 * Theme.tightSpacing
            view: scroller
            color: Theme.dark.controlLine
        }
    }

    Connections {
        target: root.surface
        function onPreviewFadeAsked(fromOpacity: real, milliseconds: int): void {
            scroller.contentY = 0;
            fade.stop();
            bubble.opacity = milliseconds > 0 ? fromOpacity : 1;
            if (milliseconds > 0) {
                fade.duration = milliseconds;
                fade.start();
            }
        }
    }
}
