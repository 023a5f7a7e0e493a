import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test

    name: "Controls"

    Component { id: primary; PrimaryButtonStyle { label: "Save" } }
    Component { id: quiet; QuietButtonStyle { label: "Cancel" } }
    Component { id: icon; IconButton { label: "Add client"; symbol: "plus" } }
    Component { id: cell; IconCell { label: "Pause session"; symbol: "pause.fill" } }
    Component { id: glass; KestryGlass { width: 100; height: 50 } }
    Component {
        id: shape
        RoundedShape { width: 40; height: 40; radius: 10; color: "#40ffffff"; outline: "#40ffffff" }
    }
    Component { id: mark; KestryMark { size: 36; color: "#ffffff" } }
    Component { id: symbol; Symbol { width: 24; height: 24; color: "#ffffff" } }
    Component { id: activity; KestryActivityMark { } }
    Component {
        id: loader
        ViewLoader {
            property int made: 0

            view: "qrc:/KestryItems/FontSamples.qml"
            onLoaded: ++made
        }
    }

    SignalSpy { id: triggered; signalName: "triggered" }

    function make(component, properties) {
        const item = createTemporaryObject(component, test, properties ?? {});
        triggered.target = item.triggered ? item : null;
        triggered.clear();
        restPointer();
        return item;
    }

    function litPixels(item) {
        const image = grabImage(item);
        let lit = 0;
        for (let x = 0; x < item.width; ++x) {
            for (let y = 0; y < item.height; ++y) {
                lit += image.red(x, y) > 128 ? 1 : 0;
            }
        }
        return lit;
    }

    function test_buttons_have_their_sizes_data() {
        return [{tag: "primary", component: primary, size: [72, 36]},
            {tag: "quiet", component: quiet, size: [72, 36]},
            {tag: "icon", component: icon, size: [36, 36]},
            {tag: "cell", component: cell, size: [28, 28]}];
    }

    function test_buttons_have_their_sizes(data) {
        const button = make(data.component);
        compare(button.height, data.size[1]);
        verify(button.width >= data.size[0]);
    }

    function test_buttons_fade_when_disabled_or_pressed_data() {
        return [{tag: "primary", component: primary, disabled: 0.5, pressed: 0.8},
            {tag: "quiet", component: quiet, disabled: 0.4, pressed: 0.6}];
    }

    function test_buttons_fade_when_disabled_or_pressed(data) {
        const button = make(data.component);
        mousePress(button);
        compare(button.opacity, data.pressed);
        mouseRelease(button);
        compare(button.opacity, 1);
        button.enabled = false;
        compare(button.opacity, data.disabled);
    }

    function test_a_long_label_makes_a_button_wider_by_its_padding() {
        const button = make(primary, {label: "Save the changes of this client"});
        verify(button.width > 72);
    }

    function test_pointer_keyboard_and_assistive_means_press_alike() {
        const button = make(icon);
        mouseClick(button);
        button.forceActiveFocus();
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Space);
        button.Accessible.pressAction();
        compare(triggered.count, 4);
        compare([button.Accessible.name, button.tip], ["Add client", "Add client"]);
    }

    function test_a_hidden_button_is_not_pressed_by_those_who_listen() {
        const button = make(icon, {visible: false});
        button.Accessible.pressAction();
        compare(triggered.count, 0);
    }

    function test_a_disabled_button_is_not_pressed() {
        const button = make(icon, {enabled: false});
        mouseClick(button);
        button.Accessible.pressAction();
        compare(triggered.count, 0);
    }

    function test_a_press_that_ends_elsewhere_does_nothing() {
        const button = make(icon);
        mousePress(button);
        mouseMove(button, 300, 10);
        mouseRelease(button, 300, 10);
        compare(triggered.count, 0);
    }

    function test_glass_is_a_plain_surface_with_reduced_transparency() {
        const item = make(glass, {tint: "#ff0000"});
        verify(findChild(item, "material").color.a < 1);
        verify(findChild(item, "tint").visible);
        fuzzyCompare(findChild(item, "tint").opacity, 0.12, 0.001);
        item.reducesTransparency = true;
        compare(findChild(item, "material").color, Theme.workspace.surface);
        verify(!findChild(item, "tint").visible);
    }

    function test_glass_answers_the_pointer_if_it_is_interactive() {
        const item = make(glass, {interactive: true});
        verify(!findChild(item, "highlight").visible);
        mouseMove(item, 20, 20);
        tryCompare(findChild(item, "highlight"), "visible", true);
    }

    function test_an_outline_lies_on_a_translucent_fill() {
        const item = make(shape);
        const image = grabImage(item);
        compare(image.red(20, 20), 64); // a quarter of white
        verify(image.red(20, 0) > 64);
        compare(image.red(0, 0), 0); // the corner is free
    }

    function test_the_mark_is_a_ring_of_ticks() {
        const item = make(mark);
        compare([item.implicitWidth, item.implicitHeight], [36, 36]);
        const image = grabImage(item);
        verify(image.red(18, 5) > 200); // the first tick is full
        verify(image.red(18, 18) < 10); // the middle is free
        const faint = image.red(Math.round(18 - 12.6 * Math.sin(Math.PI / 6)), 7); // the last is not
        verify(faint > 20 && faint < 120, faint);
    }

    function test_the_mark_turns_with_the_session_and_stands_while_it_is_paused() {
        renewWorld();
        world.addClient("Aster");
        const item = make(activity, {session: world.session});
        compare([item.size, item.angle, item.isTurning], [18, 0, false]);
        world.start("Drawing");
        verify(item.isTurning);
        world.advance(2);
        tryCompare(item, "angle", 90);
        world.session.pauseOrResume();
        verify(!item.isTurning);
        compare(item.angle, 90);
        item.reducesMotion = true;
        compare(item.angle, 0);
    }

    function test_every_symbol_is_drawn_data() {
        return ["play.fill", "pause.fill", "stop.fill", "plus", "arrow.up.right",
            "circle.dotted.circle", "square.grid.2x2", "clock", "square.stack.3d.up",
            "slider.horizontal.3", "laptopcomputer.and.iphone", "sparkle",
            "arrow.clockwise.circle", "checkmark", "paintpalette", "circle.lefthalf.filled",
            "xmark", "exclamationmark.triangle", "chevron.down"].map(name => ({tag: name}));
    }

    function test_every_symbol_is_drawn(data) {
        const item = make(symbol, {name: data.tag});
        verify(litPixels(item) > 30, litPixels(item));
    }

    function test_an_unknown_symbol_draws_nothing() {
        compare(litPixels(make(symbol, {name: "no.such.symbol"})), 0);
    }

    function test_a_view_is_made_once_each_time_that_it_is_wanted() {
        const item = make(loader, {isWanted: true});
        compare(item.made, 1);
        item.isWanted = false;
        compare(item.item, null);
        item.isWanted = true;
        compare(item.made, 2);
    }

    SignalSpy { id: tipChanges; target: ToolTips; signalName: "changed" }

    function test_a_tip_that_is_shown_gets_the_new_text_of_its_button() {
        const button = make(icon, {tip: "1h 0m"});
        tipChanges.clear();
        button.tip = "1h 1m";
        compare(tipChanges.count, 1);
        compare(tipChanges.signalArguments[0][0], button);
        compare(tipChanges.signalArguments[0][1], "1h 1m");
    }

    function test_a_button_that_is_not_available_says_so() {
        const button = make(quiet, {help: "Leaves all as it was"});
        compare(button.Accessible.description, "Leaves all as it was");
        button.enabled = false;
        compare(button.Accessible.description, "Not available");
    }
}
