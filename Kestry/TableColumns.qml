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
    readonly property real date: Math.max(isWide ? Theme.overviewDateColumn : Theme.dateColumn, leastDate)
    readonly property real duration: isWide ? Theme.overviewDurationColumn : Theme.durationColumn
    readonly property real value: isWide ? Theme.overviewValueColumn : Theme.valueColumn
    /// A table that is too narrow has no dates.
    readonly property bool showsDate: room >= date + duration + value
    /// Duration and value with the gaps before them.
    readonly property real figures: duration + value + 2 * Theme.columnGap
    /// All that stands after the names.
    readonly property real afterNames: figures + (showsDate ? date + Theme.columnGap : 0)
}
