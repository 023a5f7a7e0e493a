import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test

    name: "Overview"
    width: 960
    height: 900

    SignalSpy { id: tips; target: ToolTips; signalName: "showAsked" }
    SignalSpy { id: goneTips; target: ToolTips; signalName: "hideAsked" }

    Component { id: page; OverviewView { anchors.fill: parent; overview: test.world.overview } }
    Component { id: smallPage; OverviewView { overview: test.world.overview } }
    Component { id: dayBars; ActivityDays { bars: test.world.overview.bars } }
    Component {
        id: dayBar
        ActivityBar { index: 0; barHeight: 60; label: "Sep 1: 1h 0m"; part: 1; width: 20; height: 138 }
    }

    function init(): void {
        renewWorld();
        restPointer();
        desktop.reduceMotion(true);
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

    function starting(item, name) {
        return find(item, each => each.startsWith(name));
    }

    function press(item, name): void {
        const target = named(item, name);
        verify(target, name);
        mouseClick(target);
    }

    /// All visible texts below an item that are not shown whole.
    function cut(item) {
        const texts = item.visible && item.truncated === true ? [item.text] : [];
        for (let index = 0; item.visible && index < item.children.length; ++index) {
            texts.push(...cut(item.children[index]));
        }
        return texts;
    }

    function show() {
        const view = createTemporaryObject(page, test);
        waitForRendering(view);
        return view;
    }

    function showWithWork() {
        world.addClient("Aster Studio");
        world.save("Design", 2);
        return show();
    }

    function test_without_clients_the_page_offers_to_add_one() {
        const view = show();
        verify(named(view, "Add your first client"));
        verify(named(view, "Create a client and project to start tracking time."));
        verify(named(view, "September 2025"));
        verify(!named(view, "Recorded this month"));
        press(view, "Add client");
        compare(world.editorID, "client-new");
    }

    function test_the_month_content_comes_with_the_first_client() {
        const view = show();
        world.addClient("Aster Studio");
        tryVerify(() => named(view, "Recorded this month") !== null);
        verify(!named(view, "Add your first client"));
        verify(named(view, "No sessions in September 2025."));
    }

    function test_figures_say_what_they_are_of() {
        const view = showWithWork();
        verify(named(view, "Billable earnings: Rate not set. 0h 30m still unpriced"));
        verify(named(view, "Recent sessions"));
        verify(starting(view, "Design, Aster Studio, "));
    }

    function test_the_tracked_time_leads_to_the_sessions_of_the_month() {
        const view = showWithWork();
        const button = named(view, "View sessions for this month");
        compare(button.Accessible.description, "Tracked time: 0h 30m. Across 1 session");
        mouseClick(button);
        compare(world.workspace.destination, "Sessions");
    }

    function test_view_all_leads_to_the_sessions_of_the_month() {
        const view = showWithWork();
        press(view, "View all");
        compare(world.workspace.destination, "Sessions");
        compare(world.sessions.month, "");
        world.sessions.open();
        compare(world.sessions.month, "September 2025");
        world.sessions.close();
    }

    function test_months_go_back_and_forth_by_key() {
        const view = showWithWork();
        verify(!named(view, "Next month").enabled);
        named(view, "Previous month").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
        verify(named(view, "August 2025"));
        verify(named(view, "Recorded this period"));
        verify(named(view, "Month-end totals"));
        verify(named(view, "No sessions in August 2025."));
        named(view, "Next month").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Return);
        verify(named(view, "September 2025"));
    }

    function test_the_chart_says_its_figures() {
        const view = showWithWork();
        const all = [];
        const collect = item => {
            if (item.Accessible.role === Accessible.Chart) {
                all.push(item);
            }
            for (let index = 0; index < item.children.length; ++index) {
                collect(item.children[index]);
            }
        };
        collect(view);
        compare(all.length, 1);
        compare(all[0].Accessible.name, "Daily activity");
        verify(/^30 minutes on 1 day in September 2025\. The most was 30 minutes on September \d+\.$/.test(all[0].Accessible.description));
    }

    function test_all_days_are_named_anew_in_another_time_zone() {
        const view = showWithWork();
        for (const zone of ["Asia/Tokyo", "America/New_York", "Pacific/Kiritimati"]) {
            world.moveToZone(zone);
            const days = [];
            find(view, name => {
                if (/^[A-Z][a-z]{2} \d+: /.test(name)) {
                    days.push(name.split(":")[0]);
                }
                return false;
            });
            compare(days, Array.from({length: 30}, (_, index) => "Sep " + (index + 1)), zone);
        }
    }

    function test_the_chart_and_the_table_are_named() {
        const view = showWithWork();
        for (const words of ["Daily activity", "Hours tracked this month", "Project / session", "Date", "Duration", "Value"]) {
            verify(named(view, words), words);
        }
    }

    function test_a_day_looks_as_its_place_in_time_says_data() {
        const of = (look, color, alpha) => ({tag: color + " at " + alpha, look: look, color: color, alpha: alpha});
        return [of(ActivityBars.Later, "line", 0.035), of(ActivityBars.Today, "accent", 1),
            of(ActivityBars.Busy, "accent", 0.55), of(ActivityBars.Idle, "accent", 0.08)];
    }

    function test_a_day_looks_as_its_place_in_time_says(data) {
        const bar = createTemporaryObject(dayBar, test, {look: data.look}).children[0];
        const color = Theme.workspace[data.color];
        for (const part of ["r", "g", "b"]) {
            fuzzyCompare(bar.color[part], color[part], 0.005);
        }
        fuzzyCompare(bar.color.a, data.alpha, 0.005);
        compare(bar.radius, 2);
        compare(bar.height, 60);
        compare(bar.y + bar.height, 138);
    }

    function test_days_share_the_width_with_gaps_between_them_data() {
        return [{tag: "wide", width: 960}, {tag: "least gap", width: 380}];
    }

    function test_days_share_the_width_with_gaps_between_them(data) {
        world.addClient("Aster Studio");
        const view = createTemporaryObject(smallPage, test, {width: data.width, height: 900});
        waitForRendering(view);
        const first = named(view, "Sep 1: 0h 0m");
        const second = named(view, "Sep 2: 0h 0m");
        const last = named(view, "Sep 30: 0h 0m");
        const all = first.parent.width;
        const gap = Math.max(3, all / 110);
        compare(data.tag === "wide", gap > 3);
        fuzzyCompare(second.x - first.width, gap, 0.001);
        fuzzyCompare(first.width, (all - 29 * gap) / 30, 0.001);
        fuzzyCompare(last.x + last.width, all, 0.001);
    }

    function test_the_axis_and_the_names_below_stand_at_their_days() {
        const view = showWithWork();
        const scale = ["4h", "2h", "0h"].map(each => textOf(view, each));
        compare(scale[0].parent.width, 20);
        compare(scale[0].parent.height, 138);
        compare(scale.map(each => each.y), [0, (138 - scale[1].height) / 2, 138 - scale[2].height]);
        const day = number => named(view, "Sep " + number + ": 0h 0m");
        const below = day(1).mapToItem(view, 0, 138).y;
        for (const [words, number] of [["Sep", 1], ["10", 10], ["20", 20]]) {
            const name = textOf(view, words);
            fuzzyCompare(name.mapToItem(view, 0, 0).x, day(number).mapToItem(view, 0, 0).x, 0.01);
            verify(name.mapToItem(view, 0, 0).y > below);
        }
    }

    function test_bars_rise_as_a_critically_damped_spring_does() {
        world.addClient("Aster Studio");
        world.overview.open();
        desktop.reduceMotion(false);
        const days = createTemporaryObject(dayBars, test, {width: 600, height: 138});
        tryCompare(days, "clock", days.end); // the motion itself has ended
        const bars = [];
        const collect = item => {
            for (let index = 0; index < item.children.length; ++index) {
                if (item.children[index] instanceof ActivityBar) {
                    bars.push(item.children[index]);
                }
                collect(item.children[index]);
            }
        };
        collect(days);
        compare(bars.length, 30);
        for (const clock of [0, 6, 120, 420]) {
            days.clock = clock;
            for (const index of [0, 1, 10, 29]) {
                const angle = 2 * Math.PI * Math.max(0, clock - 6 * index) / 420;
                const part = 1 - (1 + angle) * Math.exp(-angle);
                fuzzyCompare(bars[index].part, part, 1e-9);
                fuzzyCompare(bars[index].children[0].opacity, part, 1e-9);
                compare(bars[index].children[0].height, Math.round(3 * part));
                compare(bars[index].revealed, part > 0);
            }
        }
        world.overview.close();
    }

    function test_the_way_beyond_the_present_month_is_faint() {
        const view = showWithWork();
        compare(named(view, "Next month").opacity, 0.3);
        compare(named(view, "Previous month").opacity, 1);
        compare(named(view, "Previous month").width, 28);
        compare(named(view, "Previous month").height, 32);
        press(view, "Previous month");
        compare(named(view, "Next month").opacity, 1);
    }

    function test_a_month_without_sessions_says_so_in_a_block() {
        world.addClient("Aster Studio");
        compare(named(show(), "No sessions in September 2025.").height, 88);
    }

    function test_the_projection_is_explained_to_pointer_and_keyboard() {
        const help = "Estimates use recorded earnings and hours ÷ calendar days elapsed (including today) × days in this month. They are not guaranteed work or payment.";
        const view = showWithWork();
        const heading = named(view, "Projected this month");
        compare(heading.Accessible.description, help);
        tips.clear();
        mouseMove(starting(view, "Time: "));
        tryCompare(tips, "count", 1);
        compare(tips.signalArguments[0][1], help);
        restPointer();
        named(view, "View sessions for this month").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Tab);
        verify(heading.activeFocus);
        tryCompare(tips, "count", 2);
        compare(tips.signalArguments[1][1], help);
    }

    function test_large_amounts_and_long_names_stay_on_the_page_data() {
        const all = [];
        for (const width of [520, 960]) {
            for (const scale of [1, 1.5, 2]) {
                for (const rate of [123456789, 9e17]) {
                    all.push({tag: `${width} at ${scale}, ${rate}`, width: width, scale: scale, rate: rate});
                }
            }
        }
        return all;
    }

    function test_large_amounts_and_long_names_stay_on_the_page(data) {
        desktop.scaleText(data.scale);
        world.addClient("🌲 Waldkindergarten Unterschleißheim und Oberschleißheim der Gemeinden am See");
        world.bill("Donaudampfschifffahrtsgesellschaftskapitänsmützenentwurf", 1, data.rate);
        const view = createTemporaryObject(smallPage, test, {width: data.width, height: 520});
        waitForRendering(view);
        verify(find(view, name => name.startsWith("Billable earnings: $") && (data.rate > 1e9 || name.includes("$1,234,567.89"))));
        compare(overflowing(view, view), []);
    }

    function test_arrows_walk_the_days() {
        const view = showWithWork();
        const today = starting(view, "Sep 19: ");
        today.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Left);
        verify(starting(view, "Sep 18: ").activeFocus);
        keyClick(Qt.Key_Right);
        verify(today.activeFocus);
        keyClick(Qt.Key_Home);
        verify(named(view, "Sep 1: 0h 0m").activeFocus);
        keyClick(Qt.Key_Left);
        verify(named(view, "Sep 1: 0h 0m").activeFocus);
        keyClick(Qt.Key_End);
        verify(named(view, "Sep 30: 0h 0m").activeFocus);
        keyClick(Qt.Key_Right);
        verify(named(view, "Sep 30: 0h 0m").activeFocus);
    }

    function test_the_chart_is_one_stop_for_the_keyboard() {
        const view = showWithWork();
        named(view, "View sessions for this month").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Tab);
        verify(named(view, "Projected this month").activeFocus); // it has a help text
        keyClick(Qt.Key_Tab);
        verify(starting(view, "Sep 19: ").activeFocus);
        keyClick(Qt.Key_Tab);
        verify(named(view, "View all").activeFocus);
    }

    function test_bars_stand_at_their_place_with_reduced_motion() {
        const view = showWithWork();
        const bar = named(view, "Sep 1: 0h 0m");
        verify(bar.revealed);
        compare(bar.children[0].height, 3);
        compare(bar.children[0].opacity, 1);
    }

    function test_bars_rise_one_after_the_other() {
        desktop.reduceMotion(false);
        const view = showWithWork();
        const first = named(view, "Sep 1: 0h 0m").children[0];
        const last = named(view, "Sep 30: 0h 0m").children[0];
        tryVerify(() => first.opacity > last.opacity);
        tryCompare(last, "opacity", 1);
        compare(last.height, 3);
    }

    function test_each_day_under_the_pointer_has_its_text() {
        const view = showWithWork();
        tips.clear();
        mouseMove(named(view, "Sep 1: 0h 0m"));
        tryCompare(tips, "count", 1);
        compare(tips.signalArguments[0][1], "Sep 1: 0h 0m");
        goneTips.clear();
        mouseMove(named(view, "Sep 2: 0h 0m"));
        verify(goneTips.count > 0);
        tryCompare(tips, "count", 2);
        compare(tips.signalArguments[1][1], "Sep 2: 0h 0m");
        goneTips.clear();
        restPointer();
        verify(goneTips.count > 0);
    }

    function test_the_day_with_the_keyboard_has_its_text_at_once() {
        const view = showWithWork();
        starting(view, "Sep 19: ").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Home);
        tips.clear();
        keyClick(Qt.Key_Right);
        compare(tips.count, 1);
        compare(tips.signalArguments[0][0], named(view, "Sep 2: 0h 0m"));
        compare(tips.signalArguments[0][1], "Sep 2: 0h 0m");
    }

    function rings(item) {
        let count = 0;
        for (let index = 0; index < item.children.length; ++index) {
            count += item.children[index].visible && item.children[index].border?.width > 1 ? 1 : 0;
        }
        return count;
    }

    function test_the_day_with_the_keyboard_has_a_ring() {
        const view = showWithWork();
        const day = named(view, "Sep 1: 0h 0m");
        day.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Home);
        compare(rings(day), 1);
        keyClick(Qt.Key_Right);
        compare(rings(day), 0);
        compare(rings(named(view, "Sep 2: 0h 0m")), 1);
    }

    function test_bars_that_rise_stand_at_once_when_motion_is_reduced() {
        desktop.reduceMotion(false);
        const view = showWithWork();
        const last = named(view, "Sep 30: 0h 0m").children[0];
        verify(last.height < 3);
        desktop.reduceMotion(true);
        tryCompare(last, "height", 3);
        compare(last.opacity, 1);
    }

    function test_columns_stack_in_the_smallest_window() {
        world.addClient("Aster Studio");
        const view = createTemporaryObject(page, test);
        view.anchors.fill = undefined;
        view.width = 520;
        view.height = 520;
        waitForRendering(view);
        const recorded = named(view, "Recorded this month");
        const projected = named(view, "Projected this month");
        compare(recorded.mapToItem(view, 0, 0).x, projected.mapToItem(view, 0, 0).x);
        verify(recorded.mapToItem(view, 0, 0).y < projected.mapToItem(view, 0, 0).y);
        compare(cut(view), []);
        view.width = 960;
        tryVerify(() => recorded.mapToItem(view, 0, 0).y === projected.mapToItem(view, 0, 0).y);
    }

    function test_the_page_scrolls_by_key_and_to_what_has_the_keyboard() {
        world.addClient("Aster Studio");
        const view = createTemporaryObject(page, test);
        view.anchors.fill = undefined;
        view.width = 520;
        view.height = 400;
        waitForRendering(view);
        const scroller = view.page;
        named(view, "Previous month").forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_PageDown);
        verify(scroller.contentY > 0);
        keyClick(Qt.Key_PageUp);
        compare(scroller.contentY, 0);
        keyClick(Qt.Key_End);
        compare(scroller.contentY, scroller.farthest);
        keyClick(Qt.Key_Home);
        compare(scroller.contentY, 0);
        const all = named(view, "View all");
        all.forceActiveFocus(Qt.TabFocusReason);
        const bottom = all.mapToItem(view, 0, 0).y + all.height;
        verify(bottom <= view.height);
    }

    function test_the_session_in_progress_stands_above_the_saved_ones() {
        world.addClient("Aster Studio");
        world.save("Design", 2);
        world.start("Review");
        const view = show();
        const active = starting(view, "Review, Aster Studio, ");
        verify(active);
        verify(active.mapToItem(view, 0, 0).y < starting(view, "Design, ").mapToItem(view, 0, 0).y);
    }
}
