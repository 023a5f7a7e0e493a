import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test

    name: "Updates"
    width: 760
    height: 520

    Component {
        id: section
        SoftwareUpdateSettings {
            width: 480
            updates: test.world.updates.bridge
        }
    }

    Component {
        id: sheet
        UpdateSheet {
            width: 760
            height: 520
            updates: test.world.updates.bridge
            mayShow: true
        }
    }

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

    function buttons(item): var {
        return all(item, each => each instanceof Pressable).map(each => each.label);
    }

    function dialog(item): var {
        return all(item, each => each.Accessible.role === Accessible.Dialog)[0] ?? null;
    }

    /// The name of what has the keyboard.
    function focused(): string {
        return test.Window.window.activeFocusItem?.Accessible.name ?? "";
    }

    // The settings.

    function test_a_build_without_updates_says_so_and_offers_nothing() {
        const view = createTemporaryObject(section, test);
        verify(named(view, "Check for updates, Software updates are not enabled in this build."));
        compare(named(view, "Check automatically").Accessible.description, "You choose when to install. Not available");
        verify(!named(view, "Check automatically").enabled);
        verify(!named(view, "Check now").enabled);
        compare(named(view, "Check now").Accessible.description, "Not available");
        named(view, "Check automatically").Accessible.toggleAction();
        named(view, "Check now").Accessible.pressAction();
        verify(!test.world.updates.bridge.isAutomatic);
    }

    function test_the_switch_is_thrown_by_keyboard() {
        test.world.updates.enable();
        const view = createTemporaryObject(section, test);
        const control = named(view, "Check automatically");
        compare(control.Accessible.description, "You choose when to install");
        control.forceActiveFocus();
        keyClick(Qt.Key_Space);
        verify(control.Accessible.checked);
        keyClick(Qt.Key_Space);
        verify(!control.Accessible.checked);
    }

    function test_the_button_checks_and_the_row_says_so() {
        test.world.updates.enable();
        const view = createTemporaryObject(section, test);
        verify(named(view, "Check for updates, Updates are ready to check."));
        named(view, "Check now").forceActiveFocus();
        keyClick(Qt.Key_Return);
        compare(test.world.updates.told, ["check"]);
        verify(named(view, "Check for updates, Checking for updates…"));
    }

    // The sheet.

    /// The sheet, with an update that was found.
    function found(): var {
        test.world.updates.enable();
        const view = createTemporaryObject(sheet, test);
        verify(!dialog(view));
        test.world.updates.found();
        return view;
    }

    function test_what_was_found_is_told_and_nothing_of_it_is_done_unasked() {
        const view = found();
        compare(dialog(view).Accessible.name, "An update is available.");
        compare(dialog(view).Accessible.description, "Kestry 1.3.0 · 24.0 MB\nYou have Kestry 1.2.0.");
        compare(named(dialog(view).children[1], "An update is available.").Accessible.role, Accessible.Heading);
        compare(buttons(view), ["Release notes", "Later", "Install and Relaunch"]);
        compare(focused(), "Later");
        compare(test.world.updates.told, []);
    }

    function test_an_update_is_installed_by_keyboard_alone() {
        found();
        keyClick(Qt.Key_Tab);
        compare(focused(), "Install and Relaunch");
        keyClick(Qt.Key_Space);
        compare(test.world.updates.told, ["install"]);
    }

    function test_an_update_is_left_by_its_button_and_by_escape() {
        const view = found();
        mouseClick(named(view, "Later"));
        keyClick(Qt.Key_Escape);
        compare(test.world.updates.told, ["dismiss", "dismiss"]);
        test.world.updates.end();
        verify(!view.visible);
        compare(dialog(view), null);
    }

    function test_the_release_notes_are_a_link_that_opens_their_page() {
        const view = found();
        const link = named(view, "Release notes");
        compare(link.Accessible.role, Accessible.Link);
        link.forceActiveFocus();
        keyClick(Qt.Key_Return);
        compare(test.world.updates.opened, "https://kestry.example/notes/1.3.0");
    }

    function test_an_update_without_a_page_has_no_link() {
        test.world.updates.enable();
        test.world.updates.announce("1.4.0");
        const view = createTemporaryObject(sheet, test);
        test.world.updates.found();
        compare(buttons(view), ["Later", "Install and Relaunch"]);
    }

    function test_a_download_shows_how_far_it_is() {
        const view = found();
        named(view, "Install and Relaunch").forceActiveFocus();
        test.world.updates.download(0.25);
        const line = all(view, each => each instanceof ProgressLine)[0];
        compare(line.Accessible.role, Accessible.ProgressBar);
        compare(line.Accessible.name, "Downloading Kestry 1.3.0");
        compare(line.Accessible.description, "25 %");
        compare(line.children[0].width, 0.25 * line.width);
        test.world.updates.download(0.5);
        compare(line.Accessible.description, "50 %");
        compare(dialog(view).Accessible.description, "12.0 MB of 24.0 MB");
    }

    function test_the_keyboard_is_not_lost_with_a_button_that_goes() {
        const view = found();
        named(view, "Install and Relaunch").forceActiveFocus();
        test.world.updates.download(0);
        compare(focused(), "Cancel");
        keyClick(Qt.Key_Space);
        compare(test.world.updates.told, ["dismiss"]);
    }

    function test_while_it_is_installed_it_cannot_be_left() {
        const view = found();
        test.world.updates.unpacking();
        verify(!named(view, "Cancel").enabled);
        mouseClick(named(view, "Cancel"));
        named(view, "Cancel").Accessible.pressAction();
        keyClick(Qt.Key_Escape);
        compare(test.world.updates.told, []);
        test.world.updates.ready();
        compare(focused(), "Later");
    }

    function test_a_failure_is_told_in_words() {
        const view = found();
        test.world.updates.fail("The download does not carry the signature of Kestry.");
        compare(dialog(view).Accessible.name, "Kestry 1.3.0 could not be installed.");
        compare(dialog(view).Accessible.description, "The download does not carry the signature of Kestry.");
        compare(buttons(view), ["OK"]);
        compare(focused(), "OK");
        keyClick(Qt.Key_Return);
        compare(test.world.updates.told, ["dismiss"]);
    }

    function test_a_check_that_finds_nothing_ends_with_one_word() {
        test.world.updates.enable();
        const view = createTemporaryObject(sheet, test);
        test.world.updates.checking();
        compare(buttons(view), ["Cancel"]);
        test.world.updates.upToDate();
        compare(dialog(view).Accessible.name, "You’re up to date.");
        compare(buttons(view), ["OK"]);
    }

    function test_each_step_is_told_to_those_who_listen() {
        const view = found();
        const live = Array.from(dialog(view).children).find(each => each instanceof LiveMessage);
        tryCompare(live, "told", "An update is available.");
        test.world.updates.unpacking();
        tryCompare(live, "told", "Installing Kestry 1.3.0");
    }

    function test_nothing_is_cut_off_in_a_small_window_with_large_text_data() {
        return [{tag: "usual", version: "1.3.0"},
            {tag: "long", version: "2026.11.23-beta.4+build.20261123.a1b2c3d4e5f6a7b8c9d0e1f2a3b4c5d6"},
            {tag: "right to left", version: "١٫٣ إصدار تجريبي"}, {tag: "emoji", version: "1.3 🎉🎉🎉"}];
    }

    function test_nothing_is_cut_off_in_a_small_window_with_large_text(data) {
        desktop.scaleText(1.5);
        test.world.updates.enable();
        test.world.updates.announce(data.version);
        const view = createTemporaryObject(sheet, test);
        for (const step of ["found", "unpacking", "ready"]) {
            test.world.updates[step]();
            compare(overflowing(view, view), []);
            compare(all(view, each => each instanceof Text && each.truncated).map(each => each.text), []);
            for (const button of all(view, each => each instanceof Pressable)) {
                const place = button.mapToItem(view, 0, 0);
                verify(place.x >= 0 && place.x + button.width <= 760, button.label);
                verify(place.y >= 0 && place.y + button.height <= 520, button.label);
            }
        }
    }

    function test_the_section_keeps_its_texts_whole_in_a_narrow_window_with_large_text() {
        desktop.scaleText(1.5);
        const view = createTemporaryObject(section, test);
        view.width = 400;
        compare(overflowing(view, view), []);
        compare(all(view, each => each instanceof Text && each.truncated).map(each => each.text), []);
    }
}
