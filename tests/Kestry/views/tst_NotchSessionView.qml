import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test

    name: "NotchSessionView"


    Component {
        id: views
        NotchSessionView {
            width: 320
            height: wantedHeight
        }
    }

    function init() {
        renewWorld();
    }

    function make() {
        const view = createTemporaryObject(views, test,
            {session: world.session, surface: world.surface, menus: world.menus});
        world.reveal(true, true);
        world.clearReports();
        return view;
    }

    function child(view, name) { return findChild(view, name); }

    function test_without_clients_the_way_to_the_first_is_the_workspace_window() {
        const view = make();
        compare(child(view, "invitation").text, "Add your first client");
        verify(child(view, "invitation").visible);
        const action = child(view, "action");
        compare(action.label, "Add client");
        compare(action.symbol, "plus");
        mouseClick(action);
        compare(world.editorID, "client-new");
        compare(world.reports, ["dashboard"]);
    }

    function test_with_a_client_the_row_starts_a_session() {
        world.addClient("Aster");
        const view = make();
        verify(!child(view, "invitation").visible);
        const action = child(view, "action");
        compare(action.label, "Start");
        compare(action.symbol, "play.fill");
        compare(action.height, 28);
        mouseClick(action);
        verify(world.session.isRunning);
    }

    function test_the_target_opens_its_menu() {
        world.addClient("Aster");
        const view = make();
        mouseClick(child(view, "target"));
        compare(world.menus.asked, ["target"]);
    }

    function test_asks_for_the_height_of_its_rows() {
        const view = make();
        compare(view.wantedHeight, 48);
        world.addClient("Aster");
        world.start("Drawing");
        world.fail("The disk is full.");
        world.session.stop();
        compare(world.reports, ["resize 74", "resize 92", "resize 66"]);
    }

    function test_the_rows_fill_the_height_exactly() {
        world.addClient("Aster");
        const view = make();
        world.start("Drawing");
        tryVerify(() => rowsHeight(view) + 20 === 74);
        world.fail("The disk is full.");
        tryVerify(() => rowsHeight(view) + 20 === 92);
        world.session.stop();
        tryVerify(() => rowsHeight(view) + 20 === 66);
    }

    function rowsHeight(view) {
        const message = child(view, "messageRow");
        const rows = world.session.hasSession ? child(view, "sessionRows") : child(view, "idleRow");
        return rows.implicitHeight + (message.visible ? message.height + 6 : 0);
    }

    function test_a_message_stands_in_one_line() {
        const view = make();
        verify(!child(view, "messageRow").visible);
        world.fail("The disk is full. ".repeat(20));
        const line = child(view, "line");
        compare(line.lineCount, 1);
        verify(line.truncated);
        compare(child(view, "messageRow").height, 12);
    }

    function test_a_failing_command_shows_in_the_message_row() {
        world.addClient("Aster");
        const view = make();
        world.session.pauseOrResume();
        compare(child(view, "line").text, "No session to resume.");
    }

    function test_a_session_pauses_resumes_and_stops() {
        world.addClient("Aster");
        world.start("Drawing");
        const view = make();
        const pause = child(view, "pause");
        compare([pause.symbol, pause.label, pause.tip], ["pause.fill", "Pause session", "Pause session"]);
        mouseClick(pause);
        verify(!world.session.isRunning);
        compare([pause.symbol, pause.label, pause.tip], ["play.fill", "Resume session", "Resume session"]);
        mouseClick(pause);
        verify(world.session.isRunning);
        const stop = child(view, "stop");
        compare([stop.symbol, stop.label, stop.tip],
            ["stop.fill", "Stop and save session", "Stop and save session"]);
        mouseClick(stop);
        verify(!world.session.hasSession);
    }

    function test_a_paused_time_is_faint_and_stands() {
        world.addClient("Aster");
        world.start("Drawing");
        const view = make();
        const elapsed = child(child(view, "sessionRows"), "elapsed");
        compare(elapsed.color, Theme.dark.primaryText);
        world.advance(3);
        compare(elapsed.text, "00:00:03");
        world.session.pauseOrResume();
        world.advance(60);
        compare(elapsed.text, "00:00:03");
        compare(elapsed.color, Theme.dark.pausedText);
    }

    function test_two_facts_stand_below_the_title() {
        world.addClient("Aster");
        world.addProject("Site");
        world.start("Drawing");
        const view = make();
        world.advance(3600);
        const session = child(view, "sessionFact"), month = child(view, "monthFact");
        compare([session.caption, session.value, session.tip], ["Session", "$100.00", ""]);
        compare([month.caption, month.value], ["This month", "$100.00"]);
        compare(month.tip,
            "Billable earnings across all clients this month, including this session.");
    }

    function test_an_unknown_rate_is_said_in_place_of_an_amount() {
        world.addClient("Aster");
        world.start("Drawing");
        const view = make();
        world.advance(3600);
        compare(child(view, "sessionFact").value, "Rate not set");
        compare(child(view, "monthFact").tip, "Billable earnings across all clients, including "
            + "this session. Time without a rate is excluded.");
    }

    function test_the_reveal_hides_it_behind_the_strip_and_brings_it_back() {
        const view = make();
        const holder = child(view, "holder");
        compare([holder.opacity, holder.y], [1, 0]);
        world.reveal(false, true);
        compare([holder.opacity, holder.y], [0, -view.height]);
        world.reveal(true, false);
        verify(holder.opacity < 1);
        tryCompare(holder, "opacity", 1, 1000);
        compare(holder.y, 0);
    }

    function test_changes_of_height_are_drawn_on_the_way_unless_motion_is_reduced() {
        world.addClient("Aster");
        const view = make();
        world.start("Drawing");
        verify(view.drawnHeight < 74);
        tryCompare(view, "drawnHeight", 74, 600);
        world.reduceMotion(true);
        world.session.stop();
        compare(view.drawnHeight, 48);
    }

    function test_without_transparency_the_panel_is_opaque() {
        const view = make();
        fuzzyCompare(child(view, "panel").color.a, 0.85, 0.01);
        desktop.reduceTransparency(true);
        compare(child(view, "panel").color.a, 1);
        desktop.reduceTransparency(false);
    }

    function test_the_panel_is_dark_in_the_light_theme_too() {
        const view = make();
        desktop.useLightTheme(true);
        verify(child(view, "panel").color.hslLightness < 0.1);
        desktop.useLightTheme(false);
    }

    function test_the_stop_button_keeps_the_title_that_is_typed() {
        world.addClient("Aster");
        world.start("Drawing");
        const view = make();
        const label = child(view, "label");
        mouseDoubleClickSequence(label, 20, 14);
        tryVerify(() => child(view, "input").activeFocus);
        keyClick("L");
        mouseClick(child(view, "stop"));
        compare(world.entryTitles(), ["L"]);
    }
}
