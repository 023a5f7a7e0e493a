import QtQuick
import QtTest
import KestryItems

ViewTest {
    id: test

    name: "TableEntrance"

    Component {
        id: entrance
        TableEntrance {
            width: 200
            height: 80
            context: "March"
            Text { objectName: "rows"; text: "Rows" }
        }
    }

    function make(properties) {
        return createTemporaryObject(entrance, test, properties ?? {});
    }

    function test_shows_bars_until_the_eye_has_followed() {
        const item = make();
        verify(item.drawsPlaceholder);
        verify(item.contentOpacity < 1);
        verify(!findChild(item, "rows").visible);
        tryCompare(item, "revealed", true, 400);
        verify(!item.drawsPlaceholder);
        tryCompare(item, "contentOpacity", 1, 400);
        verify(findChild(item, "rows").visible);
    }

    function test_waits_again_when_what_it_shows_changes() {
        const item = make();
        tryCompare(item, "contentOpacity", 1, 600);
        item.context = "April";
        verify(item.drawsPlaceholder);
        tryCompare(item, "revealed", true, 400);
    }

    function test_a_second_change_within_the_wait_cancels_the_first() {
        const item = make();
        wait(100);
        item.context = "April";
        wait(100); // past the end of the first wait
        verify(item.drawsPlaceholder);
        tryCompare(item, "revealed", true, 400);
    }

    function test_is_plain_from_the_start_when_it_is_not_enabled() {
        const item = make({isEnabled: false});
        verify(!item.drawsPlaceholder);
        verify(item.revealed);
        compare(item.contentOpacity, 1);
        item.context = "April";
        verify(!item.drawsPlaceholder);
    }

    function test_is_plain_with_reduced_motion() {
        const item = make({reducesMotion: true});
        verify(!item.drawsPlaceholder);
        compare(item.contentOpacity, 1);
    }

    function test_is_plain_at_once_when_motion_is_reduced_meanwhile() {
        const item = make();
        item.reducesMotion = true;
        verify(!item.drawsPlaceholder);
        compare(item.contentOpacity, 1);
    }
}
