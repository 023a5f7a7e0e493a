import QtQuick
import QtTest
import Kestry

ViewTest {
    id: test

    name: "Workspace"
    width: 800
    height: 600

    Component {
        id: sidebar
        Sidebar {
            width: 240
            height: 600
            workspace: test.world.workspace
            box: test.world.sidebarSession
            session: test.world.session
        }
    }
    Component { id: alerts; WorkspaceAlerts { anchors.fill: parent; workspace: test.world.workspace } }
    Component { id: banners; WorkspaceBanners { width: 800; workspace: test.world.workspace } }
    Component {
        id: page
        WorkspacePage {
            anchors.fill: parent
            destination: "Overview"
            hasClient: test.world.workspace.hasSelectedClient
            overview: test.world.overview
            sessions: test.world.sessions
            dashboard: test.world.clientPage
            exporter: test.world.exporter
            settings: test.world.settings
        }
    }

    function init(): void {
        renewWorld();
        restPointer();
    }

    /// The first thing in an item, or below it, of an accessible name.
    function named(item, name) {
        if (item.visible && item.Accessible.name === name) {
            return item;
        }
        for (let index = 0; index < item.children.length; ++index) {
            const found = named(item.children[index], name);
            if (found) {
                return found;
            }
        }
        return null;
    }

    function press(item, name): void {
        const target = named(item, name);
        verify(target, name);
        mouseClick(target);
    }

    function test_the_sidebar_leads_to_the_pages_data() {
        return [{tag: "Overview"}, {tag: "Sessions"}, {tag: "Settings"}];
    }

    function test_the_sidebar_leads_to_the_pages(data) {
        const bar = createTemporaryObject(sidebar, test);
        world.workspace.go(data.tag === "Overview" ? "Sessions" : "Overview");
        press(bar, data.tag);
        compare(world.workspace.destination, data.tag);
        verify(named(bar, data.tag).isCurrent);
    }

    function test_each_client_has_a_row_that_leads_to_its_page() {
        const bar = createTemporaryObject(sidebar, test);
        world.addClient("Aster Studio");
        tryVerify(() => named(bar, "Aster Studio"));
        press(bar, "Aster Studio");
        compare(world.workspace.destination, "Client");
        tryVerify(() => named(bar, "Aster Studio").isCurrent);
    }

    function test_the_plus_beside_the_clients_opens_the_form_of_a_new_one() {
        const bar = createTemporaryObject(sidebar, test);
        press(bar, "Add client");
        compare(world.workspace.editorID, "client-new");
    }

    function test_without_clients_the_list_says_so() {
        const bar = createTemporaryObject(sidebar, test);
        verify(named(bar, "No clients yet"));
        world.addClient("Aster Studio");
        tryVerify(() => !named(bar, "No clients yet"));
    }

    function test_a_client_is_shown_by_its_initial() {
        world.addClient("aster");
        const bar = createTemporaryObject(sidebar, test);
        const avatar = findChild(named(bar, "aster"), "avatar");
        compare(avatar.initial, "A");
        verify(!avatar.hasLogo);
    }

    function test_the_keyboard_goes_through_the_sidebar_from_top_to_bottom() {
        world.addClient("Aster Studio");
        const bar = createTemporaryObject(sidebar, test);
        named(bar, "Overview").forceActiveFocus();
        const order = [];
        for (let step = 0; step < 8; ++step) {
            const item = test.Window.window.activeFocusItem;
            order.push(item.Accessible.name);
            keyClick(Qt.Key_Tab);
        }
        compare(order, ["Overview", "Sessions", "Add client", "Aster Studio",
            "Session project and hourly rate: Aster Studio · Unassigned · Rate not set",
            "Session title", "Start session", "Settings"]);
    }

    function test_every_client_is_reached_by_key_there_and_back() {
        for (let number = 10; number < 40; ++number) {
            world.addClient("Client " + number);
        }
        const bar = createTemporaryObject(sidebar, test);
        const focused = () => test.Window.window.activeFocusItem.Accessible.name;
        named(bar, "Add client").forceActiveFocus();
        keyClick(Qt.Key_Tab);
        for (let number = 10; number < 39; ++number) {
            compare(focused(), "Client " + number);
            keyClick(Qt.Key_Down);
        }
        for (let number = 39; number > 10; --number) {
            compare(focused(), "Client " + number);
            keyClick(Qt.Key_Up);
        }
        keyClick(Qt.Key_End);
        compare(focused(), "Client 39");
        keyClick(Qt.Key_Home);
        compare(focused(), "Client 10");
        keyClick(Qt.Key_Tab);
        verify(focused().startsWith("Session "));
        keyClick(Qt.Key_Tab, Qt.ShiftModifier);
        compare(focused(), "Client 10");
        keyClick(Qt.Key_Tab, Qt.ShiftModifier);
        compare(focused(), "Add client");
    }

    function test_the_ring_shows_only_to_the_keyboard() {
        const bar = createTemporaryObject(sidebar, test);
        const row = named(bar, "Sessions");
        keyClick(Qt.Key_Tab);
        row.forceActiveFocus();
        verify(ring(row).visible);
        mouseClick(named(bar, "Overview"));
        verify(!ring(row).visible);
    }

    /// The ring of a control.
    function ring(control) {
        for (let index = 0; index < control.children.length; ++index) {
            const child = control.children[index];
            if (child.item === control && child.distance !== undefined) {
                return child;
            }
        }
        return null;
    }

    function test_a_sidebar_without_room_scrolls_to_what_has_the_keyboard() {
        world.addClient("Aster Studio");
        const bar = createTemporaryObject(sidebar, test, {height: 260});
        const scroller = findChild(bar, "scroller");
        verify(scroller.contentHeight > scroller.height);
        named(bar, "Settings").forceActiveFocus();
        verify(scroller.contentY > 0);
        named(bar, "Overview").forceActiveFocus();
        verify(scroller.contentY <= named(bar, "Overview").mapToItem(scroller.contentItem, 0, 0).y);
    }

    function test_a_client_page_without_its_client_asks_for_one() {
        const shown = createTemporaryObject(page, test, {destination: "Client"});
        verify(named(shown, "Select a client. Choose a client in the sidebar, or use + to add one."));
        shown.hasClient = true;
        verify(!named(shown, "Select a client. Choose a client in the sidebar, or use + to add one."));
    }

    function test_a_banner_is_as_high_as_its_text_needs() {
        const strip = createTemporaryObject(banners, test);
        const wide = strip.height;
        strip.width = 220;
        tryVerify(() => strip.height > wide);
        const line = findChild(strip, "line");
        verify(line.x + line.width <= 220);
        verify(line.y >= 0 && line.y + line.height <= strip.height);
    }

    function test_an_alert_shows_a_failure_until_it_is_read() {
        const sheets = createTemporaryObject(alerts, test);
        verify(!sheets.visible);
        world.fail("The disk is full.");
        verify(named(sheets, "Your time needs attention. The disk is full."));
        press(sheets, "OK");
        verify(!sheets.visible);
        compare(world.workspace.alertTitle, "");
    }

    function test_a_failure_is_told_before_an_export() {
        const sheets = createTemporaryObject(alerts, test);
        world.tellOfExport("12 sessions were exported.");
        world.fail("The disk is full.");
        press(sheets, "OK");
        verify(named(sheets, "Export complete. 12 sessions were exported."));
        press(sheets, "OK");
        verify(!sheets.visible);
    }

    function test_escape_dismisses_an_alert() {
        const sheets = createTemporaryObject(alerts, test);
        world.fail("The disk is full.");
        keyClick(Qt.Key_Escape);
        verify(!sheets.visible);
    }

    function test_a_store_in_memory_is_called_a_preview() {
        const strip = createTemporaryObject(banners, test);
        verify(named(strip, "DESIGN PREVIEW ·  Sample data. Changes stay in this preview."));
        verify(!named(strip, "Dismiss"));
    }

    function test_a_page_says_which_it_is() {
        const shown = createTemporaryObject(page, test);
        verify(named(shown, "Overview"));
        shown.destination = "Sessions";
        verify(named(shown, "Search sessions"));
        verify(!named(shown, "Overview"));
    }

    Component { id: line; TextInput { } }

    function test_the_words_of_an_alert_can_be_copied() {
        const view = createTemporaryObject(alerts, test);
        world.fail("It is in /home/birch/ledger.");
        tryVerify(() => view.visible);
        keyClick("C", Qt.ControlModifier);
        const field = createTemporaryObject(line, test);
        field.paste();
        compare(field.text, "It is in /home/birch/ledger.");
    }
}
