import QtQuick
import Kestry
import KestryItems

/// How wide the columns of a table of sessions are, for its heads and its rows alike.
QtObject {
    id: root

    /// Of the whole table, without the padding of its rows.
    required property real width
    property bool isOverview: false
    property bool showsAvatar: true
    readonly property real avatar: isOverview ? Theme.overviewAvatar : Theme.rowAvatar
    /// The avatar and the gap after it.
    readonly property real mark: showsAvatar ? avatar + Theme.rowAvatarGap : 0
    /// What is left for the columns, with the gaps before them.
    readonly property real room: width - mark - Theme.leastNameWidth - 3 * Theme.columnGap
    /// The Overview's columns are wider where there is room.
    readonly property bool isWide: isOverview && room >= Math.max(Theme.overviewDateColumn, leastDate)
        + Theme.overviewDurationColumn + Theme.overviewValueColumn
    readonly property real leastDate: DateColumn.width(Theme.timerFont)
    readonly property real dateColumn: Math.max(isWide ? Theme.overviewDateColumn : Theme.dateColumn, leastDate)
    readonly property real duration: isWide ? Theme.overviewDurationColumn : Theme.durationColumn
    readonly property real valueColumn: isWide ? Theme.overviewValueColumn : Theme.valueColumn
    /// In a table that is too narrow for a column of them dates stand below the durations.
    readonly property bool hasDateColumn: room >= dateColumn + duration + valueColumn
    readonly property real date: hasDateColumn ? dateColumn : Math.max(duration, leastDate)
    readonly property real value: hasDateColumn ? valueColumn : Theme.overviewValueColumn
    /// What stands after the durations, and after the dates, with the gaps before it.
    readonly property real afterDuration: value + Theme.columnGap
    readonly property real afterDate: afterDuration + (hasDateColumn ? duration + Theme.columnGap : 0)
    /// All that stands after the names.
    readonly property real afterNames: afterDate + date + Theme.columnGap
}
