import QtQuick
import KestryItems

/// Tells those who listen what has changed in the view, a moment after the last change. It is not
/// seen.
Item {
    id: root

    required property string message
    /// What is told; screen readers speak what comes to be shown.
    property string told: ""

    // What has no size is nowhere on the screen, and so is never told.
    width: 1
    height: 1
    visible: told.length > 0
    Accessible.role: Accessible.AlertMessage
    Accessible.name: root.told
    onMessageChanged: {
        root.told = "";
        pause.restart();
    }

    Timer {
        id: pause
        interval: Theme.tellingDelay
        onTriggered: root.told = root.message
    }
}
