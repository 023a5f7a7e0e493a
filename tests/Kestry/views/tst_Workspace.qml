import QtQuick
import QtTest
import Kestry

ViewTest {
    id: test

    name: "Workspace"
    width: 800
    height: 600

    Component { id: sidebar; Sidebar { width: 240; height: 600; workspace: test.world.workspace } }
    Component { id: alerts; WorkspaceAlerts { anchors.fill: parent; workspace: test.world.workspace } }
    Component { id: banners; WorkspaceBanners { width: 800; workspace: test.world.workspace } }
    Component {
        id: page
        WorkspacePage {
            anchors.fill: parent
            destination: "Overview"
            sessions: test.world.sessions
            exporter: test.world.exporter
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
}
