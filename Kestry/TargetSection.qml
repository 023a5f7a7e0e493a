pragma ComponentBehavior: Bound

import QtQuick
import Kestry

/// A caption over rows to choose from, of which a few show at a time.
Column {
    id: root

    required property string caption
    required property TargetListModel rows

    signal chosen(string recordID)

    Text {
        height: Theme.captionHeight
        leftPadding: Theme.controlPadding
        text: root.caption
        color: Theme.secondaryText
        font.pixelSize: Theme.captionFont
        verticalAlignment: Text.AlignVCenter
    }

    ListView {
        id: list
        width: root.width
        height: Math.min(count, Theme.visibleRows) * Theme.rowHeight
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: root.rows
        delegate: TargetRowView {
            required property string recordID
            required property string color

            width: list.width
            dotColor: color.length > 0 ? color : "transparent"
            onTriggered: root.chosen(recordID)
        }
    }
}
