pragma ComponentBehavior: Bound

import QtQuick
import Kestry
import KestryItems

/// All keys of the window, over it.
FocusScope {
    id: root

    signal closed

    focus: visible
    Accessible.role: Accessible.Dialog
    Accessible.name: "Keyboard shortcuts"
    Keys.onEscapePressed: root.closed()

    SheetShade {
        anchors.fill: parent
    }

    SheetFrame {
        id: frame
        anchors.centerIn: parent
        width: Math.min(Theme.sheetWidth, root.width - 2 * Theme.pageMargin)
        contentHeight: Math.min(heading.height + Theme.fieldSpacing + groups.height,
            root.height - 2 * Theme.sheetMargin - 2 * Theme.sheetPadding)

        SheetHeading {
            id: heading
            width: frame.contentWidth
            title: "Keyboard shortcuts"
            line: "Keys of this window"
            onClosed: root.closed()
        }

        ScrollingPage {
            id: scroller
            anchors.top: heading.bottom
            anchors.topMargin: Theme.fieldSpacing
            anchors.bottom: parent.bottom
            width: frame.contentWidth
            contentHeight: groups.height
            focus: true

            Column {
                id: groups
                width: scroller.width - 2 * Theme.controlPadding
                spacing: Theme.fieldSpacing

                Repeater {
                    model: WindowKeys.groups
                    delegate: KeyGroup {
                        required property var modelData
                        width: groups.width
                        title: modelData.title
                        rows: modelData.rows
                    }
                }
            }
        }
    }
}
