import QtQuick
import QtTest
import KestryTest

/// A test of views: on a stage that shows what is made on it, in a new world each time.
TestCase {
    id: test

    property ViewWorld world
    readonly property Component worlds: Component { ViewWorld { } }

    /// Views go after a test, so the world that they are of goes before the next one.
    function renewWorld(): void {
        world?.destroy();
        world = worlds.createObject(null);
    }

    function restPointer(): void {
        mouseMove(test, width - 2, height - 2);
    }

    visible: true
    when: windowShown
    width: 400
    height: 140

    Rectangle {
        anchors.fill: parent
        z: -1
        color: "black"
    }
}
