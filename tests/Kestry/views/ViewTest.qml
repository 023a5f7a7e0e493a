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

    /// The visible texts of an item and below it that are wider than their room, or reach beyond the
    /// left or the right edge of a page.
    function overflowing(item, page): var {
        const found = [];
        if (!item.visible) {
            return found;
        }
        if (item instanceof Text && item.text.length > 0) {
            const left = item.mapToItem(page, 0, 0).x;
            if (item.contentWidth > item.width + 1 || left < 0 || left + item.width > page.width + 1) {
                found.push(`${item.text}: ${item.contentWidth} in ${item.width} at ${left}`);
            }
        }
        for (let index = 0; index < item.children.length; ++index) {
            found.push(...overflowing(item.children[index], page));
        }
        return found;
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
