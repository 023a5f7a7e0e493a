pragma Singleton

import QtQuick

/// Every colour, size and duration of the panels. They are always dark, whatever the theme.
QtObject {
    // Colours.
    readonly property color strip: "#000000"
    readonly property color background: "#101112"
    readonly property color primaryText: "#F3F3EF"
    readonly property color secondaryText: "#A2A5AA"
    readonly property color line: "#FFFFFF"
    readonly property color accent: "#CBDDA5"
    readonly property color accentText: "#000000"
    readonly property color attention: "#F0BB85"
    readonly property color pausedText: secondaryText

    // Opacities.
    readonly property real panelOpacity: 0.85
    readonly property real highlightOpacity: 0.08
    readonly property real fieldOpacity: 0.07
    readonly property real outlineOpacity: 0.08
    readonly property real previewOpacity: 0.92
    readonly property real scrollMarkOpacity: 0.25
    readonly property real pressedOpacity: 0.8
    readonly property real disabledOpacity: 0.5

    // Sizes, in device-independent pixels.
    readonly property int stripGlyphHeight: 18
    readonly property int stripSideWidth: 70
    readonly property int panelPadding: 10
    readonly property int spacing: 6
    readonly property int tightSpacing: 4
    readonly property int controlHeight: 28
    readonly property int controlRadius: 8
    readonly property int controlPadding: 10
    readonly property int rowHeight: 26
    readonly property int rowRadius: 6
    readonly property int captionHeight: 20
    readonly property int sessionRowsPadding: 8
    readonly property int factsHeight: 26
    readonly property int factColumnSpacing: 16
    readonly property int messageHeight: 18
    readonly property int noticeHeight: 34
    readonly property int visibleRows: 4
    readonly property int dotSize: 8
    readonly property int previewPadding: 12
    readonly property int scrollMarkWidth: 3
    readonly property int smallSymbolSize: 10
    readonly property int symbolSize: 12
    readonly property int actionSymbolSize: 13

    // Type, in pixels.
    readonly property int captionFont: 10
    readonly property int smallFont: 11
    readonly property int bodyFont: 12
    readonly property int timerFont: 13
    readonly property int stripFont: 11

    // Durations in milliseconds, and the curve of a critically damped spring.
    readonly property int unfoldDuration: 323
    readonly property int foldDuration: 140
    readonly property int changeDuration: 160
    readonly property var springCurve: [0.0863, 0.0428, 0.1236, 0.4994, 0.3252, 0.8037, 0.524, 1.0531, 0.7822, 0.9791, 1, 1]
}
