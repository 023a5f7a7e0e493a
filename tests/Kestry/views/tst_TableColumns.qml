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

    function test_a_narrow_overview_has_narrow_columns_before_its_dates_lose_theirs() {
        const smallest = table(464, true); // of a window 760 wide
        verify(smallest.hasDateColumn);
        compare(smallest.duration, Theme.durationColumn);
        verify(names(smallest) >= Theme.leastNameWidth);
    }

    function test_names_keep_their_room_in_every_width() {
        for (let width = 400; width < 1000; ++width) {
            const each = table(width, width % 2 === 0);
            verify(names(each) >= Theme.leastNameWidth, width);
            verify(each.hasDateColumn || width < 464, width);
            each.destroy();
        }
    }

    function test_dates_below_the_durations_have_the_room_that_they_need_data() {
        return [{tag: "125 %", scale: 1.25}, {tag: "150 %", scale: 1.5}];
    }

    function test_dates_below_the_durations_have_the_room_that_they_need(data) {
        desktop.scaleText(data.scale);
        const smallest = table(464, false);
        verify(!smallest.hasDateColumn);
        verify(smallest.date >= DateColumn.width(Theme.timerFont));
        compare(smallest.afterDate, smallest.afterDuration);
        desktop.scaleText(1);
    }

    function test_a_table_without_avatars_gives_their_room_to_the_names() {
        const bare = createTemporaryObject(columns, test, {width: 464, showsAvatar: false});
        compare(bare.mark, 0);
        compare(names(bare), names(table(464, false)) + Theme.rowAvatar + Theme.rowAvatarGap);
    }
}
