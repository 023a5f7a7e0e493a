import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test

    name: "Settings"
    width: 520
    height: 700

    Component {
        id: page
        AppSettingsView {
            width: 520
            height: 700
            settings: test.world.settings
            exporter: test.world.exporter
        }
    }
    Component {
        id: keys
        KeysSheet {
            anchors.fill: parent
        }
    }
    Component { id: lowKeys; KeysSheet { width: 520; height: 300 } }
    Component { id: questions; RestoreQuestion { anchors.fill: parent } }
    Component { id: closings; SignalSpy { signalName: "closed" } }

    function init(): void {
        renewWorld();
        restPointer();
        desktop.scaleText(1);
    }

    /// All that is shown in an item, from the top, and is accepted.
    function all(item, accepts): var {
        const found = [];
        if (item.visible) {
            if (accepts(item)) {
                found.push(item);
            }
            for (let index = 0; index < item.children.length; ++index) {
                found.push(...all(item.children[index], accepts));
            }
        }
        return found;
    }

    function named(item, name): var {
        return all(item, each => each.Accessible.name === name && !each.Accessible.ignored)[0] ?? null;
    }

    function row(item, title): var {
        return all(item, each => each instanceof SettingsRow && each.title === title)[0] ?? null;
    }

    function texts(item): var {
        return all(item, each => each instanceof Text && each.text.length > 0);
    }

    function press(item, name): void {
        const target = named(item, name);
        verify(target, name);
        target.forceActiveFocus(); // which brings it into view
        mouseClick(target);
    }

    function test_the_page_has_its_sections_in_order() {
        const view = createTemporaryObject(page, test);
        const headings = all(view, each => each.Accessible.role === Accessible.Heading).map(each => each.text);
        compare(headings[0], "Settings");
        const order = ["Appearance", "Workspace", "Software updates", "Data"].map(each => headings.indexOf(each));
        verify(order.every((each, index) => each > 0 && (index === 0 || each > order[index - 1])), headings);
    }

    function test_all_sections_stand_in_order() {
        const view = createTemporaryObject(page, test);
        const sections = all(view, each => each instanceof SettingsSection).map(each => each.title);
        compare(sections, ["Appearance", "Connections", "Workspace", "Software updates", "Desktop", "Data"]);
        const notes = named(view, "How tracking works");
        verify(notes.mapToItem(view, 0, 0).y > row(view, "Workspace files").mapToItem(view, 0, 0).y);
    }

    /// What a row is set by: its first control that says what it is.
    function controlOf(row): string {
        return all(row, each => each !== row && each.Accessible.name.length > 0 && !each.Accessible.ignored)[0].Accessible.name;
    }

    function test_each_row_has_its_symbol_its_words_and_its_control() {
        renewWorldOnDisk();
        world.damage(); // which offers a backup
        const view = createTemporaryObject(page, test);
        const rows = all(view, each => each instanceof SettingsRow)
            .map(each => [each.symbol, each.title, each.detail, controlOf(each)]);
        compare(rows, [
            ["circle.lefthalf.filled", "Theme", "", "Appearance theme"],
            ["paintpalette", "Accent color", "", "Accent color"],
            ["icloud", "iCloud sync", rows[2][2], "iCloud sync"],
            ["externaldrive", "Record store", rows[3][2], "Sign in…"],
            ["macbook", "Notch controls", "Keep your timer at the top of the screen", "Notch controls"],
            ["menubar.rectangle", "Kestry in menu bar", "Quick access alongside the notch", "Kestry in menu bar"],
            ["arrow.down.circle", "Check automatically", "You choose when to install", "Check automatically"],
            ["arrow.clockwise", "Check for updates", "Software updates are not enabled in this build.", "Check now"],
            ["power", "Start with the desktop", "Your timer is there when you log in", "Start with the desktop"],
            ["display", "Where the panel stands", rows[9][2], "Screen of the panel: Primary screen"],
            ["rectangle.topthird.inset.filled", "Place of the panel", "At the top of the screen", "Place of the panel"],
            ["keyboard", "Keyboard shortcuts", "All keys of this window", "Show keys"],
            ["square.and.arrow.up", "Export sessions", "0 saved sessions · CSV", "Export"],
            ["folder", "Workspace files", "Local data and backups", "Open folder"],
            ["arrow.counterclockwise", "Restore backup", "A saved backup is available", "Restore…"]]);
    }

    function test_a_restore_is_asked_about_in_full() {
        const question = createTemporaryObject(questions, test);
        compare(question.Accessible.name, "Restore last backup?");
        const message = "This replaces the working ledger with the last valid backup. The original ledger is preserved in the data folder with a unique name, and any recovered timer is paused. Recent changes missing from the backup will not appear in your restored totals.";
        compare(question.Accessible.description, message);
        verify(textOf(question, message));
        verify(named(question, "Restore last backup"));
        verify(named(question, "Cancel"));
    }

    function test_the_words_around_the_accent_are_those_that_were_agreed() {
        const view = editing();
        verify(named(view, "Changes apply instantly."));
        verify(textOf(view, "Choose color"));
        verify(textOf(view, "#RRGGBB"));
    }

    function test_each_row_says_its_texts_as_one_line() {
        const view = createTemporaryObject(page, test);
        verify(named(view, "Export sessions, 0 saved sessions · CSV"));
        verify(named(view, "Workspace files, Local data and backups"));
    }

    function test_a_switch_has_the_texts_of_its_row_and_its_state() {
        const view = createTemporaryObject(page, test);
        const notch = named(view, "Notch controls");
        compare(notch.Accessible.role, Accessible.CheckBox);
        compare(notch.Accessible.description, "Keep your timer at the top of the screen");
        verify(notch.Accessible.checked);
        mouseClick(notch);
        verify(!notch.Accessible.checked);
        verify(!world.settings.notchEnabled);
    }

    function test_a_switch_is_thrown_from_the_keyboard_and_by_those_who_listen() {
        const view = createTemporaryObject(page, test);
        const bar = named(view, "Kestry in menu bar");
        bar.forceActiveFocus();
        keyClick(Qt.Key_Space);
        verify(bar.Accessible.checked);
        bar.Accessible.toggleAction();
        verify(!bar.Accessible.checked);
    }

    function test_a_switch_thrown_elsewhere_shows_at_once() {
        const view = createTemporaryObject(page, test);
        world.settings.toggleMenuBar();
        verify(named(view, "Kestry in menu bar").Accessible.checked);
    }

    function test_nothing_of_a_page_that_is_covered_is_pressed() {
        const view = createTemporaryObject(page, test, {enabled: false});
        named(view, "Notch controls").Accessible.toggleAction();
        named(view, "Notch controls").Accessible.pressAction();
        verify(world.settings.notchEnabled);
    }

    function test_the_count_of_sessions_follows_the_ledger() {
        world.addClient("Aster Studio");
        const view = createTemporaryObject(page, test);
        world.save("Design", 3);
        tryVerify(() => named(view, "Export sessions, 1 saved sessions · CSV"));
    }

    function test_export_runs_the_export_command() {
        const view = createTemporaryObject(page, test);
        press(view, "Export");
        tryVerify(() => world.chooser.isOpen);
    }

    function test_without_a_backup_there_is_no_row_for_it() {
        const view = createTemporaryObject(page, test);
        verify(!row(view, "Restore backup"));
        verify(!named(view, "Restore…"));
    }

    function test_the_lines_between_rows_begin_at_their_texts() {
        const view = createTemporaryObject(page, test);
        const files = row(view, "Workspace files");
        const line = files.children[0];
        verify(line.visible);
        compare(line.x, 54);
        compare(texts(files)[0].mapToItem(files, 0, 0).x, 54);
        verify(!row(view, "Export sessions").children[0].visible);
    }

    function test_the_notes_are_closed_at_first() {
        const view = createTemporaryObject(page, test);
        verify(!named(view, "Sleep & quit, Pauses the timer until you resume."));
        const header = named(view, "How tracking works");
        compare(header.Accessible.description, "Closed");
        header.forceActiveFocus();
        keyClick(Qt.Key_Return);
        compare(header.Accessible.description, "Open");
        verify(named(view, "Sleep & quit, Pauses the timer until you resume."));
        verify(named(view, "Recovery, Checkpoints every 15 seconds. After an unexpected close, the timer recovers paused at the last checkpoint."));
        verify(named(view, "Projections, Earnings and hours follow your calendar-day pace. Estimates aren’t guaranteed work or payment."));
    }

    function test_notes_that_open_at_the_end_of_the_page_come_into_view() {
        const view = createTemporaryObject(page, test, {height: 400});
        named(view, "How tracking works").forceActiveFocus();
        keyClick(Qt.Key_Space);
        const last = named(view, "Projections, Earnings and hours follow your calendar-day pace. Estimates aren’t guaranteed work or payment.");
        tryVerify(() => last.mapToItem(view, 0, 0).y + last.height <= view.height);
    }

    function test_the_version_stands_below_all() {
        const view = createTemporaryObject(page, test);
        const shown = texts(view);
        compare(shown[shown.length - 1].text, "Kestry · 2.5.1");
    }

    // Appearance.

    function test_the_theme_is_chosen_by_pointer_and_by_arrow_key() {
        const view = createTemporaryObject(page, test);
        verify(named(view, "Appearance theme"));
        verify(named(view, "Dark").Accessible.checked);
        press(view, "Light");
        compare(world.settings.appearance.mode, 0);
        verify(named(view, "Light").Accessible.checked);
        named(view, "Light").forceActiveFocus();
        keyClick(Qt.Key_Right);
        compare(world.settings.appearance.mode, 1);
        verify(named(view, "Dark").activeFocus);
        keyClick(Qt.Key_Right);
        compare(world.settings.appearance.mode, 1);
    }

    function test_a_theme_chosen_elsewhere_shows_at_once() {
        const view = createTemporaryObject(page, test);
        world.settings.appearance.chooseMode(0);
        verify(named(view, "Light").Accessible.checked);
        verify(!named(view, "Dark").Accessible.checked);
    }

    function test_the_presets_are_named_and_the_chosen_one_has_a_sign() {
        const view = createTemporaryObject(page, test);
        for (const name of ["Kestry", "Violet", "Blue", "Coral", "Teal"]) {
            const swatch = named(view, name + " accent");
            compare(swatch.Accessible.role, Accessible.RadioButton);
            compare(swatch.symbol, name === "Kestry" ? "checkmark" : "");
        }
        press(view, "Blue accent");
        compare(world.settings.appearance.preset, 2);
        compare(named(view, "Blue accent").symbol, "checkmark");
        compare(named(view, "Kestry accent").symbol, "");
        compare(named(view, "Custom accent color").symbol, "slider.horizontal.3");
    }

    function test_the_arrow_keys_go_along_the_swatches() {
        const view = createTemporaryObject(page, test);
        named(view, "Kestry accent").forceActiveFocus();
        for (const name of ["Violet accent", "Blue accent", "Coral accent", "Teal accent", "Custom accent color"]) {
            keyClick(Qt.Key_Right);
            verify(named(view, name).activeFocus, name);
        }
        keyClick(Qt.Key_Left);
        verify(named(view, "Teal accent").activeFocus);
    }

    /// The page with the editor of a colour open.
    function editing(): var {
        const view = createTemporaryObject(page, test);
        press(view, "Custom accent color");
        tryVerify(() => named(view, "Custom accent"));
        return view;
    }

    function test_the_editor_opens_below_the_row_and_has_the_keyboard() {
        const view = editing();
        const editor = named(view, "Choose custom accent color");
        verify(editor.activeFocus);
        tryVerify(() => editor.mapToItem(view, 0, 0).y > named(view, "Custom accent color").mapToItem(view, 0, 28).y);
        verify(named(view, "Hue"));
        verify(named(view, "Accent hex color"));
    }

    function test_closing_the_editor_gives_the_keyboard_back() {
        const view = editing();
        keyClick(Qt.Key_Escape);
        verify(!named(view, "Custom accent"));
        verify(named(view, "Custom accent color").activeFocus);
        keyClick(Qt.Key_Space);
        press(view, "Close color editor");
        verify(!world.settings.appearance.isEditing);
    }

    function test_a_text_that_is_no_colour_says_why_and_changes_nothing() {
        const view = editing();
        const field = named(view, "Accent hex color");
        field.forceActiveFocus();
        field.selectAll();
        for (const letter of "#12345") {
            keyClick(letter);
        }
        verify(named(view, "Enter a six-digit hex color, like #CBDDA5."));
        verify(Qt.colorEqual(world.settings.appearance.accent, "#CBDDA5"));
        keyClick("6");
        verify(!named(view, "Enter a six-digit hex color, like #CBDDA5."));
        verify(Qt.colorEqual(world.settings.appearance.accent, "#123456"));
    }

    function test_the_arrow_keys_move_the_picker() {
        const view = editing();
        const form = world.settings.appearance;
        form.pick(0.5, 0.5, 0.5);
        keyClick(Qt.Key_Right);
        fuzzyCompare(form.saturation, 0.52, 0.001);
        keyClick(Qt.Key_Down);
        fuzzyCompare(form.brightness, 0.48, 0.001);
        compare(named(view, "Choose custom accent color").Accessible.description, "Saturation 52 percent, brightness 48 percent");
        const hue = named(view, "Hue");
        hue.forceActiveFocus();
        keyClick(Qt.Key_Right);
        compare(hue.value, 184);
        hue.value = 90; // as a screen reader sets it
        fuzzyCompare(form.hue, 0.25, 0.001);
        form.pick(0.5, 1, 1);
        compare(hue.value, 180);
    }

    function test_the_pointer_moves_the_picker() {
        const view = editing();
        const field = named(view, "Choose custom accent color");
        mousePress(field, field.width / 2, field.height / 4);
        fuzzyCompare(world.settings.appearance.saturation, 0.5, 0.02);
        fuzzyCompare(world.settings.appearance.brightness, 0.75, 0.02);
        mouseMove(field, field.width + 50, -50);
        mouseRelease(field, field.width + 50, -50);
        fuzzyCompare(world.settings.appearance.saturation, 1, 0.001);
        fuzzyCompare(world.settings.appearance.brightness, 1, 0.001);
        const hue = named(view, "Hue");
        mouseClick(hue, hue.width / 2, 5);
        fuzzyCompare(world.settings.appearance.hue, 0.5, 0.02);
    }

    // Desktop.

    function test_the_start_with_the_desktop_is_switched() {
        const view = createTemporaryObject(page, test);
        press(view, "Start with the desktop");
        verify(named(view, "Start with the desktop").Accessible.checked);
        verify(world.settings.desktop.startsWithDesktop);
    }

    function test_the_screen_of_the_panel_is_chosen_from_a_menu() {
        const view = createTemporaryObject(page, test);
        const button = named(view, "Screen of the panel: Primary screen");
        compare(button.Accessible.role, Accessible.ButtonMenu);
        button.forceActiveFocus();
        keyClick(Qt.Key_Down);
        compare(world.menuEntries(), ["Primary screen", "Screen with the pointer", "", "DP-1 · Panorama"]);
    }

    function test_the_side_of_the_panel_is_chosen() {
        const view = createTemporaryObject(page, test);
        press(view, "Right");
        compare(world.settings.desktop.side, 2);
        verify(named(view, "Right").Accessible.checked);
    }

    function test_the_sheet_shows_all_keys_and_closes() {
        const view = createTemporaryObject(page, test);
        press(view, "Show keys");
        verify(world.settings.isShowingKeys);
        const sheet = createTemporaryObject(keys, test);
        const spy = createTemporaryObject(closings, test, {target: sheet});
        sheet.forceActiveFocus();
        verify(named(sheet, "New client, Ctrl+N"));
        verify(named(sheet, "Keyboard shortcuts, F1 or Ctrl+?"));
        verify(named(sheet, "Delete the session, Delete"));
        keyClick(Qt.Key_Escape);
        compare(spy.count, 1);
    }

    function test_the_sheet_of_keys_fits_into_a_low_window_and_scrolls() {
        desktop.scaleText(1.5);
        const sheet = createTemporaryObject(lowKeys, test);
        sheet.forceActiveFocus();
        const row = named(sheet, "Delete the session, Delete");
        const before = row.mapToItem(sheet, 0, 0).y;
        keyClick(Qt.Key_End);
        verify(row.mapToItem(sheet, 0, 0).y < before);
        verify(row.mapToItem(sheet, 0, 0).y + row.height <= 300);
    }

    function test_the_sheet_of_keys_is_whole_with_large_text_data() {
        return [{tag: "as usual", scale: 1}, {tag: "larger", scale: 1.5}, {tag: "much larger", scale: 2}];
    }

    function test_the_sheet_of_keys_is_whole_with_large_text(data) {
        desktop.scaleText(data.scale);
        const sheet = createTemporaryObject(keys, test);
        waitForRendering(sheet);
        compare(overflowing(sheet, sheet), []);
        for (const words of ["A year back, a year on", "Shift+Page Up, Shift+Page Down"]) {
            const text = textOf(sheet, words);
            verify(text.width >= 100, `${words} in ${text.width}`);
            verify(text.height <= text.parent.height);
        }
    }

    // Keys and room.

    function test_what_has_the_keyboard_is_scrolled_into_view() {
        const view = createTemporaryObject(page, test, {height: 200});
        const header = named(view, "How tracking works");
        header.forceActiveFocus();
        const top = header.mapToItem(view, 0, 0).y;
        verify(top >= 0 && top + header.height <= view.height, top);
        named(view, "Notch controls").forceActiveFocus();
        verify(named(view, "Notch controls").mapToItem(view.page, 0, 0).y >= 0);
    }

    function test_keys_scroll_the_page() {
        const view = createTemporaryObject(page, test, {height: 200});
        view.page.forceActiveFocus();
        keyClick(Qt.Key_Down);
        verify(view.page.contentY > 0);
        keyClick(Qt.Key_End);
        compare(view.page.contentY, view.page.contentHeight - view.page.height);
        keyClick(Qt.Key_PageUp);
        verify(view.page.contentY < view.page.contentHeight - view.page.height);
        keyClick(Qt.Key_Home);
        compare(view.page.contentY, 0);
    }

    function test_what_had_the_keyboard_has_it_again_after_a_sheet() {
        const view = createTemporaryObject(page, test);
        const button = named(view, "Open folder");
        button.forceActiveFocus();
        view.enabled = false;
        verify(!button.activeFocus);
        view.enabled = true;
        tryVerify(() => button.activeFocus);
    }

    function test_nothing_is_cut_off_data() {
        return [{tag: "as usual", width: 520, scale: 1}, {tag: "larger", width: 520, scale: 1.5},
            {tag: "much larger", width: 520, scale: 2}, {tag: "wide", width: 1000, scale: 1.5}];
    }

    function test_nothing_is_cut_off(data) {
        desktop.scaleText(data.scale);
        const view = createTemporaryObject(page, test, {width: data.width});
        named(view, "How tracking works").Accessible.pressAction();
        wait(0);
        for (const text of texts(view)) {
            const place = text.mapToItem(view.page.contentItem, 0, 0);
            verify(!text.truncated, `${text.text} of ${text.implicitWidth} in ${text.width}`);
            verify(text.contentWidth <= text.width + 1, text.text);
            verify(place.x >= 0 && place.x + text.contentWidth <= view.width, text.text);
        }
        for (const each of all(view, each => each instanceof SettingsRow)) {
            const words = texts(each)[0].parent;
            verify(words.y >= 0 && words.y + words.height <= each.height, each.title);
        }
    }

    function test_the_sheet_of_keys_says_both_lines_of_its_heading() {
        const view = createTemporaryObject(keys, test);
        compare(named(view, "Keys of this window").Accessible.role, Accessible.StaticText);
        const headings = all(view, each => each.Accessible.role === Accessible.Heading);
        compare(headings[0].Accessible.name, "Keyboard shortcuts");
    }
}
