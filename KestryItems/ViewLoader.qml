import QtQuick

/// Makes a view while it is wanted, a new one each time. Its properties are given to it for good.
Loader {
    id: root

    required property bool isWanted
    /// Its file, resolved where it is named.
    required property url view
    property var properties: ({})
    property bool isComplete: false

    function follow(): void {
        // Set anew each time: a loader forgets the properties once it has made the view.
        if (root.isWanted) {
            root.setSource(root.view, root.properties);
        } else {
            root.source = "";
        }
    }

    onIsWantedChanged: root.follow()
    // Until it is complete nothing is made. What is set by then counts, in whichever order, so that
    // a view is not made twice.
    onViewChanged: if (!isComplete) root.follow()
    onPropertiesChanged: if (!isComplete) root.follow()
    Component.onCompleted: isComplete = true
}
