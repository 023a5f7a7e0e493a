import QtQuick
import QtTest
import Kestry

ViewTest {
    id: test

    name: "Sessions"
    width: 800
    height: 600

    Component {
        id: page
        SessionsView {
            anchors.fill: parent
            sessions: test.world.sessions
            exporter: test.world.exporter
        }
    }
    Component {
        id: dashboard
        SessionsView {
            width: 700
            sessions: test.world.clientSessions
            exporter: test.world.exporter
        }
    }
    Component { id: deletion; DeleteSessionSheet { anchors.fill: parent; deletion: test.world.deletion } }
    Component { id: destination; PathSheet { anchors.fill: parent; chooser: test.world.chooser } }

    function init(): void {
        renewWorld();
        restPointer();
        desktop.reduceMotion(true);
        world.addClient("Aster Studio");
    }

    function cleanup(): void {
        desktop.reduceMotion(false);
        desktop.scaleText(1);
    }

    /// The first visible thing in an item, or below it, whose accessible name a condition accepts.
    function find(item, accepts) {
        if (item.visible && accepts(item.Accessible.name)) {
            return item;
        }
        for (let index = 0; index < item.children.length; ++index) {
            const found = find(item.children[index], accepts);
            if (found) {
                return found;
            }
        }
        return null;
    }

    function named(item, name) {
        return find(item, each => each === name);
    }

    /// What is told at the moment; null when nothing is.
    function live(item) {
        if (item.visible && item.Accessible.role === Accessible.AlertMessage) {
            return item;
        }
        for (let index = 0; index < item.children.length; ++index) {
            const found = live(item.children[index]);
            if (found) {
                return found;
            }
        }
        return null;
    }

    /// The row of a saved session, or of the one in progress.
    function row(item, title) {
        return find(item, each => each.startsWith(title + ", "));
    }

    function press(item, name): void {
        const target = named(item, name);
        verify(target, name);
        mouseClick(target);
    }

    /// A page of sessions with these titles, the newest first, and the keyboard on its rows.
    function pageOf(titles) {
        titles.forEach((title, index) => world.save(title, index + 1));
        const view = createTemporaryObject(page, test);
        waitForRendering(view);
        view.forceActiveFocus();
        verify(row(view, titles[0]).activeFocus);
        return view;
    }

    function test_a_row_says_all_of_its_session() {
        const view = pageOf(["Design"]);
        verify(/^Design, Aster Studio, Unassigned, \w+ \d+, 30 minutes, /.test(row(view, "Design").Accessible.name));
    }

    function test_a_press_on_a_row_opens_its_form() {
        const view = pageOf(["Design"]);
        mouseClick(row(view, "Design"));
        verify(world.editorID.startsWith("entry-"));
    }

    function test_keys_move_from_row_to_row() {
        const view = pageOf(["One", "Two", "Three"]);
        keyClick(Qt.Key_Down);
        verify(row(view, "Two").activeFocus);
        verify(row(view, "Two").hasRing);
        keyClick(Qt.Key_End);
        verify(row(view, "Three").activeFocus);
        keyClick(Qt.Key_Down);
        verify(row(view, "Three").activeFocus);
        keyClick(Qt.Key_Home);
        verify(row(view, "One").activeFocus);
    }

    function test_page_keys_move_by_what_is_in_view() {
        const titles = [];
        for (let number = 0; number < 40; ++number) {
            titles.push("Session " + number);
        }
        const view = pageOf(titles);
        keyClick(Qt.Key_PageDown);
        verify(!row(view, "Session 0").activeFocus);
        keyClick(Qt.Key_PageUp);
        tryVerify(() => row(view, "Session 0")?.activeFocus);
        keyClick(Qt.Key_End);
        tryVerify(() => row(view, "Session 39")?.activeFocus);
    }

    function test_the_ring_is_for_the_keyboard_alone() {
        const view = pageOf(["One", "Two"]);
        mouseClick(row(view, "Two"));
        verify(row(view, "Two").activeFocus);
        verify(!row(view, "Two").hasRing);
    }

    function test_the_ring_shows_when_the_keyboard_comes_to_the_rows() {
        const view = pageOf(["One", "Two"]);
        mouseClick(row(view, "Two"));
        named(view, "Sort by Value").forceActiveFocus();
        keyClick(Qt.Key_Tab);
        verify(row(view, "Two").hasRing);
    }

    function test_tab_goes_into_the_rows_and_out_of_them() {
        const view = pageOf(["One", "Two"]);
        named(view, "Sort by Value").forceActiveFocus();
        keyClick(Qt.Key_Tab);
        verify(row(view, "One").activeFocus);
        keyClick(Qt.Key_Tab, Qt.ShiftModifier);
        verify(named(view, "Sort by Value").activeFocus);
    }

    function test_without_rows_they_are_no_stop_for_tab() {
        const view = createTemporaryObject(page, test);
        named(view, "Add time").forceActiveFocus();
        keyClick(Qt.Key_Tab);
        verify(named(view, "Search sessions").activeFocus);
    }

    function test_the_mark_of_the_place_is_seen_at_the_end_of_a_long_list() {
        const titles = [];
        for (let number = 0; number < 200; ++number) {
            titles.push("Session " + number);
        }
        const view = pageOf(titles);
        const mark = findChild(view, "scrollMark");
        compare(mark.y, 0);
        keyClick(Qt.Key_End);
        tryVerify(() => row(view, "Session 199")?.activeFocus);
        verify(mark.y > 0);
        fuzzyCompare(mark.y + mark.height, mark.parent.height, 1);
    }

    function test_typing_moves_to_a_row_that_begins_so() {
        const view = pageOf(["Design", "Review"]);
        keyClick("r");
        verify(row(view, "Review").activeFocus);
    }

    function test_return_edits() {
        pageOf(["Design"]);
        keyClick(Qt.Key_Return);
        verify(world.editorID.startsWith("entry-"));
    }

    function test_the_menu_key_opens_the_menu_of_the_row() {
        pageOf(["Design"]);
        keyClick(Qt.Key_Menu);
        compare(world.menuEntries(), ["Edit session", "Delete session"]);
    }

    function test_the_right_button_opens_the_menu_of_the_row() {
        const view = pageOf(["Design"]);
        mouseClick(row(view, "Design"), 40, 10, Qt.RightButton);
        compare(world.menuEntries(), ["Edit session", "Delete session"]);
        compare(world.editorID, "");
    }

    function test_delete_asks_with_the_keyboard_on_cancel() {
        pageOf(["Design"]);
        const sheet = createTemporaryObject(deletion, test);
        verify(!sheet.visible);
        keyClick(Qt.Key_Delete);
        verify(sheet.visible);
        const question = named(sheet, "Delete this session?");
        compare(question.Accessible.description, "This removes the session and its earnings from your totals. This cannot be undone.");
        verify(named(sheet, "Cancel").activeFocus);
        keyClick(Qt.Key_Return);
        verify(!sheet.visible);
        compare(world.sessions.list.rows.rowCount(), 1);
    }

    function test_a_confirmed_deletion_deletes() {
        const view = pageOf(["One", "Two", "Three"]);
        const sheet = createTemporaryObject(deletion, test);
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Delete);
        press(sheet, "Delete session");
        world.advance(0);
        compare(world.sessions.list.rows.rowCount(), 2);
        tryVerify(() => !row(view, "Two"));
        view.forceActiveFocus();
        verify(row(view, "Three").activeFocus);
    }

    function test_escape_leaves_the_session() {
        pageOf(["Design"]);
        const sheet = createTemporaryObject(deletion, test);
        keyClick(Qt.Key_Delete);
        keyClick(Qt.Key_Escape);
        verify(!sheet.visible);
        compare(world.sessions.list.rows.rowCount(), 1);
    }

    function test_the_row_focus_stays_with_its_session() {
        const view = pageOf(["One", "Two", "Three"]);
        keyClick(Qt.Key_Down);
        world.save("New", 0.5);
        tryVerify(() => row(view, "New"));
        verify(row(view, "Two").activeFocus);
    }

    function test_the_search_limits_the_rows_while_typing() {
        const view = pageOf(["Design", "Review"]);
        view.beginSearch();
        verify(!named(view, "Clear search"));
        keyClick("r");
        keyClick("e");
        verify(!row(view, "Design"));
        verify(row(view, "Review"));
        verify(named(view, "1 sessions"));
        press(view, "Clear search");
        verify(row(view, "Design"));
        verify(named(view, "Search sessions").activeFocus);
    }

    function test_escape_clears_the_search() {
        const view = pageOf(["Design"]);
        view.beginSearch();
        keyClick("x");
        verify(named(view, "No matching sessions. Try a different client, project, or description."));
        keyClick(Qt.Key_Escape);
        verify(row(view, "Design"));
    }

    function test_down_leads_from_the_search_to_the_rows() {
        const view = pageOf(["Design"]);
        view.beginSearch();
        keyClick(Qt.Key_Down);
        verify(row(view, "Design").activeFocus);
    }

    function test_down_stays_in_a_search_that_finds_nothing() {
        const view = pageOf(["Design"]);
        view.beginSearch();
        keyClick("x");
        keyClick(Qt.Key_Down);
        verify(named(view, "Search sessions").activeFocus);
    }

    function test_down_leads_to_the_session_in_progress_where_it_alone_is_found() {
        world.start("Review");
        const view = pageOf(["Design"]);
        view.beginSearch();
        keyClick("r");
        keyClick("e");
        keyClick(Qt.Key_Down);
        verify(named(view, "Review, Aster Studio, Unassigned, Live").activeFocus);
    }

    function test_what_a_search_finds_is_told_to_those_who_listen() {
        const view = pageOf(["Design", "Review"]);
        view.beginSearch();
        keyClick("r");
        keyClick("e");
        tryVerify(() => live(view)?.Accessible.name === "1 sessions");
    }

    function test_a_column_sorts_and_says_so() {
        const view = pageOf(["Alpha", "Beta"]);
        compare(named(view, "Sort by Session").Accessible.description,
            "Not sorted. Activate to sort ascending");
        press(view, "Sort by Date");
        compare(named(view, "Sort by Date").Accessible.description,
            "Sorted ascending. Activate to sort descending");
        verify(row(view, "Beta").y < row(view, "Alpha").y);
    }

    function test_all_of_a_row_is_seen_in_the_smallest_window_data() {
        return [{tag: "100 %", scale: 1}, {tag: "125 %", scale: 1.25}, {tag: "150 %", scale: 1.5}];
    }

    /// The page beside the sidebar of the smallest window, with texts as large as wanted.
    function smallPage(scale) {
        desktop.scaleText(scale);
        const view = createTemporaryObject(page, test);
        view.anchors.fill = undefined;
        view.width = 520;
        view.height = 520;
        waitForRendering(view);
        return view;
    }

    function isSeen(text): bool {
        return text && text.visible && !text.truncated && text.contentWidth <= text.width;
    }

    function place(item, view) {
        return item.mapToItem(view, 0, 0, item.width, item.height);
    }

    function test_all_of_a_row_is_seen_in_the_smallest_window(data) {
        world.save("Design", 1);
        world.start("Review");
        const view = smallPage(data.scale);
        const saved = row(view, "Design");
        verify(isSeen(textOf(saved, saved.date)));
        verify(isSeen(textOf(saved, "Rate not set")));
        const active = named(view, "Review, Aster Studio, Unassigned, Live");
        const word = textOf(active, "Live");
        verify(isSeen(word));
        verify(isSeen(textOf(active, "Rate not set")));
        const names = place(textOf(active, "Review"), view);
        verify(place(word.parent, view).x > names.x + names.width);
        world.session.pauseOrResume();
        world.advance(0);
        verify(isSeen(textOf(active, "Paused")));
    }

    function test_the_date_sorts_in_the_smallest_window_data() {
        return test_all_of_a_row_is_seen_in_the_smallest_window_data();
    }

    function test_the_date_sorts_in_the_smallest_window(data) {
        world.save("Design", 1);
        const view = smallPage(data.scale);
        const names = ["Session", "Date", "Duration", "Value"];
        const heads = names.map(name => named(view, "Sort by " + name));
        heads.forEach((head, index) => {
            verify(isSeen(textOf(head, names[index])), names[index]);
            const end = index > 0 ? place(heads[index - 1], view).right : 0;
            verify(place(head, view).left >= end + 12, names[index]);
        });
        mouseClick(heads[1]);
        compare(heads[1].Accessible.description,
            "Sorted ascending. Activate to sort descending");
    }

    function test_the_lines_of_a_narrow_row_are_those_of_its_names() {
        world.save("Design", 1);
        const view = smallPage(1.5);
        const saved = row(view, "Design");
        const middle = words => {
            const text = textOf(saved, words);
            return place(text, view).y + text.height / 2;
        };
        fuzzyCompare(middle("Rate not set"), middle("Design"), 1);
        fuzzyCompare(middle(saved.date), middle("Aster Studio · Unassigned"), 1);
    }

    function test_the_page_has_its_margin_below_the_last_row() {
        const titles = [];
        for (let number = 0; number < 40; ++number) {
            titles.push("Session " + number);
        }
        const view = pageOf(titles);
        keyClick(Qt.Key_End);
        tryVerify(() => row(view, "Session 39")?.activeFocus);
        const last = row(view, "Session 39");
        compare(place(last, view).bottom, view.height - 28);
        world.save("New", 0.5);
        keyClick(Qt.Key_End);
        compare(place(row(view, "Session 39"), view).bottom, view.height - 28);
    }

    function test_a_row_that_the_keyboard_goes_to_stands_above_the_margin() {
        const titles = [];
        for (let number = 0; number < 40; ++number) {
            titles.push("Session " + number);
        }
        const view = pageOf(titles);
        for (let number = 1; number < 20; ++number) {
            keyClick(Qt.Key_Down);
            const reached = row(view, "Session " + number);
            verify(reached.activeFocus);
            verify(place(reached, view).bottom <= view.height - 28, number);
        }
    }

    function test_the_session_in_progress_says_what_a_press_does() {
        world.start("Review");
        const view = createTemporaryObject(page, test);
        const active = named(view, "Review, Aster Studio, Unassigned, Live");
        verify(active.Accessible.description.endsWith(". Edit session and project"));
        mouseClick(active);
        verify(world.editorID.startsWith("active-"));
    }

    function test_a_row_that_is_pointed_at_is_highlighted_data() {
        return [{tag: "a saved one", title: "Design"}, {tag: "the one in progress", title: "Review"}];
    }

    function test_a_row_that_is_pointed_at_is_highlighted(data) {
        world.save("Design", 1);
        world.start("Review");
        const view = createTemporaryObject(page, test);
        waitForRendering(view);
        const shade = findChild(row(view, data.title), "highlight");
        compare(shade.opacity, 0);
        mouseMove(row(view, data.title), 40, 10);
        compare(shade.opacity, 0.5);
        restPointer();
        compare(shade.opacity, 0);
        desktop.reduceMotion(false);
        tryVerify(() => row(view, data.title)); // the rows come in anew
        mouseMove(row(view, data.title), 40, 10);
        verify(shade.opacity < 0.5);
        tryCompare(shade, "opacity", 0.5);
    }

    function test_the_heads_stand_over_their_columns() {
        const view = pageOf(["Design"]);
        const head = named(view, "Sort by Session").mapToItem(view, 0, 0).x;
        const cells = row(view, "Design").mapToItem(view, 0, 0).x + 8;
        compare(head, cells + 48);
    }

    function test_the_session_in_progress_is_above_the_rows() {
        world.save("Design", 1);
        world.start("Review");
        const view = createTemporaryObject(page, test);
        verify(named(view, "Review, Aster Studio, Unassigned, Live"));
        compare(world.sessions.countText, "2 sessions");
        row(view, "Design").forceActiveFocus();
        keyClick(Qt.Key_Up);
        verify(named(view, "Review, Aster Studio, Unassigned, Live").activeFocus);
        keyClick(Qt.Key_Return);
        verify(world.editorID.startsWith("active-"));
        keyClick(Qt.Key_Menu);
        compare(world.menuEntries(), ["Edit session", "Pause session", "Stop and save session"]);
        keyClick(Qt.Key_Down);
        verify(row(view, "Design").activeFocus);
    }

    function test_a_month_has_a_chip_that_clears_it() {
        world.save("Design", 1);
        world.save("Long ago", 24 * 70);
        world.limitToThisMonth();
        const view = createTemporaryObject(page, test);
        compare(world.sessions.month, "September 2025");
        verify(!row(view, "Long ago"));
        verify(named(view, "Export all"));
        press(view, "Clear month filter");
        verify(!named(view, "Clear month filter"));
        verify(row(view, "Long ago"));
        verify(named(view, "Export"));
    }

    function test_what_the_page_is_for_is_told_to_those_who_listen() {
        const view = createTemporaryObject(page, test);
        const line = named(view, "Review and edit your recorded time");
        compare(line.Accessible.role, Accessible.StaticText);
    }

    function test_an_empty_page_says_what_to_do() {
        const view = createTemporaryObject(page, test);
        verify(named(view, "No sessions yet. Start a timer or add time you’ve already worked."));
        press(view, "Add time");
        compare(world.editorID, "entry-new");
    }

    function test_a_list_in_a_dashboard_is_as_high_as_its_rows() {
        for (let number = 0; number < 12; ++number) {
            world.save("Session " + number, number + 1);
        }
        const view = createTemporaryObject(dashboard, test);
        verify(!named(view, "Review and edit your recorded time"));
        verify(!row(view, "Session 11"));
        const height = view.implicitHeight;
        mouseClick(named(view, "Show more sessions"));
        tryVerify(() => row(view, "Session 11") !== null);
        verify(!named(view, "Show more sessions"));
        verify(view.implicitHeight > height);
    }

    function test_an_export_asks_for_a_file_where_the_desktop_cannot() {
        const view = pageOf(["Design"]);
        const sheet = createTemporaryObject(destination, test);
        press(view, "Export");
        verify(sheet.visible);
        verify(named(sheet, "File").activeFocus);
        keyClick(Qt.Key_Return);
        verify(!sheet.visible);
        verify(named(view, "Exporting…"));
        world.advance(1);
        verify(named(view, "Export"));
        verify(/^Exported 1 saved sessions to Kestry-sessions-.*\.csv\.$/.test(world.workspace.alertMessage));
    }

    function test_a_page_without_rows_still_exports_all() {
        world.save("Long ago", 24 * 70);
        world.limitToThisMonth();
        const view = createTemporaryObject(page, test);
        createTemporaryObject(destination, test);
        verify(named(view, "No sessions this month. Clear the month filter or try a different search."));
        press(view, "Export all");
        keyClick(Qt.Key_Return);
        world.advance(1);
        verify(/^Exported 1 saved sessions to /.test(world.workspace.alertMessage));
    }

    function test_a_clients_page_without_rows_still_exports_all() {
        world.save("Design", 1);
        world.addClient("Birch");
        world.selectLastClient();
        const view = createTemporaryObject(page, test);
        createTemporaryObject(destination, test);
        verify(named(view, "Birch sessions"));
        verify(named(view, "0 sessions"));
        press(view, "Export all");
        keyClick(Qt.Key_Return);
        world.advance(1);
        verify(/^Exported 1 saved sessions to /.test(world.workspace.alertMessage));
    }

    function test_nothing_is_cut_off_beside_the_search_in_the_smallest_window() {
        const view = createTemporaryObject(page, test);
        view.anchors.fill = undefined;
        view.width = 520;
        view.height = 520;
        const count = named(view, "0 sessions");
        verify(!count.truncated);
        verify(named(view, "Search sessions").width > 80);
    }

    function test_the_keyboard_goes_on_to_the_rows_that_the_last_more_has_shown() {
        for (let number = 0; number < 12; ++number) {
            world.save("Session " + number, number + 1);
        }
        const view = createTemporaryObject(dashboard, test);
        named(view, "Show more sessions").forceActiveFocus();
        keyClick(Qt.Key_Return);
        verify(!named(view, "Show more sessions"));
        tryVerify(() => row(view, "Session 10")?.activeFocus);
    }

    function test_the_mark_of_the_place_is_dragged() {
        const titles = [];
        for (let number = 0; number < 200; ++number) {
            titles.push("Session " + number);
        }
        const view = pageOf(titles);
        const mark = findChild(view, "scrollMark");
        const area = mark.parent;
        mousePress(area, area.width - 2, 5);
        mouseMove(area, area.width - 2, area.height / 2, -1, Qt.LeftButton);
        mouseMove(area, area.width - 40, area.height + 40, -1, Qt.LeftButton);
        mouseRelease(area, area.width - 40, area.height + 40);
        tryVerify(() => row(view, "Session 199"));
        fuzzyCompare(mark.y + mark.height, area.height, 1);
        compare(world.editorID, "");
    }

    function test_a_press_beside_the_mark_goes_there() {
        const titles = [];
        for (let number = 0; number < 200; ++number) {
            titles.push("Session " + number);
        }
        const view = pageOf(titles);
        const mark = findChild(view, "scrollMark");
        const area = mark.parent;
        mouseClick(area, area.width - 10, area.height / 2);
        tryVerify(() => row(view, "Session 100"));
        fuzzyCompare(mark.y + mark.height / 2, area.height / 2, 1);
        compare(world.editorID, "");
    }

    function test_dates_have_the_room_that_the_language_needs() {
        const view = pageOf(["Design"]);
        verify(DateColumn.width(13) > 0);
        verify(row(view, "Design").table.date >= DateColumn.width(13));
        compare(named(view, "Sort by Date").width, row(view, "Design").table.date);
    }

    Component {
        id: longRows
        SessionRow {
            width: 700
            label: "Design"
            detail: ""
            clientName: "Aster Studio"
            clientLogo: null
            date: "Sep 19"
            duration: "24h 0m"
            spoken: label
            table: TableColumns { width: 700 }
        }
    }

    function test_an_amount_that_is_too_long_for_its_column_is_smaller_and_whole() {
        const amount = "$23,999,999.76";
        const row = createTemporaryObject(longRows, test, {value: amount});
        const text = textOf(row, amount);
        verify(!text.truncated);
        verify(text.contentWidth <= text.width);
        const brief = createTemporaryObject(longRows, test, {value: "$1.00"});
        verify(textOf(brief, "$1.00").contentHeight > text.contentHeight);
    }
}
