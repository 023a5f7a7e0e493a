import QtQuick
import QtQuick.Window
import Kestry
import KestryItems

/// The fields of a form, which scroll where the window is too low for them.
Flickable {
    id: root

    required property EditorForm form
    /// Beside the fields, for the mark that tells where they are scrolled to.
    required property real margin
    readonly property Item focused: Window.activeFocusItem

    function viewOf(kind: int): string {
        switch (kind) {
        case EditorForm.Client:
            return "ClientFormView.qml";
        case EditorForm.Project:
            return "ProjectFormView.qml";
        case EditorForm.Entry:
            return "EntryFormView.qml";
        default:
            return "ActiveSessionFormView.qml";
        }
    }

    /// Whether an item is one of the fields.
    function holds(item: Item): bool {
        let each = item;
        while (each && each !== root.contentItem) {
            each = each.parent;
        }
        return each !== null;
    }

    function reveal(item: Item): void {
        const top = item.mapToItem(root.contentItem, 0, 0).y - Theme.fieldSpacing * 2;
        const bottom = top + item.height + Theme.fieldSpacing * 4;
        const most = Math.max(0, root.contentHeight - root.height);
        if (top < root.contentY) {
            root.contentY = Math.max(0, top);
        } else if (bottom > root.contentY + root.height) {
            root.contentY = Math.min(most, bottom - root.height);
        }
    }

    contentHeight: fields.implicitHeight
    boundsBehavior: Flickable.StopAtBounds
    clip: contentHeight > height
    onFocusedChanged: {
        if (focused && holds(focused)) {
            reveal(focused);
        }
    }

    Loader {
        id: fields
        width: root.width - root.margin
        Component.onCompleted: setSource(root.viewOf(root.form.kind), {"form": root.form})
    }

    // What there is above and below can be seen without moving anything.
    ScrollMark {
        parent: root
        view: root
    }
}
