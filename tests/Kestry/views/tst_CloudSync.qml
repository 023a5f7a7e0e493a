import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test

    name: "CloudSync"
    width: 520
    height: 900

    Component {
        id: section
        CloudSyncSettings {
            width: 520
            cloud: test.world.cloud.bridge
        }
    }

    Component {
        id: sheet
        SignInSheet {
            width: 520
            height: 600
            form: test.world.cloud.bridge.signIn
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

    function press(item, name): void {
        const target = named(item, name);
        verify(target, name);
        target.forceActiveFocus();
        keyClick(Qt.Key_Space);
    }

    function shown(): var {
        return createTemporaryObject(section, test);
    }

    function test_a_ledger_that_was_never_connected_has_a_switch_and_a_note_alone() {
        const view = shown();
        verify(!named(view, "iCloud sync").Accessible.checked);
        compare(named(view, "Sync now"), null);
        compare(named(view, "Sync details"), null);
        verify(all(view, each => (each.text ?? "").startsWith("Clients, projects, and history")).length === 1);
    }

    function test_the_switch_turns_it_on_and_waits_meanwhile() {
        const view = shown();
        press(view, "iCloud sync");
        const control = named(view, "iCloud sync");
        verify(!control.enabled);
        test.world.cloud.answerAll();
        verify(control.enabled);
        verify(control.Accessible.checked);
        verify(named(view, "Sync details"));
    }

    function test_the_button_tells_that_records_are_exchanged() {
        test.world.cloud.connectLedger();
        const view = shown();
        press(view, "Sync now");
        verify(named(view, "Syncing…"));
        test.world.cloud.answerAll();
        verify(named(view, "Sync now"));
        compare(named(view, "Sync now").symbolTurn, 0);
    }

    function test_a_failure_is_shown_in_full() {
        test.world.cloud.connectLedger();
        const view = shown();
        const words = "The cloud is closed on Sundays, and on all days on which nobody would look for "
            + "records anyway. Try again on Monday.";
        test.world.cloud.failNext(words);
        press(view, "Sync now");
        test.world.cloud.answerAll();
        const message = named(view, words);
        verify(message);
        verify(all(message, each => each instanceof Text).every(each => !each.truncated));
    }

    function test_details_are_closed_at_first_and_say_when_there_are_none() {
        test.world.cloud.connectLedger();
        const view = shown();
        const none = "No sessions on other devices, and nothing to review.";
        compare(named(view, none), null);
        press(view, "Sync details");
        verify(named(view, none));
    }

    function test_a_session_elsewhere_is_told_and_cannot_be_pressed() {
        test.world.cloud.connectLedger();
        test.world.cloud.bringSession("Studio");
        const view = shown();
        press(view, "Sync details");
        const row = named(view, "Session on Studio, Studio · Running when last synced · 0h 30m");
        verify(row);
        compare(all(row, each => each instanceof Pressable).length, 0);
    }

    function test_a_conflict_is_compared_and_decided(data) {
        test.world.cloud.connectLedger();
        test.world.cloud.bringConflict("Acme Ltd", "Acme & Sons");
        const view = shown();
        press(view, "Sync details");
        verify(named(view, "Two versions need your review"));
        verify(named(view, "Name, differs, on this Mac Acme Ltd, iCloud Acme & Sons"));
        press(view, data.button);
        compare(named(view, "Two versions need your review"), null);
        compare(test.world.cloud.isClientPending(), data.isPending);
        compare(named(view, "Sync details").activeFocus, true);
    }

    function test_a_conflict_is_compared_and_decided_data() {
        return [
            {tag: "here", button: "Keep this Mac’s version", isPending: true},
            {tag: "there", button: "Use iCloud version", isPending: false}
        ];
    }

    function test_a_difference_has_a_mark_and_not_only_a_colour() {
        test.world.cloud.connectLedger();
        test.world.cloud.bringConflict("Acme Ltd", "Acme & Sons");
        const view = shown();
        press(view, "Sync details");
        const differing = named(view, "Name, differs, on this Mac Acme Ltd, iCloud Acme & Sons");
        compare(all(differing, each => each.text === "≠").length, 1);
        const equal = all(view, each => each.Accessible.name.startsWith("Projects, on this Mac"))[0];
        compare(all(equal, each => each.text === "≠").length, 0);
    }

    function test_nothing_is_cut_off_in_a_narrow_window_with_large_text() {
        desktop.scaleText(1.5);
        test.world.cloud.connectLedger();
        test.world.cloud.bringConflict("Donaudampfschifffahrtsgesellschaft", "A name of many words that needs two lines");
        const view = shown();
        view.width = 400;
        press(view, "Sync details");
        for (const each of all(view, item => item instanceof Text)) {
            verify(!each.truncated, each.text);
            const right = each.mapToItem(view, each.width, 0).x;
            verify(right <= view.width + 0.5, each.text + " ends at " + right);
        }
    }

    function typeInto(label, words): void {
        const field = all(test, each => each.Accessible.role === Accessible.EditableText
            && each.Accessible.name === label && !each.Accessible.ignored)[0];
        verify(field, label);
        field.forceActiveFocus();
        for (const letter of words) {
            keyClick(letter);
        }
    }

    function test_the_user_signs_in_by_keyboard_and_out_again() {
        const view = shown();
        verify(named(view, "Record store, Not signed in"));
        press(view, "Sign in…");
        const form = createTemporaryObject(sheet, test);
        typeInto("Address", "https://example.org/hours");
        typeInto("User", "mia");
        typeInto("Password", "sesame");
        keyClick(Qt.Key_Return);
        verify(named(form, "Signing in…"));
        test.world.cloud.answerAll();
        verify(!form.visible);
        verify(named(view, "Record store, mia · https://example.org/hours"));
        press(view, "Sign out");
        verify(named(view, "Record store, Not signed in"));
        verify(named(view, "Sign in…").activeFocus);
    }

    function test_a_password_is_neither_shown_nor_told() {
        test.world.cloud.bridge.signIn.open();
        const form = createTemporaryObject(sheet, test);
        typeInto("Password", "sesame");
        const field = all(form, each => each instanceof SecretField)[0];
        compare(field.secret, "sesame");
        const line = all(field, each => each instanceof TextInput)[0];
        verify(line.displayText.indexOf("s") < 0);
        verify(line.activeFocus);
        verify(line.Accessible.ignored);
        // What stands for it has a name, the keyboard, and no text.
        const told = named(field, "Password");
        verify(told.activeFocus);
        compare(told.text, undefined);
    }

    function test_a_refusal_stands_in_the_form_and_escape_leaves_it() {
        test.world.cloud.bridge.signIn.open();
        const form = createTemporaryObject(sheet, test);
        keyClick(Qt.Key_Return);
        verify(named(form, "Enter the address of the record store."));
        keyClick(Qt.Key_Escape);
        verify(!form.visible);
    }

    function test_the_form_fits_a_low_window_with_large_text() {
        desktop.scaleText(1.5);
        test.world.cloud.bridge.signIn.open();
        const form = createTemporaryObject(sheet, test, {height: 300});
        const button = named(form, "Sign in");
        button.forceActiveFocus();
        const bottom = button.mapToItem(form, 0, button.height).y;
        verify(bottom <= 300, "the button ends at " + bottom);
    }
}
