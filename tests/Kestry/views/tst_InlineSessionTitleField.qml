import QtQuick
import QtTest
import Kestry

ViewTest {
    id: test

    name: "InlineSessionTitleField"

    Component {
        id: fields
        InlineSessionTitleField {
            width: 300
            height: 28
            suggestions: ["Design exploration"]
        }
    }

    SignalSpy { id: submitted; signalName: "submitted" }
    SignalSpy { id: cancelled; signalName: "cancelled" }
    SignalSpy { id: editing; signalName: "editingChanged" }
    SignalSpy { id: edited; signalName: "edited" }

    function make(properties) {
        const field = createTemporaryObject(fields, test, properties ?? {});
        for (const spy of [submitted, cancelled, editing, edited]) {
            spy.target = field;
            spy.clear();
        }
        return field;
    }

    function makeEditing(properties) {
        const field = make(properties);
        input(field).forceActiveFocus();
        tryCompare(input(field), "activeFocus", true);
        return field;
    }

    function input(field) { return findChild(field, "input"); }
    function ghost(field) { return findChild(field, "ghost").text; }

    function type(letters) {
        for (const letter of letters) {
            keyClick(letter);
        }
    }

    function test_shows_the_rest_of_the_suggestion_and_keeps_what_was_typed() {
        const field = makeEditing();
        type("design");
        compare(ghost(field), " exploration");
        keyClick(Qt.Key_Right);
        compare(field.text, "design exploration");
        compare(input(field).cursorPosition, 18);
        compare(ghost(field), "");
    }

    function test_the_ghost_stands_at_the_caret() {
        const field = makeEditing();
        type("design");
        const faded = findChild(field, "ghost");
        compare(faded.x, input(field).cursorRectangle.x);
        compare(Math.round(faded.y + faded.height / 2), 14);
    }

    function test_accepting_is_a_change_that_undo_takes_back() {
        const field = makeEditing();
        type("design");
        edited.clear();
        keyClick(Qt.Key_Right);
        verify(edited.count > 0);
        input(field).undo(); // all that was typed in one go
        compare(field.text, "");
        input(field).redo();
        compare(field.text, "design exploration");
    }

    function test_blanks_have_no_ghost() {
        const field = makeEditing({suggestions: ["   Design"]});
        type("   ");
        compare(ghost(field), "");
    }

    function test_a_text_equal_to_a_suggestion_has_no_ghost() {
        const field = makeEditing();
        type("Design exploration");
        compare(ghost(field), "");
    }

    function test_a_caret_left_of_the_end_has_no_ghost_and_right_moves_it() {
        const field = makeEditing();
        type("design");
        keyClick(Qt.Key_Left);
        compare(ghost(field), "");
        keyClick(Qt.Key_Right);
        compare(input(field).cursorPosition, 6);
        compare(field.text, "design");
        compare(ghost(field), " exploration");
    }

    function test_a_selection_has_no_ghost() {
        const field = makeEditing();
        type("design");
        input(field).selectAll();
        compare(ghost(field), "");
    }

    function test_a_suggestion_too_long_for_the_field_has_no_ghost() {
        const field = makeEditing({width: 60});
        type("design");
        compare(ghost(field), "");
        keyClick(Qt.Key_Right);
        compare(field.text, "design");
        field.width = 300;
        compare(ghost(field), " exploration");
    }

    function test_the_first_suggestion_that_goes_on_is_taken() {
        const field = makeEditing({suggestions: ["Logo", "Design review", "Design exploration"]});
        type("des");
        compare(ghost(field), "ign review");
    }

    function test_there_is_no_ghost_without_the_keyboard() {
        const field = make();
        field.text = "design";
        compare(ghost(field), "");
    }

    function test_the_ghost_goes_when_editing_ends() {
        const field = makeEditing();
        type("design");
        input(field).focus = false;
        compare(ghost(field), "");
        compare(editing.signalArguments.map(given => given[0]), [true, false]);
    }

    function test_right_with_shift_selects_as_usual() {
        const field = makeEditing();
        type("design");
        keyClick(Qt.Key_Right, Qt.ShiftModifier);
        compare(field.text, "design");
    }

    function test_return_submits_and_escape_cancels() {
        const field = makeEditing();
        type("design");
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Enter);
        compare(submitted.count, 2);
        keyClick(Qt.Key_Escape);
        compare(cancelled.count, 1);
        compare(field.text, "design");
    }

    function test_while_an_input_method_composes_there_is_no_ghost_and_return_confirms() {
        renewWorld();
        const field = makeEditing();
        type("design");
        world.compose(input(field), "e");
        compare(ghost(field), "");
        keyClick(Qt.Key_Return);
        keyClick(Qt.Key_Right);
        compare(submitted.count, 0);
        world.commit(input(field), " e");
        compare(field.text, "design e");
        compare(ghost(field), "xploration");
        keyClick(Qt.Key_Return);
        compare(submitted.count, 1);
    }

    function test_appearing_takes_the_keyboard_and_selects_all_once() {
        const field = make({text: "Drawing", focusOnAppearance: true});
        tryCompare(input(field), "activeFocus", true);
        tryCompare(input(field), "selectedText", "Drawing");
        verify(field.requestedInitialFocus);
    }

    function test_a_second_update_takes_neither_keyboard_nor_selection() {
        const field = make({text: "Drawing", focusOnAppearance: true});
        tryCompare(input(field), "selectedText", "Drawing");
        input(field).deselect();
        input(field).focus = false;
        field.focusOnAppearance = false;
        field.focusOnAppearance = true;
        wait(50);
        verify(!input(field).activeFocus);
        compare(input(field).selectedText, "");
    }

    function test_says_what_it_is_and_how_to_complete() {
        const field = make();
        compare(input(field).Accessible.name, "Session title");
        compare(input(field).Accessible.description,
            "Type a title. Press Right Arrow at the end to accept a suggested completion.");
        verify(findChild(field, "ghost").Accessible.ignored);
    }

    function test_an_empty_field_says_what_belongs_there() {
        const field = makeEditing();
        compare(findChild(field, "placeholder").text, "Session title");
        verify(findChild(field, "placeholder").visible);
        type("d");
        verify(!findChild(field, "placeholder").visible);
    }
}
