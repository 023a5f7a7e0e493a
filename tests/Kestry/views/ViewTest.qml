import QtQuick
import QtTest
import KestryTest

/// A test of views: on a stage that shows what is made on it, in a new world each time.
TestCase {
    id: test

    property ViewWorld world
    readonly property Component worlds: Component { ViewWorld { } }

    readonly property Component worldsOnDisk: Component { DiskWorld { } }

    function renewWorldOnDisk(): void {
        world?.destroy();
        world = worldsOnDisk.createObject(null);
    }

    /// Views go after a test, so the world that they are of goes before the next one.
    function renewWorld(): void {
        world?.destroy();
        world = worlds.createObject(null);
    }

    /// The text of an item, or below it, that has these words.
    function textOf(item, words) {
        if (item instanceof Text && item.text === words) {
            return item;
        }
        for (let index = 0; index < item.children.length; ++index) {
            const found = textOf(item.children[index], words);
            if (found) {
                return found;
            }
        }
        return null;
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
