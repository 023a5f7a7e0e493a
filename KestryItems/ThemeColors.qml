import QtQuick

/// The colours of one theme.
QtObject {
    required property color background
    required property color primaryText
    required property color secondaryText
    required property color surface
    required property color raisedSurface
    /// Drawn at low opacity only, as in the colours below.
    required property color line
    required property color accent
    /// Text on a fill of the accent.
    required property color accentText
    /// What went wrong.
    required property color attention

    /// The time of a session that stands still.
    readonly property color pausedText: secondaryText
    readonly property color placeholderText: Qt.alpha(secondaryText, 0.7)
    readonly property color outline: Qt.alpha(line, 0.08)
    /// Opaque, for windows that know no opacity.
    readonly property color tipOutline: Qt.tint(raisedSurface, Qt.alpha(line, 0.16))
    /// Of a switch that is off.
    readonly property color track: Qt.alpha(line, 0.16)
    readonly property color field: Qt.alpha(line, 0.06)
    /// Laid over what is pointed at, or has the keyboard.
    readonly property color highlight: Qt.alpha(line, 0.08)
}
