pragma Singleton

import QtQuick
import Kestry

/// Every colour, size and duration of the panels. They are always dark, whatever the theme.
QtObject {
    id: root

    component Colors: QtObject {
        required property bool isDark

        readonly property color background: isDark ? "#101112" : "#F7F8FA"
        readonly property color primaryText: isDark ? "#F3F3EF" : "#202329"
        readonly property color secondaryText: isDark ? "#A2A5AA" : "#626770"
        readonly property color surface: isDark ? "#151618" : "#EFF1F4"
        readonly property color raisedSurface: isDark ? "#1B1D1F" : "#FFFFFF"
        readonly property color line: isDark ? "#FFFFFF" : "#000000"
        readonly property color accent: isDark ? Appearance.darkAccent : Appearance.lightAccent
        readonly property color accentText: isDark ? Appearance.onDarkAccent : Appearance.onLightAccent
        readonly property color attention: isDark ? Appearance.darkAttention : Appearance.lightAttention
    }

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

    readonly property Colors workspace: Colors {
        isDark: Appearance.isDark
    }
    readonly property color shade: "#000000"

    // Opacities.
    readonly property real shadeOpacity: 0.45
    readonly property real primaryDisabledOpacity: 0.5
    readonly property real quietDisabledOpacity: 0.4
    readonly property real quietPressedOpacity: 0.6
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

    // Of the workspace window.
    readonly property int buttonMinimumWidth: 72
    readonly property int buttonHeight: 36
    readonly property int buttonPadding: 14
    readonly property int sidebarWidth: 240
    readonly property int sidebarPadding: 12
    readonly property int sidebarRowHeight: 32
    readonly property int sidebarSymbolSize: 15
    readonly property int emptyListPadding: 27
    readonly property int pageMargin: 28
    readonly property int bannerHeight: 44
    readonly property int alertWidth: 420
    readonly property int sheetWidth: 460
    readonly property int sheetPadding: 24
    readonly property int sheetRadius: 14
    readonly property int fieldSpacing: 16
    readonly property int fieldHeight: 36
    readonly property int toggleWidth: 36
    readonly property int toggleHeight: 22
    readonly property int toggleInset: 3

    // Type, in pixels.
    readonly property int pageTitleFont: 24
    readonly property int sheetTitleFont: 17
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
