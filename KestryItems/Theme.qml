pragma Singleton

import QtQuick
import KestryItems

/// Every colour, size and duration. The panels are always dark, the window follows its theme.
QtObject {
    id: root

    // Colours.
    readonly property ThemeColors dark: ThemeColors {
        background: "#101112"
        primaryText: "#F3F3EF"
        secondaryText: root.increasesContrast ? "#D2D4D7" : "#A2A5AA"
        surface: "#151618"
        raisedSurface: "#1B1D1F"
        line: "#FFFFFF"
        accent: Appearance.darkAccent
        accentText: Appearance.onDarkAccent
        attention: root.attentionIn(root.dark)
        accentOnTint: root.accentOnTintIn(root.dark)
        hasMoreContrast: root.increasesContrast
        controlLineOpacity: root.increasesContrast ? 1 : 0.65
    }
    readonly property ThemeColors light: ThemeColors {
        background: "#F7F8FA"
        primaryText: "#202329"
        secondaryText: root.increasesContrast ? "#3B3F46" : "#626770"
        surface: "#EFF1F4"
        raisedSurface: "#FFFFFF"
        line: "#000000"
        accent: Appearance.lightAccent
        accentText: Appearance.onLightAccent
        attention: root.attentionIn(root.light)
        accentOnTint: root.accentOnTintIn(root.light)
        hasMoreContrast: root.increasesContrast
        controlLineOpacity: root.increasesContrast ? 1 : 0.82
    }
    readonly property ThemeColors workspace: Appearance.isDark ? root.dark : root.light
    /// One with the camera housing that it hugs.
    readonly property color strip: "#000000"
    readonly property color panel: Qt.alpha(dark.background, reducesTransparency ? 1 : panelOpacity)
    /// The brightest place of the panel: a field that is pointed at, over a white desktop.
    readonly property color brightestPanel: Qt.tint(Qt.tint(Qt.tint("white", panel), dark.field), dark.highlight)
    readonly property color panelSecondaryText: Appearance.legible(dark.secondaryText, dark.line, [brightestPanel])
    readonly property color panelAccent: Appearance.distinct(dark.accent, dark.line, [brightestPanel])
    /// All hues around the circle, at even distances.
    readonly property var hues: ["#FF0000", "#FFFF00", "#00FF00", "#00FFFF", "#0000FF", "#FF00FF", "#FF0000"]
    readonly property color white: "#FFFFFF"
    readonly property color black: "#000000"
    /// Laid over the window behind a form.
    readonly property color shade: "#000000"

    function attentionIn(colors: ThemeColors): color {
        return Appearance.legible("#FF785A", colors.line,
            [colors.background, colors.raisedSurface, Qt.tint(colors.surface, colors.highlight)]);
    }

    function accentOnTintIn(colors: ThemeColors): color {
        return Appearance.legible(colors.accent, colors.line,
            [Qt.tint(Qt.tint(colors.background, colors.highlight), colors.accentTint)]);
    }

    // Opacities.
    readonly property real shadeOpacity: 0.45
    /// Of the highlight under a row that is pointed at and not chosen.
    readonly property real pointedOpacity: 0.5
    readonly property real primaryDisabledOpacity: 0.5
    readonly property real quietDisabledOpacity: 0.4
    readonly property real quietPressedOpacity: 0.6
    readonly property real panelOpacity: 0.85
    readonly property real previewOpacity: 0.92
    readonly property real pressedOpacity: 0.8
    readonly property real glassOpacity: 0.85
    readonly property real glassTintOpacity: 0.12
    /// Of the way on from the present month.
    readonly property real lastMonthOpacity: 0.3
    readonly property real laterBarOpacity: 0.035
    readonly property real busyBarOpacity: 0.55
    readonly property real idleBarOpacity: 0.08
    readonly property real placeholderOpacity: 0.35
    /// Behind the initial of a client.
    readonly property real initialOpacity: 0.05

    /// How much larger texts are than they are by default.
    readonly property real textScale: Appearance.textScale

    /// A size of type, or a width that texts fill.
    function text(size: int): int {
        return Math.round(size * root.textScale);
    }

    /// The height of what has a line of text with room around it. The room stays as it is.
    function line(height: int): int {
        return Math.round(height * Math.max(1, (1 + root.textScale) / 2));
    }

    // Sizes, in device-independent pixels.
    readonly property int stripGlyphHeight: 18
    readonly property int stripSideWidth: 70
    readonly property int panelPadding: 10
    readonly property int previewPadding: 12
    readonly property int scrollMarkWidth: 3
    readonly property int scrollMarkPointedWidth: 6
    readonly property int scrollMarkLeast: 28
    /// Where the pointer takes the mark.
    readonly property int scrollAreaWidth: 12
    readonly property int spacing: 6
    readonly property int tightSpacing: 4
    readonly property int cellSize: 28
    readonly property int controlHeight: 28
    readonly property int controlRadius: 8
    readonly property int controlPadding: 10
    readonly property int buttonMinimumWidth: 72
    readonly property int buttonHeight: root.line(36)
    readonly property int buttonPadding: 14
    readonly property int leastTextWidth: 24
    readonly property int factsHeight: 20
    readonly property int captionRise: 2
    readonly property int factColumnSpacing: 16
    readonly property int messageHeight: 12
    readonly property int placeholderBarHeight: 10
    readonly property int progressHeight: 4
    readonly property int placeholderBarSpacing: 12
    /// Of a client's colour in a menu.
    readonly property int dotSize: 8
    readonly property int markSize: 18
    readonly property int smallSymbolSize: 11
    readonly property int symbolSize: 12
    readonly property int actionSymbolSize: 13

    // Of menus and tool tips.
    readonly property int menuPadding: 5
    readonly property int menuRowHeight: root.line(28)
    readonly property int menuRowRadius: 5
    readonly property int menuRowPadding: 8
    readonly property int menuSeparatorHeight: 9
    readonly property int menuMarkWidth: 20
    readonly property int menuSymbolWidth: 20
    readonly property int menuShortcutGap: 24
    readonly property int menuMinimumWidth: 160
    readonly property int menuTextMaximum: root.text(320)
    readonly property real menuDisabledOpacity: 0.6
    readonly property int tipPadding: 6
    readonly property int tipMaximumWidth: root.text(320)

    // Of the workspace window.
    readonly property int sidebarWidth: 240
    readonly property int sidebarPadding: 12
    readonly property int sidebarTop: 20
    readonly property int sidebarRowHeight: root.line(32)
    /// Of the square before a name: an avatar, or a symbol in its middle.
    readonly property int sidebarMarkSize: root.line(24)
    readonly property int sidebarHeadingHeight: root.line(32)
    readonly property int boxFieldHeight: root.line(32)
    readonly property int boxPadding: 12
    readonly property int boxSpacing: 8
    readonly property int boxRadius: 10
    readonly property int sidebarSymbolSize: root.text(15)
    readonly property int buttonSymbolSize: root.text(11)
    readonly property int iconSymbolSize: root.text(13)
    readonly property int emptyListPadding: 27
    readonly property int pageMargin: 28
    readonly property int bannerHeight: root.line(44)
    readonly property int bannerPadding: 10
    readonly property int alertWidth: 420
    readonly property int sheetWidth: 460
    readonly property int sheetPadding: 24
    /// Least distance of a sheet from the edges of the window above and below.
    readonly property int sheetMargin: 16
    readonly property int logoSize: 56
    readonly property int sheetRadius: 14
    readonly property int fieldSpacing: 16
    readonly property int fieldHeight: root.line(36)
    readonly property int toggleWidth: 36
    readonly property int toggleHeight: 22
    readonly property int toggleInset: 3

    // Of the sessions table.
    readonly property int rowHeight: root.line(56)
    readonly property int rowPadding: 8
    readonly property int rowTextSpacing: 2
    readonly property int rowAvatar: 34
    readonly property int rowAvatarGap: 14
    readonly property int columnGap: 16
    readonly property int dateColumn: root.text(62)
    readonly property int durationColumn: root.text(76)
    readonly property int valueColumn: root.text(100)
    /// Less room than this for its name takes the date from a row.
    readonly property int leastNameWidth: root.text(88)
    /// Less room than this takes the symbols from the buttons beside a search.
    readonly property int leastToolsWidth: root.text(440)
    readonly property int tableHeaderHeight: root.line(32)
    readonly property int sortSymbolSize: 9
    readonly property int capsulePadding: 6
    readonly property int capsuleInset: 2
    readonly property int searchPadding: 12
    readonly property int searchMinimum: 140
    readonly property int searchMaximum: 280
    readonly property int sectionSpacing: 16
    readonly property int emptySymbolSize: 32
    readonly property int emptyMaximumWidth: 360
    readonly property int ringWidth: 2
    readonly property int ringDistance: 3

    // Of a client's dashboard.
    readonly property int dashboardAvatar: root.line(48)
    readonly property int dashboardSpacing: 32
    readonly property int cardGap: 18
    readonly property int cardPadding: 16
    /// Less room than this for a card takes two of the four to a second row.
    readonly property int cardMinimum: root.text(160)
    readonly property int belowCards: 8
    readonly property int projectSymbolSize: root.text(15)
    readonly property int projectMarkWidth: root.text(28)
    readonly property int emptySectionPadding: 20

    // Of the settings.
    readonly property int settingsMaximum: root.text(720)
    readonly property int settingsSpacing: 24
    readonly property int settingsRowHeight: root.line(56)
    readonly property int settingsRowPadding: 8
    /// Of the symbol of a row, and of what stands at the row's right end.
    readonly property int settingsInset: 16
    /// Where the texts of a row begin, and the lines between rows.
    readonly property int settingsTextInset: 54
    readonly property int settingsSymbolSize: 18
    readonly property int settingsLeastText: root.text(120)
    readonly property int comparedNameWidth: root.text(96)
    readonly property int comparedMarkWidth: root.text(16)
    readonly property int swatchSize: 28
    readonly property int swatchSymbolSize: 14
    readonly property int colorFieldHeight: 128
    readonly property int hueSliderHeight: 20
    readonly property int colorHandleSize: 16

    // Of the Overview.
    readonly property int overviewTop: 24
    readonly property int overviewBottom: 26
    readonly property int firstClientPadding: 48
    readonly property int blockSpacing: 32
    readonly property int summaryGap: 18
    /// Less room than this puts the columns of the summary below each other.
    readonly property int leastSummaryWidth: root.text(640)
    readonly property int monthButtonWidth: 28
    readonly property int monthButtonHeight: 32
    readonly property int monthSymbolSize: 9
    readonly property int leastMonthWidth: root.text(112)
    readonly property int chartHeight: 138
    readonly property int axisWidth: 20
    readonly property int barRadius: 2
    readonly property int barRingDistance: 1
    readonly property real leastBarGap: 3
    readonly property real barGapsPerWidth: 110
    readonly property int noSessionsHeight: 88
    // Its columns are wider.
    readonly property int overviewAvatar: 31
    readonly property int overviewDateColumn: root.text(120)
    readonly property int overviewDurationColumn: root.text(92)
    readonly property int overviewValueColumn: root.text(88)

    // Type, in pixels, at the desktop's text scale.
    readonly property int pageTitleFont: root.text(24)
    /// How far the middle of the first line of a page's title is below its top.
    readonly property real titleLineMiddle: 0.6 * pageTitleFont
    readonly property int figureFont: root.text(22)
    readonly property int elapsedFont: root.text(22)
    readonly property int sheetTitleFont: root.text(17)
    readonly property int sectionFont: root.text(16)
    readonly property int rowFont: root.text(14)
    readonly property int captionFont: root.text(10)
    readonly property int smallFont: root.text(11)
    readonly property int bodyFont: root.text(12)
    readonly property int timerFont: root.text(13)
    readonly property int menuFont: root.text(13)

    // Of the panels, whose sizes are given.
    readonly property string monospaced: "monospace"
    readonly property int stripFont: 10
    readonly property int panelCaptionFont: 10
    readonly property int panelSmallFont: 11
    readonly property int panelBodyFont: 12
    readonly property int panelTimerFont: 13

    // Motion: durations in milliseconds, and the curve of a critically damped spring.
    readonly property bool reducesMotion: Appearance.reducesMotion
    readonly property bool reducesTransparency: Appearance.reducesTransparency
    readonly property bool increasesContrast: Appearance.increasesContrast
    readonly property int unfoldDuration: 323
    readonly property int foldDuration: 140
    readonly property int pressDuration: 294
    /// Of bars that rise: the spring's response, and after how long they stand.
    readonly property int riseResponse: 420
    readonly property int riseDuration: 617
    readonly property int barDelay: 6
    readonly property int changeDuration: 160
    readonly property int turnDuration: 1000 // of a sign that something goes on
    readonly property int markInterval: 34
    /// Of texts that change each second: three pictures of a motion, and the new text.
    readonly property int tickInterval: 83
    readonly property int entranceDelay: 160
    readonly property int entranceDuration: 100
    readonly property int tipDelay: 700
    /// Longer than between two letters of a word that is typed.
    readonly property int tellingDelay: 500
    readonly property real pressedScale: 0.96
    readonly property real leavingScale: 0.25
    readonly property var springCurve: [0.0863, 0.0428, 0.1236, 0.4994, 0.3252, 0.8037, 0.524, 1.0531, 0.7822, 0.9791, 1, 1]
}
