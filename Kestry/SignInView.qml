import QtQuick
import Kestry
import KestryItems

/// The fields of an account at a record store.
FocusScope {
    id: root

    required property SignInForm form

    function submit(): void {
        root.form.submit(password.secret);
    }

    focus: true
    Accessible.role: Accessible.Dialog
    Accessible.name: heading.title
    Keys.onEscapePressed: root.form.cancel()
    Component.onCompleted: {
        if (root.form.address.length > 0 && root.form.needsUser) {
            password.beginEditing();
        } else {
            address.beginEditing();
        }
    }

    SheetShade {
        anchors.fill: parent
    }

    SheetFrame {
        id: frame
        anchors.centerIn: parent
        width: Math.min(Theme.sheetWidth, root.width - 2 * Theme.pageMargin)
        contentHeight: Math.min(column.implicitHeight, root.height - 2 * Theme.sheetMargin - 2 * Theme.sheetPadding)

        ScrollingPage {
            width: frame.contentWidth
            height: frame.contentHeight
            contentHeight: column.implicitHeight

            Column {
                id: column
                width: frame.contentWidth
                spacing: Theme.fieldSpacing

                SheetHeading {
                    id: heading
                    width: parent.width
                    title: "Sign in to a record store"
                    line: "Your own server, or a file that your machines share"
                    onClosed: root.form.cancel()
                }

                FormTextField {
                    id: address
                    width: parent.width
                    label: "Address"
                    placeholder: "https://example.org/database"
                    text: root.form.address
                    hint: "A CouchDB server: https, and http on this machine alone. Or sqlite: and the path of a file."
                    enabled: !root.form.isChecking
                    onEdited: text => root.form.address = text
                    onSubmitted: root.submit()
                }

                FormTextField {
                    width: parent.width
                    label: "User"
                    text: root.form.user
                    visible: root.form.needsUser
                    enabled: !root.form.isChecking
                    onEdited: text => root.form.user = text
                    onSubmitted: root.submit()
                }

                SecretField {
                    id: password
                    width: parent.width
                    label: "Password"
                    visible: root.form.needsUser
                    enabled: !root.form.isChecking
                    onSubmitted: root.submit()
                }

                FormMessage {
                    width: parent.width
                    message: root.form.message
                }

                Row {
                    anchors.right: parent.right
                    spacing: Theme.spacing

                    QuietButtonStyle {
                        label: "Cancel"
                        onTriggered: root.form.cancel()
                    }

                    PrimaryButtonStyle {
                        label: root.form.isChecking ? "Signing in…" : "Sign in"
                        enabled: !root.form.isChecking
                        onTriggered: root.submit()
                    }
                }
            }
        }
    }
}
