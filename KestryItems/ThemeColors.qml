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
    /// The accent as text on its tint, also in a row that is pointed at.
    required property color accentOnTint
    /// All that is drawn stands out more.
    required property bool hasMoreContrast
    /// Of `controlLine`, as a part of the secondary text's colour.
    required property real controlLineOpacity

    /// The time of a session that stands still.
    readonly property color pausedText: secondaryText
    readonly property color placeholderText: secondaryText
    readonly property color outline: hasMoreContrast ? controlLine : Qt.alpha(line, 0.08)
    /// Opaque, for windows that know no opacity.
    readonly property color tipOutline: hasMoreContrast
        ? secondaryText : Qt.tint(raisedSurface, Qt.alpha(line, 0.16))
    /// The edge of a control that has nothing else to be known by, and signs that say little.
    readonly property color controlLine: Qt.alpha(secondaryText, controlLineOpacity)
    /// Of a switch that is off.
    readonly property color track: Qt.alpha(line, 0.16)
    readonly property color field: Qt.alpha(line, 0.06)
    /// Laid over what is pointed at, or has the keyboard.
    readonly property color highlight: Qt.alpha(line, 0.08)
    /// The same over a fill, whose text is as dark or as light as the theme.
    readonly property color fillHighlight: Qt.alpha(line, 0.12)
    /// Behind a word that the accent marks.
    readonly property color accentTint: Qt.alpha(accent, 0.1)
}
