#pragma once

#include "EditorForm.h"
#include "SessionProjectChoice.h"

namespace Kestry {

/// The form of the session in progress, whose timer goes on.
class ActiveSessionForm final : public Kestry::EditorForm {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A form comes with its route.")
    Q_PROPERTY(QString name MEMBER name_ NOTIFY edited)
    Q_PROPERTY(Kestry::SessionProjectChoice* choice READ choice CONSTANT)
    Q_PROPERTY(QString elapsed READ elapsed NOTIFY elapsedChanged)
    Q_PROPERTY(QString pausedAt READ pausedAt NOTIFY elapsedChanged)

public:
    ActiveSessionForm(const EditorWorld& world, const Editor::ActiveForm& route);

    [[nodiscard]] Kind kind() const override { return ActiveSession; }
    [[nodiscard]] QString title() const override { return "Edit current session"; }
    [[nodiscard]] QString line() const override;
    [[nodiscard]] bool isEdited() const override
    {
        return name_ != loadedName_ || choice_.isEdited();
    }
    [[nodiscard]] SessionProjectChoice* choice() { return &choice_; }
    /// As in "07:04:09". The last one stays after the session has ended.
    [[nodiscard]] QString elapsed() const { return elapsed_; }
    /// The time of day at which the session was paused; empty while it runs.
    [[nodiscard]] QString pausedAt() const;

    void retire() override;

signals:
    void elapsedChanged();

protected:
    void carryOut() override;

private:
    void tick();
    [[nodiscard]] const KestryCore::ActiveSession* session() const;

    KestryCore::Uuid sessionID_;
    QString name_;
    QString loadedName_;
    SessionProjectChoice choice_;
    QString elapsed_;
    KestryCore::Timer tick_;
};

} // namespace Kestry
