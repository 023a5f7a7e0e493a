#pragma once

#include <tuple>

#include "EditorForm.h"

namespace Kestry {

/// The form of a project, or of a new one.
class ProjectForm final : public Kestry::EditorForm {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A form comes with its route.")
    Q_PROPERTY(QString clientName READ clientName CONSTANT)
    Q_PROPERTY(QString name MEMBER name_ NOTIFY edited)
    Q_PROPERTY(QString rate MEMBER rate_ NOTIFY edited)
    Q_PROPERTY(QString rateHint READ rateHint NOTIFY edited)

public:
    ProjectForm(const EditorWorld& world, const Editor::ProjectForm& route);

    [[nodiscard]] Kind kind() const override { return Project; }
    [[nodiscard]] QString title() const override;
    [[nodiscard]] QString line() const override;
    [[nodiscard]] bool isEdited() const override { return drafts() != loaded_; }
    [[nodiscard]] QString clientName() const { return clientName_; }
    [[nodiscard]] QString rateHint() const { return Kestry::rateHint(rate_); }

protected:
    void carryOut() override;

private:
    using Drafts = std::tuple<QString, QString>;
    [[nodiscard]] Drafts drafts() const { return {name_, rate_}; }
    [[nodiscard]] KestryCore::ProjectValues values(
        const std::optional<KestryCore::Project>& stored) const;

    std::optional<KestryCore::Uuid> projectID_; ///< Nullopt: a new project.
    std::optional<KestryCore::Uuid> clientID_;
    QString clientName_;
    QString name_;
    QString rate_;
    Drafts loaded_;
};

} // namespace Kestry
