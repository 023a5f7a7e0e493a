pragma ComponentBehavior: Bound

import QtQuick
import KestryItems

/// The properties of two versions side by side. Those that differ have a mark and are bold.
Column {
    id: root

    /// Each with `name`, `local`, `remote` and `differs`.
    required property var fields
    readonly property real nameWidth: Math.min(Theme.comparedNameWidth, width / 4)
    readonly property real valueWidth: (width - nameWidth - Theme.comparedMarkWidth - 2 * Theme.columnGap) / 2

    component Cell: Text {
        property bool isStrong: false
        textFormat: Text.PlainText
        color: isStrong ? Theme.workspace.primaryText : Theme.workspace.secondaryText
        font.pixelSize: Theme.bodyFont
        font.weight: isStrong ? Font.DemiBold : Font.Normal
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }

    component Line: Item {
        id: line
        property string name
        property string local
        property string remote
        property bool differs: false

        width: root.width
        implicitHeight: Math.max(title.height, here.height, there.height) + 2 * Theme.tightSpacing

        Rectangle {
            width: parent.width
            height: 1
            color: Theme.workspace.outline
        }

        Cell {
            y: Theme.tightSpacing
            width: Theme.comparedMarkWidth
            text: "≠"
            isStrong: true
            visible: line.differs
        }

        Cell {
            id: title
            x: Theme.comparedMarkWidth
            y: Theme.tightSpacing
            width: root.nameWidth
            text: line.name
        }

        Cell {
            id: here
            x: title.x + title.width + Theme.columnGap
            y: Theme.tightSpacing
            width: root.valueWidth
            text: line.local
            isStrong: line.differs
        }

        Cell {
            id: there
            x: here.x + here.width + Theme.columnGap
            y: Theme.tightSpacing
            width: root.valueWidth
            text: line.remote
            isStrong: line.differs
        }
    }

    Line {
        local: "On this Mac"
        remote: "iCloud"
    }

    Repeater {
        model: root.fields
        delegate: Line {
            required property var modelData
            name: modelData.name
            local: modelData.local
            remote: modelData.remote
            differs: modelData.differs
            Accessible.role: Accessible.StaticText
            Accessible.name: modelData.name + (modelData.differs ? ", differs" : "")
                + ", on this Mac " + modelData.local + ", iCloud " + modelData.remote
        }
    }
}
