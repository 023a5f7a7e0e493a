import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test

    property Item view

    name: "MenuView"
    height: 400

    Component {
        id: views
        MenuView {
            menu: test.world.openMenu
            radius: 10
            width: implicitWidth
            height: Math.min(implicitHeight, 300)
        }
    }

    function init(): void {
        renewWorld();
    }

    function open(names) {
        test.world.openMenuOf(names);
        test.view = createTemporaryObject(views, test);
        waitForRendering(test.view);
        restPointer();
    }

    function find(item, accepts) {
        for (let index = 0; index < item.children.length; ++index) {
            const child = item.children[index];
            const found = accepts(child) ? child : find(child, accepts);
            if (found) {
                return found;
            }
        }
        return null;
    }

    function row(name) {
        return find(test.view, item => item.kind !== undefined && item.text === name);
    }

    function test_it_is_as_high_as_its_rows(): void {
        open(["Ash", "Birch"]);
        compare(view.implicitHeight, 2 * Theme.menuPadding + 3 * Theme.menuRowHeight + Theme.menuSeparatorHeight);
        verify(row("More").y + row("More").height <= view.height);
    }

    function test_a_long_name_is_cut_and_told_whole(): void {
        const name = "A name that is far too long for any menu on any screen, and goes on";
        open([name, "Birch"]);
        verify(view.implicitWidth < Theme.menuTextMaximum + 150);
        compare(row(name).Accessible.name, name);
        verify(find(row(name), item => item.truncated === true));
    }

    function test_markup_in_a_name_is_only_text(): void {
        open(["<b>Ash</b>", "Birch"]);
        verify(find(row("<b>Ash</b>"), item => item.textFormat === Text.PlainText && item.text === "<b>Ash</b>"));
    }

    function test_the_highlighted_row_has_the_focus(): void {
        open(["Ash", "Birch", "Cedar"]);
        world.openMenu.press(Qt.Key_Down, "");
        verify(row("Ash").isHighlighted);
        verify(row("Ash").activeFocus);
        mouseMove(row("Birch"), 30, 10);
        mouseMove(row("Birch"), 31, 10);
        verify(row("Birch").activeFocus);
        verify(!row("Ash").isHighlighted);
    }

    function test_a_click_chooses_what_can_be_chosen(): void {
        open(["Ash", "Birch", "Cedar"]);
        mouseClick(row("Cedar"));
        compare(world.reports, []);
        mouseClick(row("Birch"));
        compare(world.reports, ["chose Birch"]);
    }

    function test_a_checked_and_a_disabled_row_say_so(): void {
        open(["Ash", "Birch"]);
        verify(row("Ash").Accessible.checked);
        verify(!row("Birch").Accessible.checked);
        compare(row("Birch").Accessible.description, "Not available");
        compare(row("Ash").Accessible.description, "");
    }

    function test_a_submenu_has_a_way_back(): void {
        open(["Ash", "Birch"]);
        const width = view.implicitWidth;
        mouseClick(row("More"));
        verify(row("One").activeFocus);
        compare(view.implicitWidth, width);
        mouseClick(find(view, item => item.label === "More"));
        verify(row("More").activeFocus);
    }

    function openLong(): void {
        const names = [];
        for (let number = 0; number < 100; ++number) {
            names.push("Name " + number);
        }
        open(names);
    }

    function test_the_mark_of_a_long_menu_scrolls_it_and_chooses_nothing(): void {
        openLong();
        const mark = findChild(view, "scrollMark");
        const area = mark.parent;
        compare(mark.y, 0);
        mousePress(area, area.width - 2, 5);
        mouseMove(area, area.width - 2, area.height / 2, -1, Qt.LeftButton);
        mouseMove(area, area.width - 2, area.height + 20, -1, Qt.LeftButton);
        mouseRelease(area, area.width - 2, area.height + 20);
        tryVerify(() => row("More"));
        fuzzyCompare(mark.y + mark.height, area.height, 1);
        compare(world.reports, []);
    }

    function test_a_short_menu_has_no_mark(): void {
        open(["Ash", "Birch"]);
        verify(!findChild(view, "scrollMark").visible);
    }

    function test_a_menu_that_is_too_long_scrolls_to_the_highlight(): void {
        openLong();
        world.openMenu.press(Qt.Key_End, "");
        tryVerify(() => row("More") && row("More").activeFocus);
        const place = row("More").mapToItem(view, 0, 0);
        verify(place.y >= 0 && place.y + row("More").height <= view.height);
    }
}
