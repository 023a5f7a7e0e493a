import QtQuick
import QtTest
import Kestry

ViewTest {
    id: test

    name: "SessionTitle"

    readonly property string longTitle: "The annual report of the shipping company, second draft"

    Component { id: titles; SessionTitle { width: 160; height: 28 } }

    function init() {
        renewWorld();
        world.addClient("Aster");
        world.addProject("Site");
    }

    function make(title) {
        world.start(title);
        const item = createTemporaryObject(titles, test,
            {session: world.session, surface: world.surface, menus: world.menus});
        restPointer();
        world.clearReports();
        return item;
    }

    function label(item) { return findChild(item, "label"); }
    function input(item) { return findChild(item, "input"); }

    function beginEditing(item) {
        mouseDoubleClickSequence(label(item), 20, 14);
        tryVerify(() => input(item).activeFocus);
    }

    function test_shows_the_title_and_the_project() {
        const item = make("Drawing");
        compare(findChild(item, "first").text, "Drawing");
        compare(findChild(item, "second").text, "Site");
        compare(label(item).Accessible.name, "Session title: Drawing");
        compare(label(item).Accessible.description, "Double-click or press Return to edit");
    }

    function test_a_session_without_a_title_is_called_by_its_project_once() {
        const item = make("");
        compare(findChild(item, "first").text, "Site");
        verify(!findChild(item, "second").visible);
    }

    function test_a_title_is_no_markup() {
        const item = make("<b>Bold</b>");
        compare(findChild(item, "first").textFormat, Text.PlainText);
    }

    function test_a_double_click_edits_with_all_selected() {
        const item = make("Drawing");
        beginEditing(item);
        tryCompare(input(item), "selectedText", "Drawing");
        compare(world.reports, ["dismissPreview", "editing"]);
        compare(item.renamingSessionID, world.session.sessionID);
    }

    function test_return_edits_while_the_title_has_the_keyboard() {
        const item = make("Drawing");
        label(item).forceActiveFocus();
        keyClick(Qt.Key_Return);
        verify(item.isEditing);
    }

    function test_return_writes_the_title_and_ends() {
        const item = make("Drawing");
        beginEditing(item);
        keyClick("L");
        keyClick(Qt.Key_Return);
        compare(world.session.title, "L");
        verify(!item.isEditing);
        compare(world.reports.slice(-1), ["edited"]);
        compare(world.reports.filter(report => report === "edited").length, 1);
    }

    function test_escape_ends_without_writing() {
        const item = make("Drawing");
        beginEditing(item);
        keyClick("L");
        keyClick(Qt.Key_Escape);
        compare(world.session.title, "Drawing");
        verify(!item.isEditing);
        compare(world.reports.slice(-1), ["edited"]);
    }

    function test_earlier_titles_complete_a_typed_one() {
        world.start("Design exploration");
        world.advance(60);
        world.session.stop();
        const item = make("");
        item.width = 300;
        beginEditing(item);
        for (const letter of "design") {
            keyClick(letter);
        }
        compare(findChild(item, "ghost").text, " exploration");
        keyClick(Qt.Key_Right);
        keyClick(Qt.Key_Return);
        compare(world.session.title, "design exploration");
    }

    function test_an_edit_ends_with_the_session_that_it_began_with() {
        const item = make("Drawing");
        beginEditing(item);
        keyClick("L");
        world.session.stop();
        verify(!item.isEditing);
        world.start("Next");
        compare(world.session.title, "Next");
        verify(!item.isEditing);
    }

    function test_a_cleared_focus_ends_the_edit_without_writing() {
        const item = make("Drawing");
        beginEditing(item);
        keyClick("L");
        world.clearFocus();
        verify(!item.isEditing);
        compare(world.session.title, "Drawing");
    }

    function test_a_new_layout_ends_the_edit() {
        const item = make("Drawing");
        beginEditing(item);
        world.rebuild();
        verify(!item.isEditing);
    }

    function test_a_pause_does_not_end_the_edit() {
        const item = make("Drawing");
        beginEditing(item);
        world.session.pauseOrResume();
        verify(item.isEditing);
    }

    function test_the_context_menu_edits() {
        const item = make("Drawing");
        mouseClick(label(item), 20, 14, Qt.RightButton);
        compare(world.menus.asked, ["title"]);
        world.menus.editTitleChosen();
        verify(item.isEditing);
    }

    function test_pointing_at_a_title_that_does_not_fit_asks_to_see_it_whole() {
        const item = make(test.longTitle);
        mouseMove(label(item), 20, 14);
        tryVerify(() => world.reports.includes("preview " + test.longTitle));
        restPointer();
        tryVerify(() => world.reports.slice(-1)[0] === "dismissPreview");
    }

    function test_a_title_that_fits_asks_for_nothing() {
        const item = make("Drawing");
        mouseMove(label(item), 20, 14);
        wait(20);
        compare(world.reports, []);
    }

    function test_stopping_from_anywhere_writes_what_is_typed() {
        const item = make("Drawing");
        beginEditing(item);
        keyClick("L");
        world.workspace.stopSession();
        world.advance(0);
        verify(!item.isEditing);
        compare(world.entryTitles(), ["L"]);
    }

    function test_a_pause_writes_what_is_typed_and_the_edit_goes_on() {
        const item = make("Drawing");
        beginEditing(item);
        keyClick("L");
        world.workspace.toggleSession();
        compare(world.session.title, "L");
        verify(item.isEditing);
        compare(input(item).text, "L");
    }
}
