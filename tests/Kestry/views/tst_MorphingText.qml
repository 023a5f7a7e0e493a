import QtQuick
import QtTest
import KestryItems

ViewTest {
    id: test

    name: "MorphingText"

    Component {
        id: morphing
        MorphingText { text: "00:00:09" }
    }

    function make(properties) {
        const item = createTemporaryObject(morphing, test, properties ?? {});
        waitForRendering(item);
        return item;
    }

    function test_rolls_for_a_quarter_of_a_second() {
        const item = make();
        item.text = "00:00:10";
        tryCompare(item, "isMoving", true);
        tryCompare(item, "isMoving", false, 600);
    }

    function test_does_not_move_with_reduced_motion() {
        const item = make({reducesMotion: true});
        item.text = "00:00:10";
        waitForRendering(item);
        verify(!item.isMoving);
    }

    function test_does_not_move_at_first() {
        verify(!make().isMoving);
    }

    function test_does_not_move_where_nobody_sees_it() {
        const item = make({visible: false});
        item.text = "00:00:10";
        wait(20);
        verify(!item.isMoving);
        item.visible = true;
        wait(20);
        verify(!item.isMoving);
    }

    function test_stops_at_once_when_motion_is_reduced() {
        const item = make();
        item.text = "00:00:10";
        tryCompare(item, "isMoving", true);
        item.reducesMotion = true;
        verify(!item.isMoving);
    }

    function test_keeps_its_width_while_digits_change() {
        const item = make({text: "00:00:00"});
        const width = item.implicitWidth;
        item.text = "11:11:11";
        compare(item.implicitWidth, width);
        item.text = "111:11:11";
        tryVerify(() => item.implicitWidth > width);
    }

    function test_changes_pixels_of_the_digits_that_change_alone() {
        const item = make({text: "10:00:08"});
        wait(50); // drawn for sure
        const before = grabImage(item);
        item.text = "10:00:09";
        tryCompare(item, "isMoving", true);
        wait(100);
        const during = grabImage(item);
        const half = Math.floor(item.implicitWidth / 2);
        let changedLeft = 0, changedRight = 0;
        for (let x = 0; x < item.implicitWidth; ++x) {
            for (let y = 0; y < item.implicitHeight; ++y) {
                if (before.pixel(x, y) !== during.pixel(x, y)) {
                    x < half ? ++changedLeft : ++changedRight;
                }
            }
        }
        compare(changedLeft, 0);
        verify(changedRight > 0);
    }

    function test_a_dash_takes_the_place_of_a_number_by_fading() {
        const item = make();
        item.text = "—";
        tryCompare(item, "isMoving", true);
        tryCompare(item, "isMoving", false, 600);
        compare(item.text, "—");
    }

    function test_a_value_of_its_own_does_not_move_the_same_text() {
        const item = make({text: "$1", value: 1.2});
        item.value = 1.3;
        wait(100); // a first frame, and no second one
        verify(!item.isMoving);
    }

    function countLit(image, item, isLit) {
        let lit = 0;
        for (let x = 0; x < item.implicitWidth / 2; ++x) {
            for (let y = 0; y < item.implicitHeight; ++y) {
                lit += isLit(x, y) ? 1 : 0;
            }
        }
        return lit;
    }

    function test_a_color_that_changes_with_a_digit_reaches_all_of_it() {
        const item = make({text: "10:00:08", color: "#ff0000"});
        wait(50); // drawn for sure
        item.text = "10:00:09";
        wait(60);
        item.color = "#00ff00";
        tryCompare(item, "isMoving", false, 600);
        wait(50);
        const image = grabImage(item);
        verify(countLit(image, item, (x, y) => image.green(x, y) > 100) > 10);
        compare(countLit(image, item, (x, y) => image.red(x, y) > 100), 0);
    }

    function test_a_number_that_grows_longer_is_drawn_whole() {
        const item = make({text: "99"});
        wait(50); // drawn for sure
        item.text = "100";
        tryCompare(item, "isMoving", true);
        tryCompare(item, "isMoving", false, 600);
        wait(50);
        const image = grabImage(item);
        verify(countLit(image, item, (x, y) => image.red(x, y) > 100) > 5);
    }

    function test_the_first_picture_of_a_motion_comes_at_once() {
        const item = make({text: "10:00:08", frameInterval: 400});
        wait(50); // drawn for sure
        const before = grabImage(item);
        item.text = "10:00:09";
        waitForRendering(item, 200);
        verify(item.isMoving);
        verify(!grabImage(item).equals(before));
    }
}
