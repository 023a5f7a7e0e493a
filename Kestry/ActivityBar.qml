import QtQuick
import Kestry
import KestryItems

/// One day of the activity chart, in a column as high as the chart.
Item {
    id: root

    required property int index
    required property real barHeight
    /// An ActivityBars.Look.
    required property int look
    /// The day and its time.
    required property string label
    /// How much of it has risen, from 0 to 1.
    required property real part
    readonly property bool revealed: root.part > 0

    Accessible.role: Accessible.StaticText
    Accessible.name: root.label
    Accessible.focusable: true

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        // On whole pixels, so that all stand on one line.
        height: Math.round(root.part * root.barHeight)
        radius: Theme.barRadius
        opacity: root.part
        color: root.look === ActivityBars.Later
               ? Qt.alpha(Theme.workspace.line, Theme.laterBarOpacity)
               : Qt.alpha(Theme.workspace.accent, root.look === ActivityBars.Today ? 1
                          : root.look === ActivityBars.Busy ? Theme.busyBarOpacity : Theme.idleBarOpacity)
    }
}
