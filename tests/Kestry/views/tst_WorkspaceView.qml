import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test

    name: "WorkspaceView"
    width: 900
    height: 600

    Component {
        id: views
        WorkspaceView {
            anchors.fill: parent
            workspace: test.world.workspace
            forms: test.world.forms
            menus: null
            session: test.world.session
            sidebarSession: test.world.sidebarSession
            sessions: test.world.sessions
            deletion: test.world.deletion
            dashboard: test.world.clientPage
            overview: test.world.overview
            settings: test.world.settings
            exporter: test.world.exporter
            chooser: test.world.chooser
            saving: test.world.saving
        }
    }

    Component {
        id: fontSamples
        FontSamples { }
    }

    function init(): void {
        renewWorld();
        restPointer();
        desktop.reduceMotion(true);
        world.addClient("Aster Studio");
        world.save("Design", 1);
        world.workspace.go("Sessions");
    }

    function cleanup(): void {
        desktop.reduceMotion(false);
    }

    /// The window, with a saved session on its page.
    function make() {
        const view = createTemporaryObject(views, test);
        waitForRendering(view);
        return view;
    }

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

    function row(item, title) {
        return find(item, each => each.startsWith(title + ", "));
    }

    /// The name of what has the keyboard.
    function focused() {
        return test.Window.window.activeFocusItem?.Accessible.name ?? "";
    }

    function test_what_had_the_keyboard_has_it_again_after_an_alert_data() {
        return [{tag: "Start session"}, {tag: "Main menu"}, {tag: "Sort by Date"}];
    }

    function test_what_had_the_keyboard_has_it_again_after_an_alert(data) {
        const view = make();
        named(view, data.tag).forceActiveFocus();
        world.fail("The disk is full.");
        compare(focused(), "OK");
        keyClick(Qt.Key_Return);
        compare(focused(), data.tag);
    }

    function test_a_row_has_the_keyboard_again_after_its_form() {
        const view = make();
        row(view, "Design").forceActiveFocus();
        keyClick(Qt.Key_Return);
        verify(world.editorID.startsWith("entry-"));
        keyClick(Qt.Key_Escape);
        tryVerify(() => focused().startsWith("Design, "));
    }

    function test_an_alert_over_a_question_has_the_keyboard_alone() {
        const view = make();
        row(view, "Design").forceActiveFocus();
        keyClick(Qt.Key_Delete);
        compare(focused(), "Cancel");
        world.fail("The disk is full.");
        keyClick(Qt.Key_Tab);
        compare(focused(), "OK");
        keyClick(Qt.Key_Return);
        compare(focused(), "Cancel");
    }

    function test_an_alert_over_the_form_for_a_path_gives_the_keyboard_back() {
        const view = make();
        mouseClick(named(view, "Export"));
        compare(focused(), "File");
        world.fail("The disk is full.");
        compare(focused(), "OK");
        keyClick(Qt.Key_Return);
        compare(focused(), "File");
    }

    function test_a_heading_stays_at_the_left_whatever_the_script_of_a_name() {
        world.addClient("مكتب المراجعة");
        const view = make();
        mouseClick(named(view, "مكتب المراجعة"));
        world.workspace.go("Sessions");
        tryVerify(() => named(view, "مكتب المراجعة sessions"));
        compare(named(view, "مكتب المراجعة sessions").effectiveHorizontalAlignment, Text.AlignLeft);
    }

    function test_a_page_that_is_left_and_come_back_to_at_once_has_its_rows() {
        const view = make();
        world.workspace.go("Overview");
        world.workspace.go("Sessions");
        wait(0);
        verify(row(view, "Design"));
        compare(world.sessions.list.rows.rowCount(), 1);
    }

    function test_the_search_is_reached_from_every_page() {
        const view = make();
        for (const destination of ["Overview", "Settings", "Sessions"]) {
            world.workspace.go(destination);
            keyClick(Qt.Key_F, Qt.ControlModifier);
            compare(focused(), "Search sessions", destination);
            verify(named(view, "Sessions page"));
        }
    }

    function test_a_client_without_projects_has_a_search_of_its_own() {
        world.addPlainClient("Birch & Co");
        world.selectLastClient();
        const view = make();
        world.workspace.go("Client");
        keyClick(Qt.Key_F, Qt.ControlModifier);
        compare(focused(), "Search sessions");
        verify(named(view, "Client page"));
    }

    function test_the_keyboard_goes_on_to_the_rows_when_the_session_above_them_ends() {
        world.start("Review");
        const view = make();
        row(view, "Design").forceActiveFocus();
        keyClick(Qt.Key_Up);
        verify(focused().endsWith("Live"));
        world.session.stop();
        world.advance(0);
        tryVerify(() => focused().startsWith("Review, ") || focused().startsWith("Design, "));
        verify(test.Window.window.activeFocusItem.visible);
    }

    function test_the_parts_of_the_window_say_what_they_are() {
        world.start("Review");
        world.setClockForward(7200);
        const view = make();
        compare(named(view, "Sidebar").Accessible.role, Accessible.Pane);
        compare(named(view, "Sessions page").Accessible.role, Accessible.Pane);
        const notices = named(view, "Notices");
        compare(notices.Accessible.role, Accessible.Grouping);
        verify(!notices.Accessible.ignored);
        mouseClick(named(view, "Export"));
        compare(named(view, "Export saved sessions").Accessible.role, Accessible.Dialog);
        world.fail("The disk is full.");
        compare(named(view, "Your time needs attention. The disk is full.").Accessible.role,
            Accessible.AlertMessage);
    }

    function test_a_banner_that_goes_leaves_the_keyboard_on_what_is_nearest() {
        world.start("Review");
        world.setClockForward(7200);
        const view = make();
        const dismiss = named(view, "Dismiss");
        dismiss.forceActiveFocus();
        keyClick(Qt.Key_Return);
        compare(world.workspace.clockJump, "");
        compare(focused(), "Main menu");
        verify(named(view, "Main menu").activeFocus);
    }

    function test_a_title_that_is_typed_in_the_sidebar_is_kept_by_the_keys_that_stop() {
        world.start("Review");
        const view = make();
        const field = findChild(view, "titleField");
        findChild(field, "input").forceActiveFocus();
        findChild(field, "input").selectAll();
        keyClick("L");
        keyClick(Qt.Key_S, Qt.ControlModifier | Qt.ShiftModifier);
        world.advance(0);
        verify(!world.session.hasSession);
        verify(world.entryTitles().includes("L"));
    }

    /// The size and weight of all that is written below an item, but for notices, which few see.
    function fonts(item) {
        if (item.Accessible.name === "Notices") {
            return [];
        }
        const all = item.visible && item.font && item.text ? [item.font.pixelSize + " " + item.font.weight] : [];
        for (let index = 0; item.visible && index < item.children.length; ++index) {
            all.push(...fonts(item.children[index]));
        }
        return all;
    }

    function test_the_window_opens_with_fonts_that_are_loaded() {
        world.workspace.go("Overview");
        const view = make();
        const samples = createTemporaryObject(fontSamples, test);
        const loaded = new Set(fonts(samples));
        const used = new Set(fonts(view));
        verify(used.size > 5);
        compare([...used].filter(each => !loaded.has(each)), []);
        compare([...loaded].filter(each => !used.has(each)), []);
    }

    /// The window with its settings, and a backup that can be restored.
    function makeDamaged() {
        renewWorldOnDisk();
        world.damage();
        world.workspace.go("Settings");
        const view = make();
        named(view, "Restore…").forceActiveFocus();
        return view;
    }

    function test_an_alert_over_the_question_for_the_backup_gives_the_keyboard_back() {
        makeDamaged();
        keyClick(Qt.Key_Return);
        compare(focused(), "Cancel");
        world.fail("The disk is full.");
        compare(focused(), "OK");
        keyClick(Qt.Key_Return);
        compare(focused(), "Cancel");
        keyClick(Qt.Key_Escape);
        verify(!world.settings.isAskingToRestore);
        compare(focused(), "Restore…");
    }

    function test_a_backup_that_was_restored_elsewhere_leaves_the_keyboard_on_the_page() {
        const view = makeDamaged();
        keyClick(Qt.Key_Return);
        world.restoreElsewhere();
        verify(!world.settings.isAskingToRestore);
        tryVerify(() => focused() !== "Restore…" && focused() !== "");
        verify(test.Window.window.activeFocusItem.visible);
        keyClick(Qt.Key_Tab);
        verify(holds(named(view, "Settings page"), test.Window.window.activeFocusItem));
    }

    function holds(page, item) {
        for (let each = item; each; each = each.parent) {
            if (each === page) {
                return true;
            }
        }
        return false;
    }

    function test_an_alert_over_the_keys_gives_the_keyboard_back() {
        const view = make();
        named(view, "Main menu").forceActiveFocus();
        keyClick(Qt.Key_F1);
        world.fail("The disk is full.");
        compare(focused(), "OK");
        keyClick(Qt.Key_Return);
        compare(focused(), "");
        keyClick(Qt.Key_Tab);
        compare(focused(), "Close");
        keyClick(Qt.Key_Escape);
        verify(!world.settings.isShowingKeys);
        compare(focused(), "Main menu");
    }

    function test_a_form_that_opens_closes_the_keys() {
        renewWorld();
        const view = make();
        keyClick(Qt.Key_F1);
        verify(world.settings.isShowingKeys);
        keyClick(Qt.Key_T, Qt.ControlModifier);
        world.advance(0);
        tryVerify(() => focused() === "Client name");
        verify(!world.settings.isShowingKeys);
        keyClick(Qt.Key_Escape);
        tryVerify(() => !world.forms.current);
        verify(!world.settings.isShowingKeys);
    }

    function test_the_keyboard_goes_back_a_month_when_there_is_none_to_go_on_to() {
        world.workspace.go("Overview");
        const view = make();
        mouseClick(named(view, "Previous month"));
        named(view, "Next month").forceActiveFocus();
        keyClick(Qt.Key_Return);
        verify(!named(view, "Next month").enabled);
        compare(named(view, "Next month").Accessible.description, "Not available");
        tryVerify(() => focused() === "Previous month");
    }

    function test_a_section_that_goes_leaves_the_keyboard_on_its_page() {
        world.addProject("Website");
        const view = make();
        mouseClick(named(view, "Aster Studio"));
        named(view, "Start Website").forceActiveFocus();
        world.disableProjects();
        tryVerify(() => focused() === "Edit client");
    }

    /// What is to happen for each key that the sheet of keys names and no command of the window has.
    function stories(view) {
        const onRow = then => {
            world.workspace.go("Sessions");
            tryVerify(() => row(view, "Design"));
            row(view, "Design").forceActiveFocus();
            keyClick(Qt.Key_Home);
            tryVerify(() => focused().startsWith("Design, "));
            then();
        };
        const onChart = then => {
            world.workspace.go("Overview");
            tryVerify(() => find(view, each => / 1: /.test(each)));
            find(view, each => / 1: /.test(each)).forceActiveFocus();
            keyClick(Qt.Key_Home);
            [1, 2, 3].forEach(() => keyClick(Qt.Key_Right));
            verify(/ 4: /.test(focused()));
            then();
        };
        const onForm = then => onRow(() => {
            keyClick(Qt.Key_Return);
            tryVerify(() => world.forms.current);
            then();
            keyClick(Qt.Key_Escape);
            tryVerify(() => !world.forms.current);
        });
        const abandon = () => {
            world.forms.current.requestClose(); // which asks, since it has changed
            world.forms.current.confirm();
        };
        const openCalendar = () => {
            tryVerify(() => named(view, "Choose the day from a calendar"));
            named(view, "Choose the day from a calendar").forceActiveFocus();
            keyClick(Qt.Key_Space);
        };
        const today = "Friday, September 19, 2025";
        const onCalendar = (key, modifiers, before, after) => onForm(() => {
            openCalendar();
            compare(focused(), today);
            keyClick(key[0], modifiers);
            compare(focused(), before);
            keyClick(key[1], modifiers);
            compare(focused(), after);
            keyClick(Qt.Key_Escape);
        });
        const inTitle = then => {
            const field = find(view, each => each === "Session title");
            field.forceActiveFocus();
            field.selectAll();
            then(field);
        };
        const inSearch = then => {
            world.workspace.go("Sessions");
            tryVerify(() => named(view, "Search sessions"));
            named(view, "Search sessions").forceActiveFocus();
            then();
        };
        const onSetting = (name, then) => {
            world.workspace.go("Settings");
            tryVerify(() => named(view, name));
            named(view, name).forceActiveFocus();
            then(world.settings.appearance);
        };
        const onColor = then => onSetting("Custom accent color", form => {
            keyClick(Qt.Key_Space);
            tryVerify(() => focused() === "Choose custom accent color");
            form.pick(0.5, 0.5, 0.5);
            then(form);
            form.closeEditor();
        });
        return {
            "Save": () => onRow(() => {
                keyClick(Qt.Key_Return);
                tryVerify(() => world.forms.current);
                keyClick(Qt.Key_Return, Qt.ControlModifier);
                tryVerify(() => !world.forms.current);
            }),
            "Cancel": () => onRow(() => {
                keyClick(Qt.Key_Delete);
                verify(world.deletion.isAsking);
                keyClick(Qt.Key_Escape);
                verify(!world.deletion.isAsking);
            }),
            "More hours or minutes, fewer": () => onForm(() => {
                for (const [field, more, fewer] of [["Hours", "1", "0"], ["Minutes", "31", "30"]]) {
                    named(view, field).forceActiveFocus();
                    keyClick(Qt.Key_Up);
                    compare(named(view, field).text, more);
                    keyClick(Qt.Key_Down);
                    compare(named(view, field).text, fewer);
                }
                abandon();
            }),
            "Edit the session": () => onRow(() => {
                keyClick(Qt.Key_Enter);
                tryVerify(() => world.editorID.startsWith("entry-"));
                keyClick(Qt.Key_Escape);
                tryVerify(() => !world.forms.current);
            }),
            "Delete the session": () => onRow(() => {
                keyClick(Qt.Key_Delete);
                verify(world.deletion.isAsking);
                keyClick(Qt.Key_Escape);
            }),
            "Menu of the session": () => onRow(() => {
                for (const key of [[Qt.Key_Menu, Qt.NoModifier], [Qt.Key_F10, Qt.ShiftModifier]]) {
                    world.forgetMenu();
                    keyClick(key[0], key[1]);
                    verify(world.menuEntries().length > 0);
                }
            }),
            "Go to a session by its name": () => onRow(() => {
                keyClick("p");
                tryVerify(() => focused().startsWith("Proofs, "));
            }),
            "From row to row": () => onRow(() => {
                keyClick(Qt.Key_Down);
                tryVerify(() => focused().startsWith("Proofs, "));
                keyClick(Qt.Key_Up);
                tryVerify(() => focused().startsWith("Design, "));
            }),
            "From day to day": () => onChart(() => {
                keyClick(Qt.Key_Left);
                verify(/ 3: /.test(focused()));
                keyClick(Qt.Key_Right);
                verify(/ 4: /.test(focused()));
            }),
            "To the first, to the last": () => onChart(() => {
                keyClick(Qt.Key_Home);
                verify(/ 1: /.test(focused()));
                keyClick(Qt.Key_End);
                verify(/ 30: /.test(focused()));
            }),
            "A page up, a page down": () => onRow(() => {
                keyClick(Qt.Key_PageDown);
                tryVerify(() => focused().startsWith("Proofs, "));
                keyClick(Qt.Key_PageUp);
                tryVerify(() => focused().startsWith("Design, "));
            }),
            "Take the suggestion": () => inTitle(field => {
                "De".split("").forEach(letter => keyClick(letter));
                compare(field.text, "De");
                keyClick(Qt.Key_Right);
                compare(field.text, "Design");
            }),
            "Leave the title as it was": () => {
                inTitle(() => "Logo".split("").forEach(letter => keyClick(letter)));
                keyClick(Qt.Key_Return); // begins the session
                tryVerify(() => world.session.isRunning);
                inTitle(field => {
                    keyClick("x");
                    compare(field.text, "x");
                    keyClick(Qt.Key_Escape);
                    compare(field.text, "Logo");
                });
            },
            "Clear the search": () => inSearch(() => {
                keyClick("x");
                compare(world.sessions.search, "x");
                keyClick(Qt.Key_Escape);
                compare(world.sessions.search, "");
            }),
            "Go on to what was found": () => [Qt.Key_Down, Qt.Key_Return, Qt.Key_Enter].forEach(
                key => inSearch(() => {
                    keyClick(key);
                    tryVerify(() => focused().includes(", Aster Studio"));
                })),
            "A day back, a day on": () => onCalendar([Qt.Key_Left, Qt.Key_Right], Qt.NoModifier,
                "Thursday, September 18, 2025", today),
            "A week back, a week on": () => onCalendar([Qt.Key_Up, Qt.Key_Down], Qt.NoModifier,
                "Friday, September 12, 2025", today),
            "First day of the week, last day": () => onForm(() => {
                openCalendar();
                keyClick(Qt.Key_Up); // no day of the week before is to come
                keyClick(Qt.Key_Home);
                compare(focused(), "Sunday, September 7, 2025");
                keyClick(Qt.Key_End);
                compare(focused(), "Saturday, September 13, 2025");
                keyClick(Qt.Key_Escape);
            }),
            "A month back, a month on": () => onCalendar([Qt.Key_PageUp, Qt.Key_PageDown],
                Qt.NoModifier, "Tuesday, August 19, 2025", today),
            "A year back, a year on": () => onCalendar([Qt.Key_PageUp, Qt.Key_PageDown],
                Qt.ShiftModifier, "Thursday, September 19, 2024", today),
            "Choose the day": () => onForm(() => {
                for (const [key, day] of [[Qt.Key_Return, "9/18/"], [Qt.Key_Enter, "9/17/"], [Qt.Key_Space, "9/16/"]]) {
                    openCalendar();
                    keyClick(Qt.Key_Left);
                    keyClick(key);
                    verify(world.forms.current.started.startsWith(day), world.forms.current.started);
                }
                abandon();
            }),
            "Close the calendar": () => onForm(() => {
                openCalendar();
                compare(focused(), today);
                keyClick(Qt.Key_Escape);
                compare(focused(), "Choose the day from a calendar");
            }),
            "Open a menu": () => onSetting("Screen of the panel: Primary screen", () => {
                world.forgetMenu();
                keyClick(Qt.Key_Down);
                verify(world.menuEntries().length > 0);
            }),
            "Choose what is beside it": () => onSetting("Dark", form => {
                keyClick(Qt.Key_Left);
                compare(form.mode, 0);
                keyClick(Qt.Key_Right);
                compare(form.mode, 1);
            }),
            "From color to color": () => onSetting("Kestry accent", () => {
                keyClick(Qt.Key_Right);
                compare(focused(), "Violet accent");
                keyClick(Qt.Key_Left);
                compare(focused(), "Kestry accent");
            }),
            "Paler color, stronger color": () => onColor(form => {
                keyClick(Qt.Key_Left);
                fuzzyCompare(form.saturation, 0.48, 0.001);
                keyClick(Qt.Key_Right);
                fuzzyCompare(form.saturation, 0.5, 0.001);
            }),
            "Brighter color, darker color": () => onColor(form => {
                keyClick(Qt.Key_Up);
                fuzzyCompare(form.brightness, 0.52, 0.001);
                keyClick(Qt.Key_Down);
                fuzzyCompare(form.brightness, 0.5, 0.001);
            }),
            "Another hue": () => onColor(form => {
                named(view, "Hue").forceActiveFocus();
                for (const [key, hue] of [[Qt.Key_Left, 176], [Qt.Key_Right, 180], [Qt.Key_Down, 176], [Qt.Key_Up, 180]]) {
                    keyClick(key);
                    fuzzyCompare(360 * form.hue, hue, 0.01);
                }
            }),
        };
    }

    function test_each_key_of_forms_lists_and_pages_does_what_the_sheet_of_keys_says() {
        world.save("Proofs", 3);
        const view = make();
        const told = stories(view);
        const named = WindowKeys.groups.slice(2).reduce((rows, group) => rows.concat(group.rows), []).map(each => each.words);
        compare(Object.keys(told), named);
        for (const words of named) {
            told[words]();
        }
    }

    function test_the_main_menu_scrolls_away_with_the_page_and_comes_back_with_the_keyboard() {
        for (let number = 0; number < 12; ++number) {
            world.addProject("Project " + number);
        }
        const view = make();
        mouseClick(named(view, "Aster Studio"));
        tryVerify(() => named(view, "Start Project 11"));
        const menu = named(view, "Main menu");
        const top = menu.mapToItem(view, 0, 0).y;
        verify(top > 0);
        named(view, "Start Project 11").forceActiveFocus();
        tryVerify(() => menu.mapToItem(view, 0, 0).y + menu.height < 0);
        menu.forceActiveFocus(Qt.TabFocusReason);
        tryVerify(() => menu.mapToItem(view, 0, 0).y === top);
    }

    // An update.

    function test_a_refused_check_is_told_in_an_alert_and_leaves_what_was_typed() {
        world.updates.enable();
        world.updates.type("Type & color");
        world.workspace.go("Settings");
        const view = make();
        named(view, "Check now").forceActiveFocus();
        keyClick(Qt.Key_Space);
        const words = "Save your changes and finish the current session before installing an update.";
        compare(named(view, "Update postponed. " + words).Accessible.role, Accessible.AlertMessage);
        compare(focused(), "OK");
        keyClick(Qt.Key_Return);
        compare(focused(), "Check now");
        compare(world.updates.told, []);
        verify(named(view, "Check for updates, " + words));
    }

    function test_an_update_lies_over_the_window_and_gives_the_keyboard_back() {
        world.updates.enable();
        world.workspace.go("Settings");
        const view = make();
        named(view, "Check now").forceActiveFocus();
        keyClick(Qt.Key_Space);
        world.updates.found();
        compare(focused(), "Later");
        verify(!named(view, "Check now").enabled);
        world.updates.end();
        compare(focused(), "Check now");
    }

    function test_an_update_waits_while_a_form_is_open_and_comes_after_it() {
        world.updates.enable();
        const view = make();
        row(view, "Design").forceActiveFocus();
        keyClick(Qt.Key_Return);
        tryVerify(() => world.forms.current !== null);
        const before = focused();
        world.updates.found();
        compare(focused(), before);
        verify(!named(view, "An update is available."));
        keyClick(Qt.Key_Escape);
        tryVerify(() => focused() === "Later");
        world.updates.end();
        verify(focused().startsWith("Design, "));
    }

    function test_an_alert_over_an_update_gives_the_keyboard_back() {
        world.updates.enable();
        make();
        world.updates.found();
        keyClick(Qt.Key_Tab);
        world.updates.type("Type & color");
        keyClick(Qt.Key_Backtab);
        keyClick(Qt.Key_Tab);
        compare(focused(), "Install and Relaunch");
        keyClick(Qt.Key_Return);
        compare(focused(), "OK");
        keyClick(Qt.Key_Return);
        compare(focused(), "Later");
        compare(world.updates.told, []);
    }
}
