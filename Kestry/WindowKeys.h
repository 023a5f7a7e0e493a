#pragma once

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <string>

namespace Kestry {

/// The keys of the workspace window: what the window listens to, what menus write beside their
/// entries and what the sheet of keys shows all come from here.
class WindowKeys final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QVariantList commands READ commands CONSTANT)
    Q_PROPERTY(QVariantList groups READ groups CONSTANT)

public:
    /// What a key of the window does.
    enum Command {
        ToggleSession,
        StopSession,
        ShowNotch,
        NewClient,
        Search,
        OpenSettings,
        OpenMenu,
        ShowKeys,
        CloseWindow,
        Quit,
        SaveForm,
    };
    Q_ENUM(Command)

    using QObject::QObject;

    /// What the window itself listens to: each with its `command`, and whether it `isAlways` there,
    /// also while a sheet lies over the window. The search is the sessions page's own, saving a
    /// form the form's.
    [[nodiscard]] static QVariantList commands();
    /// Each group with `title` and `rows`, each row with `words` and `keys`. What has no command
    /// is what forms, lists and pages do with keys by themselves.
    [[nodiscard]] static QVariantList groups();
    /// The keys of a command, such as "Ctrl+N".
    Q_INVOKABLE [[nodiscard]] static QStringList sequences(Kestry::WindowKeys::Command command);
    /// The first of them, as menus write it.
    [[nodiscard]] static std::string keyText(Command command);
};

} // namespace Kestry
