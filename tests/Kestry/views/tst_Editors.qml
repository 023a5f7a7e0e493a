import QtQuick
import QtTest
import Kestry

ViewTest {
    id: test

    name: "Editors"
    width: 800
    height: 600

    Component { id: chooser; PathSheet { anchors.fill: parent; chooser: test.world.chooser } }
    Component { id: spy; SignalSpy { } }
    Component { id: sheet; EditorSheet { anchors.fill: parent; forms: test.world.forms } }

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

    /// Whether a screen reader is told this, in an item or below it.
    function told(item, message) {
        if (!item.visible) {
            return false;
        }
        const isTold = item.Accessible.role === Accessible.AlertMessage
            && item.Accessible.name === message;
        for (let index = 0; !isTold && index < item.children.length; ++index) {
            if (told(item.children[index], message)) {
                return true;
            }
        }
        return isTold;
    }

    /// How often these words are on screen in an item or below it.
    function shownTimes(item, words): int {
        let times = item instanceof Text && item.visible && item.text === words ? 1 : 0;
        for (let index = 0; index < item.children.length; ++index) {
            times += shownTimes(item.children[index], words);
        }
        return times;
    }

    function press(item, name): void {
        const target = named(item, name);
        verify(target, name);
        mouseClick(target);
    }

    /// Presses something by key, wherever it is scrolled to.
    function use(item, name): void {
        const target = named(item, name);
        verify(target, name);
        target.forceActiveFocus();
        keyClick(Qt.Key_Space);
    }

    function type(text): void {
        for (const letter of text) {
            keyClick(letter);
        }
    }

    function focusedName(): string {
        return test.Window.activeFocusItem?.Accessible.name ?? "";
    }

    /// A ledger with a client, a project and a saved session.
    function fill(): void {
        world.addClient("Birch");
        world.addProject("Website");
        world.addEntry("Design");
    }

    function test_a_client_is_typed_and_saved() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        verify(named(form, "New client"));
        compare(focusedName(), "Client name");
        type("Bx");
        press(form, "Save");
        compare(world.workspace.editorID, "");
        compare(world.workspace.clients.rowCount(), 1);
    }

    function test_the_tab_key_follows_the_order_of_the_form() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        const order = [];
        for (let index = 0; index < 6; ++index) {
            order.push(focusedName());
            keyClick(Qt.Key_Tab);
        }
        compare(order, ["Client name", "Use projects", "Cancel", "Save", "Close", "Choose logo"]);
        compare(focusedName(), "Client name");
    }

    function test_the_tab_key_follows_the_order_of_each_form_data() {
        const end = ["Cancel", "Save"];
        const session = ["Session title", "Started", "Choose the day from a calendar", "Hours",
            "Minutes"];
        return [
            {tag: "client", open: "editClient",
                order: ["Client name", "Use projects", ...end, "Close", "Choose logo"]},
            {tag: "project", open: "editProject",
                order: ["Project name", "Rate (USD / hour)", ...end, "Close"]},
            {tag: "entry", open: "editEntry",
                order: [...session, "Client: Birch", "Project: Website · $100/hr", "Billable",
                    "Delete session", ...end, "Close"]},
            {tag: "new entry", open: "newEntry",
                order: [...session, "Client: Choose a client", "Billable", ...end, "Close"]},
            {tag: "session", open: "editSession",
                order: ["Session title", "Client: Birch", "Project: Website · $100/hr", ...end,
                    "Close"]}];
    }

    function test_the_tab_key_follows_the_order_of_each_form(data) {
        fill();
        world.start("Call");
        createTemporaryObject(sheet, test);
        world[data.open]();
        const there = [];
        const back = [];
        for (let index = 0; index < data.order.length; ++index) {
            there.push(focusedName());
            keyClick(Qt.Key_Tab);
        }
        compare(there, data.order);
        for (let index = 0; index < data.order.length; ++index) {
            keyClick(Qt.Key_Tab, Qt.ShiftModifier);
            back.unshift(focusedName());
        }
        compare(back, data.order);
    }

    function test_an_imported_session_says_so() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        verify(!named(form, "Imported from Tallyloom"));
        world.workspace.closeEditor();
        world.editImported();
        const row = named(form, "Imported from Tallyloom");
        verify(row);
        compare(row.symbol, "tray");
    }

    function test_another_form_is_opened_only_after_a_question() {
        fill();
        world.start("Call");
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        type("B");
        world.editSession();
        verify(named(form, "New client"));
        compare(focusedName(), "Keep editing");
        keyClick(Qt.Key_Return);
        compare(world.workspace.editorID, "client-new");
        tryVerify(() => focusedName() === "Client name");
        world.editSession();
        press(form, "Discard");
        verify(named(form, "Edit current session"));
        compare(focusedName(), "Session title");
    }

    function test_a_new_project_that_is_typed_takes_the_keyboard_when_the_form_is_saved() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        use(form, "Project: Website · $100/hr");
        world.openMenu.choose(2);
        type("Shop");
        named(form, "Session title").forceActiveFocus();
        keyClick(Qt.Key_Return, Qt.ControlModifier);
        verify(named(form, "Create the project or cancel it first."));
        compare(focusedName(), "Project name");
        compare(named(form, "Project name").text, "Shop");
    }

    function test_a_second_refusal_is_told_again() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        keyClick(Qt.Key_Return);
        const message = named(form, "Enter a name.");
        const shown = createTemporaryObject(spy, test, {target: message, signalName: "visibleChanged"});
        keyClick(Qt.Key_Return);
        compare(shown.count, 2);
        verify(message.visible);
    }

    function test_the_keyboard_goes_to_choose_logo_when_the_logo_is_removed() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        world.useLogo();
        world.forms.current.importLogo("file:///somewhere/picture.png");
        world.workBeside();
        use(form, "Remove logo");
        verify(!named(form, "Remove logo"));
        compare(focusedName(), "Choose logo");
    }

    function test_that_a_logo_is_imported_is_told() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        world.forms.current.importLogo("file:///missing/picture.png");
        tryVerify(() => told(form, "Importing the logo…"));
        world.workBeside();
        verify(!told(form, "Importing the logo…"));
    }

    function test_a_rate_is_asked_for_only_without_projects() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        verify(!named(form, "Hourly rate (USD)"));
        press(form, "Use projects");
        verify(named(form, "Hourly rate (USD)"));
        press(form, "Use projects");
        verify(!named(form, "Hourly rate (USD)"));
    }

    function test_a_refusal_stands_in_the_form() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        keyClick(Qt.Key_Return);
        verify(named(form, "Enter a name."));
        press(form, "Cancel");
        compare(world.workspace.editorID, "");
    }

    function test_control_and_return_save_from_anywhere() {
        createTemporaryObject(sheet, test);
        world.workspace.newClient();
        type("Bx");
        keyClick(Qt.Key_Tab);
        keyClick(Qt.Key_Return, Qt.ControlModifier);
        compare(world.workspace.editorID, "");
        compare(world.workspace.clients.rowCount(), 1);
    }

    function test_escape_asks_before_drafts_are_dropped() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        type("B");
        keyClick(Qt.Key_Escape);
        verify(named(form, "Discard changes?"));
        compare(focusedName(), "Keep editing");
        keyClick(Qt.Key_Return);
        verify(!named(form, "Discard changes?"));
        tryVerify(() => focusedName() === "Client name");
        keyClick(Qt.Key_Escape);
        press(form, "Discard");
        compare(world.workspace.editorID, "");
    }

    function test_escape_closes_a_form_without_drafts_at_once() {
        createTemporaryObject(sheet, test);
        world.workspace.newClient();
        keyClick(Qt.Key_Escape);
        compare(world.workspace.editorID, "");
    }

    function test_a_session_is_deleted_after_a_question_whose_first_focus_is_cancel() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        press(form, "Delete session");
        verify(named(form, "Delete this session?"));
        compare(focusedName(), "Cancel");
        keyClick(Qt.Key_Escape);
        compare(world.entryTitles(), ["Design"]);
        press(form, "Delete session");
        keyClick(Qt.Key_Tab, Qt.ShiftModifier);
        compare(focusedName(), "Delete session");
        keyClick(Qt.Key_Return);
        compare(world.entryTitles(), []);
        compare(world.workspace.editorID, "");
    }

    function test_the_arrow_keys_step_the_length() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        named(form, "Minutes").forceActiveFocus();
        keyClick(Qt.Key_Up);
        compare(named(form, "Minutes").text, "1");
        named(form, "Hours").forceActiveFocus();
        keyClick(Qt.Key_Up);
        compare(named(form, "Hours").text, "2");
        keyClick(Qt.Key_Down);
        compare(named(form, "Hours").text, "1");
    }

    function test_a_day_is_chosen_from_the_calendar_by_keyboard() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        named(form, "Choose the day from a calendar").forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(focusedName(), "Friday, September 19, 2025");
        keyClick(Qt.Key_Left);
        compare(focusedName(), "Thursday, September 18, 2025");
        keyClick(Qt.Key_Return);
        compare(named(form, "Started").text, "9/18/2025, 4:40 PM");
        compare(focusedName(), "Choose the day from a calendar");
    }

    function test_a_screen_reader_chooses_no_day_of_a_closed_calendar() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        const before = named(form, "Started").text;
        named(form, "Choose the day from a calendar").forceActiveFocus();
        keyClick(Qt.Key_Space);
        const day = named(form, "Monday, September 1, 2025");
        keyClick(Qt.Key_Escape);
        day.Accessible.pressAction();
        compare(named(form, "Started").text, before);
    }

    function test_a_screen_reader_changes_nothing_behind_a_question() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        type("Bx");
        const toggle = named(form, "Use projects");
        keyClick(Qt.Key_Escape);
        verify(named(form, "Discard changes?"));
        toggle.Accessible.pressAction();
        toggle.Accessible.toggleAction();
        toggle.Accessible.pressAction();
        verify(world.forms.current.projectsEnabled);
    }

    function test_a_form_below_the_question_for_a_path_is_not_saved() {
        const form = createTemporaryObject(sheet, test);
        const path = createTemporaryObject(chooser, test);
        form.enabled = Qt.binding(() => !path.visible);
        world.workspace.newClient();
        type("Bx");
        press(form, "Choose logo");
        verify(path.visible);
        keyClick(Qt.Key_Return, Qt.ControlModifier);
        compare(world.workspace.editorID, "client-new");
    }

    function test_the_keyboard_stays_where_a_logo_was_chosen() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        named(form, "Choose logo").forceActiveFocus();
        world.forms.current.importLogo("file:///missing/picture.png");
        compare(focusedName(), "Choose logo");
        world.workBeside();
        compare(focusedName(), "Choose logo");
    }

    function test_a_long_name_stays_in_its_row() {
        const name = "Birch".repeat(60);
        world.addClient(name);
        world.addProject("Website");
        const form = createTemporaryObject(sheet, test);
        world.editProject();
        const fact = named(form, "Client: " + name);
        verify(fact);
        for (let index = 0; index < fact.children.length; ++index) {
            const part = fact.children[index];
            verify(part.x >= 0 && part.x + part.width <= fact.width, part.x);
        }
    }

    function test_what_a_change_of_the_duration_does_is_told_to_those_who_listen() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        const note = named(form, "Changing the duration replaces recorded work intervals with one "
            + "continuous interval from the start time. Pauses are preserved when only the "
            + "description or start time changes.");
        verify(note);
        compare(note.Accessible.role, Accessible.StaticText);
    }

    function test_the_hint_of_a_duration_is_told_with_both_its_fields_and_shown_once() {
        const hint = "Whole hours up to 744, and minutes below 60";
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        compare(named(form, "Hours").Accessible.description, "");
        world.forms.current.minutes = "60";
        compare(named(form, "Hours").Accessible.description, hint);
        compare(named(form, "Minutes").Accessible.description, hint);
        compare(shownTimes(form, hint), 1);
        verify(named(form, hint).Accessible.ignored);
    }

    function test_the_menus_of_a_session_offer_clients_and_projects() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.newEntry();
        use(form, "Client: Choose a client");
        compare(world.openMenu.name, "Client");
        world.openMenu.choose(0);
        use(form, "Project: Choose a project");
        compare(world.openMenu.name, "Project");
        world.openMenu.choose(0);
        verify(named(form, "Project: Website · $100/hr"));
    }

    function test_a_new_project_is_made_inside_the_form() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        use(form, "Project: Website · $100/hr");
        world.openMenu.choose(2);
        compare(focusedName(), "Project name");
        type("Shop");
        keyClick(Qt.Key_Return);
        tryVerify(() => named(form, "Project: Shop · Rate not set"));
    }

    /// The form of a saved session, with a name typed for a new project in it.
    function formWithNewProject(name) {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        use(form, "Project: Website · $100/hr");
        world.openMenu.choose(2);
        type(name);
        return form;
    }

    /// Presses something that may have to be scrolled to.
    function reach(item, name): void {
        named(item, name).forceActiveFocus();
        waitForRendering(item);
        press(item, name);
    }

    function test_a_new_project_is_created_by_its_button() {
        const form = formWithNewProject("Shop");
        reach(form, "Create project");
        tryVerify(() => named(form, "Project: Shop · Rate not set"));
        verify(!named(form, "Create project"));
    }

    function test_a_new_project_is_cancelled_by_its_button() {
        const form = formWithNewProject("Shop");
        reach(form, "Cancel new project");
        verify(named(form, "Project: Website · $100/hr"));
        verify(!named(form, "Cancel new project"));
        use(form, "Project: Website · $100/hr");
        compare(world.openMenu.rowCount(), 3); // Website, a separator, and the way to a new one
    }

    function test_cancel_drops_drafts_without_a_question_and_keeps_a_project_that_was_created() {
        const form = formWithNewProject("Shop");
        reach(form, "Create project");
        named(form, "Session title").forceActiveFocus();
        type("x");
        press(form, "Cancel");
        compare(world.workspace.editorID, "");
        verify(!named(form, "Discard changes?"));
        compare(world.entryTitles(), ["Design"]);
        world.editEntry();
        use(form, "Project: Website · $100/hr");
        compare(world.openMenu.rowCount(), 4);
    }

    function test_an_empty_title_says_that_it_is_optional() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.newEntry();
        const placeholder = textOf(form, "Session title (optional)");
        verify(placeholder.visible);
        type("x");
        verify(!placeholder.visible);
    }

    function test_the_saved_rate_is_shown_for_a_saved_session_alone() {
        const note = "Changing projects keeps the saved rate. Nonbillable sessions do not "
            + "contribute to earnings.";
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        verify(named(form, "Saved hourly rate: $100.00"));
        verify(named(form, note));
        world.workspace.closeEditor();
        world.newEntry();
        verify(named(form, "Every hour counts."));
        verify(!named(form, "Saved hourly rate"));
        verify(!named(form, note));
    }

    function test_the_fields_scroll_to_the_one_that_has_the_keyboard() {
        fill();
        const form = createTemporaryObject(sheet, test);
        world.editEntry();
        const field = named(form, "Billable");
        field.forceActiveFocus();
        const place = field.mapToItem(test, 0, 0).y;
        verify(place > 0 && place + field.height < test.height - 80, place);
        verify(named(form, "Save").mapToItem(test, 0, 0).y < test.height);
    }

    function test_the_session_in_progress_shows_its_time() {
        fill();
        world.start("Call");
        const form = createTemporaryObject(sheet, test);
        world.editSession();
        verify(named(form, "Elapsed: 00:00:00"));
        world.advance(61.5);
        verify(named(form, "Elapsed: 00:01:01"));
        world.session.pauseOrResume();
        verify(named(form, "Paused at: 6:41 PM"));
    }

    function test_a_picture_that_cannot_be_read_is_told_below_the_logo() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        world.forms.current.importLogo("file:///missing/picture.png");
        verify(world.forms.current.isImportingLogo);
        world.workBeside();
        verify(named(form, "This image could not be read."));
    }

    function test_a_picture_is_dropped_on_the_logo() {
        const form = createTemporaryObject(sheet, test);
        world.workspace.newClient();
        world.drop(named(form, "No client logo"), "file:///missing/picture.png");
        verify(world.forms.current.isImportingLogo);
        world.drop(named(form, "No client logo"), "https://example.org/picture.png");
        verify(named(form, "Choose an image that is on this computer."));
    }

    function test_a_logo_is_chosen_by_its_path_where_the_desktop_has_no_dialog() {
        const form = createTemporaryObject(sheet, test);
        const path = createTemporaryObject(chooser, test);
        world.workspace.newClient();
        press(form, "Choose logo");
        verify(path.visible);
        compare(focusedName(), "File");
        type("x");
        keyClick(Qt.Key_Return);
        verify(named(path, "There is no file \"x\" in that folder. Enter the name of an existing one."));
        keyClick(Qt.Key_Escape);
        verify(!path.visible);
        compare(world.workspace.editorID, "client-new");
    }

    function test_each_form_is_shown_by_its_own_view_data() {
        return [
            {tag: "client", open: "editClient", field: "Client name", title: "Edit client"},
            {tag: "project", open: "editProject", field: "Project name",
                title: "The project details."},
            {tag: "entry", open: "editEntry", field: "Session title", title: "Edit session"},
            {tag: "new entry", open: "newEntry", field: "Session title",
                title: "Every hour counts."}];
    }

    function test_each_form_is_shown_by_its_own_view(data) {
        fill();
        const form = createTemporaryObject(sheet, test);
        world[data.open]();
        verify(named(form, data.title));
        compare(focusedName(), data.field);
    }
}
