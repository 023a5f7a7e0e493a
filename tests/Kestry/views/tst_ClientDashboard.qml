import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test

    name: "ClientDashboard"
    width: 904
    height: 600

    Component {
        id: page
        ClientDashboardView {
            anchors.fill: parent
            dashboard: test.world.clientPage
            exporter: test.world.exporter
        }
    }

    function init(): void {
        renewWorld();
        restPointer();
        desktop.reduceMotion(true);
        test.width = 904;
        test.height = 600;
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

    function starting(item, beginning) {
        return find(item, each => each.startsWith(beginning));
    }

    /// The page of a client with these projects.
    function pageOf(projects) {
        world.addClient("Aster Studio");
        projects.forEach(name => world.addProject(name));
        world.selectFirstClient();
        const view = createTemporaryObject(page, test);
        waitForRendering(view);
        return view;
    }

    /// The page of a client without projects that has worked for this many sessions.
    function pageOfSessions(count) {
        world.addPlainClient("Aster Studio");
        for (let number = 0; number < count; ++number) {
            world.save("Session " + (number + 1), number + 1);
        }
        world.selectFirstClient();
        const view = createTemporaryObject(page, test);
        waitForRendering(view);
        return view;
    }

    function cards(view) {
        return ["Total earnings, ", "Total hours, ", "Hours this month, ", "Avg. hours / month, "]
            .map(beginning => starting(view, beginning));
    }

    function topIn(view, item) {
        return item.mapToItem(view, 0, 0).y;
    }

    function isInView(view, item) {
        return topIn(view, item) >= 0 && topIn(view, item) + item.height <= view.height;
    }

    function test_the_four_cards_stand_in_one_row() {
        const view = pageOf(["Website"]);
        const tops = cards(view).map(card => topIn(view, card));
        compare(new Set(tops).size, 1);
    }

    function test_a_narrow_page_has_its_cards_two_by_two() {
        test.width = 520;
        const view = pageOf(["Website"]);
        const tops = cards(view).map(card => topIn(view, card));
        compare(tops[0], tops[1]);
        compare(tops[2], tops[3]);
        verify(tops[2] > tops[0]);
    }

    function test_cards_with_large_text_stand_two_by_two() {
        desktop.scaleText(1.5);
        const view = pageOf(["Website"]);
        verify(topIn(view, cards(view)[2]) > topIn(view, cards(view)[0]));
    }

    function test_only_the_average_takes_the_keyboard_and_says_its_help() {
        const view = pageOf(["Website"]);
        const [earnings, hours, month, average] = cards(view);
        verify(average.activeFocusOnTab);
        verify(average.Accessible.description.startsWith("Total hours divided by calendar months"));
        verify(![earnings, hours, month].some(card => card.activeFocusOnTab));
    }

    function test_a_row_says_all_of_its_project() {
        const view = pageOf(["Website"]);
        const row = named(view, "Website, 0 saved sessions, $100.00 / hr");
        compare(row.Accessible.role, Accessible.ListItem);
    }

    function test_the_play_button_starts_a_session_and_the_figures_rise() {
        const view = pageOf(["Website"]);
        mouseClick(named(view, "Start Website"));
        world.advance(3600);
        tryVerify(() => starting(view, "Total earnings, $100.00, "));
        verify(world.session.isRunning);
    }

    function test_the_pencil_opens_the_form_of_the_project() {
        const view = pageOf(["Website"]);
        mouseClick(named(view, "Edit Website"));
        verify(world.editorID.startsWith("project-"));
    }

    function test_arrows_go_from_project_to_project() {
        const view = pageOf(["Website", "Poster"]);
        named(view, "Edit Website").forceActiveFocus();
        keyClick(Qt.Key_Down);
        verify(named(view, "Edit Poster").activeFocus);
        keyClick(Qt.Key_Down);
        verify(named(view, "Edit Poster").activeFocus);
        keyClick(Qt.Key_Up);
        verify(named(view, "Edit Website").activeFocus);
    }

    function test_a_client_without_any_project_is_told_to_add_one() {
        const view = pageOf([]);
        verify(named(view, "Add your first project to start tracking time for Aster Studio."));
        mouseClick(named(view, "Add project"));
        verify(world.editorID.startsWith("project-"));
    }

    function test_unpriced_time_stands_under_the_cards() {
        const view = pageOf(["Website"]);
        verify(!find(view, name => name.endsWith(" is excluded from earnings.")));
        world.addUnpricedHour();
        tryVerify(() => named(view, "1h 0m of billable time has no rate and is excluded from earnings."));
        verify(starting(view, "Total earnings, Rate not set, "));
    }

    function test_a_client_without_projects_has_its_sessions_on_the_page() {
        const view = pageOfSessions(12);
        verify(named(view, "12 sessions"));
        verify(starting(view, "Session 10, "));
        verify(!starting(view, "Session 11, "));
        named(view, "Show more sessions").triggered();
        tryVerify(() => starting(view, "Session 12, "));
        verify(!named(view, "Show more sessions"));
    }

    function test_what_gets_the_keyboard_comes_into_view() {
        const view = pageOfSessions(10);
        starting(view, "Session 1, ").forceActiveFocus();
        keyClick(Qt.Key_End);
        const last = starting(view, "Session 10, ");
        verify(last.activeFocus);
        verify(isInView(view, last));
        named(view, "Edit client").forceActiveFocus();
        verify(isInView(view, named(view, "Edit client")));
        compare(view.scrolled, 0);
    }

    function test_keys_scroll_the_whole_page() {
        const view = pageOfSessions(10);
        named(view, "Edit client").forceActiveFocus();
        keyClick(Qt.Key_PageDown);
        verify(view.scrolled > 0);
        keyClick(Qt.Key_End);
        const most = view.scrolled;
        keyClick(Qt.Key_PageDown);
        compare(view.scrolled, most);
        keyClick(Qt.Key_Home);
        compare(view.scrolled, 0);
    }

    function test_a_page_that_has_room_does_not_scroll() {
        const view = pageOf([]);
        named(view, "Edit client").forceActiveFocus();
        keyClick(Qt.Key_PageDown);
        compare(view.scrolled, 0);
    }

    function test_another_client_begins_at_the_top() {
        const view = pageOfSessions(10);
        named(view, "Edit client").forceActiveFocus();
        keyClick(Qt.Key_End);
        world.addClient("Birch");
        world.selectLastClient();
        tryVerify(() => named(view, "Birch"));
        compare(view.scrolled, 0);
    }

    function test_an_empty_list_of_sessions_ends_below_its_words() {
        const view = pageOfSessions(0);
        const words = starting(view, "No sessions yet. ");
        verify(words);
        verify(topIn(view, words) + words.height <= view.height);
    }

    function test_the_notes_of_the_page_have_their_words() {
        const view = pageOf([]);
        verify(named(view, "Project rates apply to new sessions. Saved sessions keep their original rate."));
        verify(named(view, "No sessions yet. Start a project timer or add time from Sessions."));
    }

    SignalSpy { id: tips; target: ToolTips; signalName: "showAsked" }

    function test_the_average_is_explained_to_pointer_and_keyboard() {
        const help = "Total hours divided by calendar months from the first session through this month, including months with no time and the current partial month.";
        const view = pageOf(["Website"]);
        const average = cards(view)[3];
        compare(average.Accessible.description, help);
        tips.clear();
        mouseMove(average);
        tryCompare(tips, "count", 1);
        compare(tips.signalArguments[0][1], help);
        restPointer();
        named(view, "Edit client").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Tab);
        verify(average.activeFocus);
        tryCompare(tips, "count", 2);
        compare(tips.signalArguments[1][1], help);
    }

    function test_large_amounts_and_long_names_stay_on_the_page_data() {
        const all = [];
        for (const width of [520, 904]) {
            for (const scale of [1, 1.5, 2]) {
                all.push({tag: `${width} at ${scale}`, width: width, scale: scale});
            }
        }
        return all;
    }

    function test_large_amounts_and_long_names_stay_on_the_page(data) {
        desktop.scaleText(data.scale);
        test.width = data.width;
        world.addClient("🌲 Waldkindergarten Unterschleißheim und Oberschleißheim der Gemeinden am See");
        world.bill("Donaudampfschifffahrtsgesellschaftskapitänsmützenentwurf", 1, 123456789);
        world.addUnpricedHour();
        world.selectFirstClient();
        const view = createTemporaryObject(page, test);
        waitForRendering(view);
        verify(starting(view, "Total earnings, $1,234,567.89, "));
        compare(overflowing(view, view), []);
    }

    Component {
        id: projectRows
        ProjectRow {
            name: "Website"
            count: "12 saved sessions"
            rate: "$999,999.99 / hr"
            spoken: name
        }
    }

    Component {
        id: figureCards
        DashboardCard { width: 240 }
    }

    function test_the_count_of_a_project_takes_another_line_beside_a_long_rate() {
        const wide = createTemporaryObject(projectRows, test, {width: 500});
        const narrow = createTemporaryObject(projectRows, test, {width: 300});
        compare(textOf(wide, "12 saved sessions").lineCount, 1);
        const count = textOf(narrow, "12 saved sessions");
        compare(count.lineCount, 2);
        verify(!count.truncated);
        verify(count.parent.height <= narrow.implicitHeight);
    }

    function test_a_line_stands_at_the_left_whatever_its_script() {
        const card = createTemporaryObject(figureCards, test, {figure: world.figureOf("نوفمبر ٢٠٢٦")});
        compare(textOf(card, "نوفمبر ٢٠٢٦").effectiveHorizontalAlignment, Text.AlignLeft);
    }
}
