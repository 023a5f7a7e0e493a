#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

#include "EditorForm.h"

namespace Kestry {

/// The form that the state's route asks for, made anew at each presentation. A form that was edited
/// keeps its place, and the route with it, until the user discards the changes.
class EditorForms final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes them.")
    Q_PROPERTY(Kestry::EditorForm* current READ current NOTIFY changed)

public:
    explicit EditorForms(EditorWorld world);

    /// Null while no form is open. It lives until the next one opens, for the view that goes.
    [[nodiscard]] EditorForm* current() const { return current_.get(); }

signals:
    void changed();

private:
    void follow();
    [[nodiscard]] std::unique_ptr<EditorForm> formFor(const Editor& route) const;

    EditorWorld world_;
    std::optional<Editor> route_;
    std::unique_ptr<EditorForm> previous_;
    std::unique_ptr<EditorForm> current_;
    KestryCore::Subscription subscription_;
};

} // namespace Kestry
