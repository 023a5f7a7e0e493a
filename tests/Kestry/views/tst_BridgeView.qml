import QtQuick
import QtTest
import Kestry

ViewTest {
    id: test

    name: "BridgeView"

    Component { id: strips; BridgeView { width: 182; height: 34 } }

    function init() {
        renewWorld();
        world.addClient("Aster");
    }

    function make() {
        const strip = createTemporaryObject(strips, test,
            {session: world.session, surface: world.surface});
        restPointer();
        waitForRendering(strip);
        world.clearReports();
        return strip;
    }

    function elapsed(strip) { return findChild(strip, "elapsed").itemAt(0); }
    function layers(strip) { return [findChild(strip, "stateLayer"), findChild(strip, "actionLayer")]; }

    function test_pressing_it_opens_the_application() {
        const strip = make();
        mouseClick(strip);
        compare(world.reports, ["openApp"]);
        compare([strip.label, strip.tip], ["Open Kestry", "Open Kestry"]);
    }

    function test_it_is_marked_and_smaller_while_it_is_pressed() {
        const strip = make();
        const glyph = findChild(strip, "glyph");
        mousePress(strip);
        verify(findChild(strip, "overlay").visible);
        fuzzyCompare(findChild(strip, "overlay").color.a, 0.08, 0.005);
        tryCompare(glyph, "scale", 0.96, 1000);
        mouseRelease(strip);
        verify(!findChild(strip, "overlay").visible);
        tryCompare(glyph, "scale", 1, 1000);
    }

    function test_with_reduced_motion_a_press_makes_nothing_smaller() {
        world.reduceMotion(true);
        const strip = make();
        mousePress(strip);
        compare(findChild(strip, "glyph").scale, 1);
        mouseRelease(strip);
    }

    function test_the_glyph_stands_in_the_right_hand_area() {
        const glyph = findChild(make(), "glyph");
        compare([glyph.x, glyph.width, glyph.height], [112, 70, 18]);
    }

    function test_pointing_at_it_swaps_the_layers_by_opacity_and_scale() {
        const strip = make();
        const [state, action] = layers(strip);
        compare([state.opacity, state.scale, action.opacity, action.scale], [1, 1, 0, 0.25]);
        mouseMove(strip);
        tryCompare(action, "opacity", 1, 600);
        tryCompare(action, "scale", 1, 600);
        compare([state.opacity, state.scale], [0, 0.25]);
    }

    function test_pointing_at_the_panel_below_swaps_nothing() {
        const strip = make();
        const [state, action] = layers(strip);
        world.pointAtPanels(true);
        wait(300);
        compare([state.opacity, action.opacity], [1, 0]);
    }

    function test_with_reduced_motion_the_layers_swap_by_opacity_alone() {
        world.reduceMotion(true);
        const strip = make();
        const [state, action] = layers(strip);
        compare([state.scale, action.scale], [1, 1]);
        mouseMove(strip);
        compare([state.scale, action.scale], [1, 1]);
        tryCompare(action, "opacity", 1, 600);
        compare(state.opacity, 0);
    }

    function test_the_keyboard_on_it_counts_as_pointing_at_it() {
        const strip = make();
        strip.forceActiveFocus();
        tryCompare(layers(strip)[1], "opacity", 1, 600);
        keyClick(Qt.Key_Return);
        compare(world.reports, ["openApp"]);
    }

    function test_the_time_of_a_session_runs_once_a_second() {
        world.start("Drawing");
        const strip = make();
        world.advance(3.5);
        compare(elapsed(strip).text, "00:00:03");
        compare(elapsed(strip).font.pixelSize, 10);
    }

    function test_the_time_of_a_paused_session_stands() {
        world.start("Drawing");
        const strip = make();
        world.advance(3);
        world.session.pauseOrResume();
        world.advance(60);
        compare(elapsed(strip).text, "00:00:03");
    }

    function test_a_hundred_hours_are_not_cut() {
        world.start("Drawing");
        const strip = make();
        world.advance(100 * 3600);
        compare(elapsed(strip).text, "100:00:00");
        verify(elapsed(strip).width <= findChild(strip, "glyph").width);
    }

    function test_digits_change_without_rolling_with_reduced_motion() {
        world.start("Drawing");
        world.reduceMotion(true);
        const strip = make();
        world.advance(1);
        waitForRendering(strip);
        verify(!elapsed(strip).isMoving);
        compare(elapsed(strip).text, "00:00:01");
    }
}
