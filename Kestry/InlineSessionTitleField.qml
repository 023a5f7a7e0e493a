import QtQuick
import Kestry
import KestryItems

/// One line for a session's title. While it is typed, the rest of the best suggestion stands
/// behind the caret in a faded colour; Right Arrow takes it, and nothing else inserts it.
FocusScope {
    id: root

    /// Also follows a binding of whoever holds the field, for as long as that says the same.
    property alias text: input.text
    /// Candidates, best first.
    property alias suggestions: ghost.suggestions
    /// Takes the keyboard with all text selected, once for each time that the field appears.
    property bool focusOnAppearance: false
    property bool requestedInitialFocus: false
    property ThemeColors colors: Theme.dark
    property int fontSize: Theme.panelBodyFont
    readonly property bool isComposing: input.inputMethodComposing || input.preeditText.length > 0

    signal edited(string newText)
    signal submitted
    signal cancelled
    signal editingChanged(bool editing)

    function acceptGhost(): bool {
        if (ghost.visibleSuffix.length === 0 || input.readOnly) {
            return false;
        }
        input.insert(input.length, ghost.visibleSuffix);
        input.cursorPosition = input.length;
        return true;
    }

    function takeFocus(): void {
        if (!root.visible) {
            return;
        }
        root.Window.window?.requestActivate();
        input.forceActiveFocus();
        input.selectAll();
    }

    function requestInitialFocus(): void {
        if (!root.visible) {
            root.requestedInitialFocus = false;
        } else if (root.focusOnAppearance && !root.requestedInitialFocus) {
            root.requestedInitialFocus = true;
            initialFocus.start();
        }
    }

    function handleKey(event: KeyEvent): void {
        if (root.isComposing) {
            event.accepted = false;
        } else if (event.key === Qt.Key_Right && event.modifiers === Qt.NoModifier) {
            event.accepted = root.acceptGhost();
        } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            root.submitted();
            event.accepted = true;
        } else if (event.key === Qt.Key_Escape) {
            root.cancelled();
            event.accepted = true;
        }
    }

    implicitHeight: Theme.controlHeight
    onFocusOnAppearanceChanged: requestInitialFocus()
    onVisibleChanged: requestInitialFocus()
    Component.onCompleted: requestInitialFocus()

    Timer {
        id: initialFocus
        interval: 0
        onTriggered: root.takeFocus()
    }

    Text {
        objectName: "placeholder"
        anchors.fill: input
        text: "Session title"
        textFormat: Text.PlainText
        color: root.colors.placeholderText
        font: input.font
        elide: Text.ElideRight
        verticalAlignment: Text.AlignVCenter
        visible: input.length === 0 && input.preeditText.length === 0
        Accessible.ignored: true
    }

    TextInput {
        id: input
        objectName: "input"
        anchors.verticalCenter: parent.verticalCenter
        width: root.width
        focus: true
        clip: true
        autoScroll: activeFocus // otherwise it shows its beginning
        color: root.colors.primaryText
        selectionColor: root.colors.accent
        selectedTextColor: root.colors.accentText
        font.pixelSize: root.fontSize
        inputMethodHints: Qt.ImhNoPredictiveText
        selectByMouse: true
        onTextChanged: root.edited(text)
        onActiveFocusChanged: root.editingChanged(activeFocus)
        Keys.onPressed: event => root.handleKey(event)
        Accessible.role: Accessible.EditableText
        Accessible.name: "Session title"
        Accessible.description: "Type a title. Press Right Arrow at the end to accept a suggested completion."
    }

    Text {
        objectName: "ghost"
        x: ghost.origin.x
        y: ghost.origin.y
        text: ghost.visibleSuffix
        textFormat: Text.PlainText
        color: root.colors.placeholderText
        font: input.font
        Accessible.ignored: true
    }

    GhostCompletion {
        id: ghost
        font: input.font
        bounds: Qt.size(root.width, root.height)
        caret: Qt.rect(input.x + input.cursorRectangle.x, input.y + input.cursorRectangle.y,
            input.cursorRectangle.width, input.cursorRectangle.height)
        isEditing: input.activeFocus
        isComposing: root.isComposing
        isAtEnd: input.selectedText.length === 0 && input.cursorPosition === input.length
        text: input.text
    }
}
