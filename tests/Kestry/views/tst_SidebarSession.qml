import QtQuick
import QtTest
import Kestry

ViewTest {
    id: test

    name: "SidebarSession"
    width: 400
    height: 400

    Component {
        id: boxes
        SidebarSessionControls {
            width: 216
            box: test.world.sidebarSession
            session: test.world.session
        }
    }

    SignalSpy { id: targetAsked; signalName: "targetAsked" }

    function init(): void {
        renewWorld();
        restPointer();
    }

    function make() {
        const box = createTemporaryObject(boxes, test);
        targetAsked.target = box;
        targetAsked.clear();
        return box;
    }

    function part(box, name) { return findChild(box, name); }
    function input(box, place) { return findChild(part(box, place), "input"); }

    function makeIdle() {
        world.addClient("Aster Studio");
        return make();
    }

    function makeRunning(title) {
        world.addClient("Aster Studio");
        world.addProject("Site");
        world.start(title ?? "");
        return make();
    }

    function type(letters) {
        for (const letter of letters) {
            keyClick(letter);
        }
    }

    function test_without_clients_it_asks_for_the_first() {
        const box = make();
        compare(part(box, "heading").text, "New session");
        verify(part(box, "invitation").visible);
        verify(!part(box, "idle").visible);
        verify(!part(box, "active").visible);
        mouseClick(part(box, "invitation"));
        compare(world.editorID, "client-new");
    }

    function test_without_a_session_it_offers_the_next_one() {
        const box = makeIdle();
        compare(part(box, "heading").text, "New session");
        verify(part(box, "idle").visible);
        verify(!part(box, "invitation").visible);
        mouseClick(part(box, "start"));
        verify(world.session.isRunning);
        verify(part(box, "active").visible);
        compare(part(box, "heading").text, "Current session");
    }

    function test_the_target_says_what_it_is_and_opens_the_choice() {
        const box = makeIdle();
        const target = part(box, "target");
        compare(target.Accessible.name,
            "Session project and hourly rate: Aster Studio · Unassigned · Rate not set");
        mouseClick(target);
        compare(targetAsked.count, 1);
        compare(targetAsked.signalArguments[0][0], target);
    }

    function test_a_session_started_elsewhere_shows_at_once() {
        const box = makeIdle();
        world.start("Drawing");
        compare(part(box, "heading").text, "Current session");
        verify(part(box, "active").visible);
        compare(input(box, "active").text, "Drawing");
    }

    function test_return_in_the_title_starts_the_session() {
        const box = makeIdle();
        input(box, "idle").forceActiveFocus();
        type("Logo");
        keyClick(Qt.Key_Return);
        compare(world.session.title, "Logo");
        world.session.stop();
        compare(input(box, "idle").text, "");
    }

    function test_the_keyboard_goes_on_where_the_session_is_controlled() {
        const box = makeIdle();
        part(box, "start").forceActiveFocus();
        keyClick(Qt.Key_Return);
        tryVerify(() => part(box, "pause").activeFocus);
        part(box, "stop").forceActiveFocus();
        keyClick(Qt.Key_Space);
        tryVerify(() => part(box, "start").activeFocus);
    }

    function test_a_session_started_elsewhere_does_not_take_the_keyboard() {
        const box = makeIdle();
        world.start("Drawing");
        wait(20);
        verify(!part(box, "pause").activeFocus);
    }

    function test_the_session_is_told_with_its_time_and_value() {
        const box = makeRunning();
        world.advance(3600);
        compare(part(box, "line").Accessible.name, "Session client and project: Aster Studio · Site");
        compare(part(box, "elapsed").text, "01:00:00");
        compare(part(box, "elapsed").parent.Accessible.name, "Elapsed");
        compare(part(box, "elapsed").parent.Accessible.description, "1 hour");
        compare(part(box, "value").text, "$100.00 earned");
    }

    function test_a_session_is_paused_resumed_and_stopped() {
        const box = makeRunning();
        const pause = part(box, "pause");
        compare(pause.label, "Pause");
        compare(pause.symbol, "pause.fill");
        mouseClick(pause);
        verify(!world.session.isRunning);
        compare(pause.label, "Resume");
        compare(pause.symbol, "play.fill");
        mouseClick(pause);
        verify(world.session.isRunning);
        compare(part(box, "stop").label, "Stop and save session");
        mouseClick(part(box, "stop"));
        verify(!world.session.hasSession);
    }

    function test_the_line_leads_to_the_form() {
        const box = makeRunning();
        compare(part(box, "line").Accessible.description, "Edit session and project");
        mouseClick(part(box, "line"));
        verify(world.editorID.startsWith("active-"));
    }

    function test_the_title_is_edited_in_place() {
        const box = makeRunning("Drawing");
        const field = input(box, "active");
        compare(field.text, "Drawing");
        field.forceActiveFocus();
        field.selectAll();
        type("Logo");
        compare(world.session.title, "Drawing");
        keyClick(Qt.Key_Return);
        compare(world.session.title, "Logo");
    }

    function test_escape_leaves_the_title() {
        const box = makeRunning("Drawing");
        const field = input(box, "active");
        field.forceActiveFocus();
        field.selectAll();
        type("Logo");
        keyClick(Qt.Key_Escape);
        compare(field.text, "Drawing");
        field.focus = false;
        compare(world.session.title, "Drawing");
    }

    function test_a_title_typed_elsewhere_shows() {
        const box = makeRunning("Drawing");
        world.session.rename(world.session.sessionID, "Logo");
        compare(input(box, "active").text, "Logo");
    }

    function test_off_the_screen_it_does_not_follow_the_time() {
        const box = makeRunning();
        world.advance(10);
        compare(part(box, "elapsed").text, "00:00:10");
        box.visible = false;
        world.advance(10);
        compare(part(box, "elapsed").text, "00:00:10");
        box.visible = true;
        compare(part(box, "elapsed").text, "00:00:20");
    }

    function test_a_session_of_another_device_is_only_told() {
        world.addClient("Aster Studio");
        world.addProject("Site");
        const box = make();
        const remote = part(box, "remote");
        verify(!remote.visible);
        world.runElsewhere("Laptop", 5400);
        verify(remote.visible);
        compare(findChild(remote, "remoteTitle").text, "Session on Laptop");
        compare(findChild(remote, "remoteState").text, "Running when last synced · 1h\u00a030m");
        const words = remote.item;
        compare(words.Accessible.name, "Session on Laptop, Running when last synced · 1h 30m");
        compare(words.Accessible.role, Accessible.StaticText);
        world.start("Here");
        verify(!remote.visible);
    }

    function test_long_names_stay_inside_data() {
        return [{tag: "long", name: "The Association of Shipping and Harbour Companies of the North"},
            {tag: "rtl", name: "مكتب المراجعة والتصميم للمشاريع الكبيرة في المدينة"},
            {tag: "emoji", name: "👩‍🎨🎨🖌️🖼️🧵🧶👩‍🎨🎨🖌️🖼️🧵🧶👩‍🎨🎨🖌️🖼️🧵🧶"}];
    }

    function test_long_names_stay_inside(data) {
        world.addClient(data.name);
        world.addProject(data.name);
        const box = make();
        checkInside(box, box);
        world.start(data.name);
        checkInside(box, box);
    }

    function test_large_texts_stay_inside() {
        desktop.scaleText(1.5);
        const box = makeRunning("Layout");
        checkInside(box, box);
        world.session.stop();
        checkInside(box, box);
        desktop.scaleText(1);
    }

    /// All that is seen of the box is inside of it.
    function checkInside(box, item): void {
        for (let index = 0; index < item.children.length; ++index) {
            const child = item.children[index];
            if (!child.visible || child.width === 0 || child.distance !== undefined
                    || child.objectName === "input") {
                continue;
            }
            const place = child.mapToItem(box, 0, 0);
            verify(place.x >= 0 && place.x + child.width <= box.width + 0.5, child + " " + child.text);
            verify(place.y >= 0 && place.y + child.height <= box.height + 0.5, child + " " + child.text);
            checkInside(box, child);
        }
    }
}
