import QtQuick
import QtTest
import Kestry
import KestryItems

ViewTest {
    id: test
    name: "TableColumns"

    Component {
        id: columns
        TableColumns { }
    }

    function table(width, isOverview) {
        return createTemporaryObject(columns, test, {width: width, isOverview: isOverview});
    }
    function names(table): real {
        return table.width - table.mark - table.afterNames;
    }

    function test_the_overview_has_wide_columns_where_there_is_room() {
        compare(table(900, true).date, Theme.overviewDateColumn);
        compare(table(900, true).value, Theme.overviewValueColumn);
        compare(table(900, false).duration, Theme.durationColumn);
    }

    function test_a_narrow_overview_has_narrow_columns_before_it_has_no_dates() {
        const smallest = table(464, true); // of a window 760 wide
        verify(smallest.showsDate);
        compare(smallest.duration, Theme.durationColumn);
        verify(names(smallest) >= Theme.leastNameWidth);
    }

    function test_names_keep_their_room_in_every_width() {
        for (let width = 400; width < 1000; ++width) {
            const each = table(width, width % 2 === 0);
            verify(names(each) >= Theme.leastNameWidth, width);
            verify(each.showsDate || width < 464, width);
            each.destroy();
        }
    }

    function test_a_table_without_avatars_gives_their_room_to_the_names() {
        const bare = createTemporaryObject(columns, test, {width: 464, showsAvatar: false});
        compare(bare.mark, 0);
        compare(names(bare), names(table(464, false)) + Theme.rowAvatar + Theme.rowAvatarGap);
    }
}
