#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

#include "EditorForm.h"

namespace Kestry {

/// The choice of a session's client and project in a form, with a new project made inside it.
class SessionProjectChoice final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A choice comes with its form.")
    Q_PROPERTY(QString clientName READ clientName NOTIFY changed)
    Q_PROPERTY(bool usesProjects READ usesProjects NOTIFY changed)
    Q_PROPERTY(QString projectName READ projectName NOTIFY changed)
    Q_PROPERTY(bool isCreating READ isCreating NOTIFY changed)
    Q_PROPERTY(QString newProjectName MEMBER newProjectName_ NOTIFY changed)
    Q_PROPERTY(QString newProjectRate MEMBER newProjectRate_ NOTIFY changed)
    Q_PROPERTY(QString newProjectRateHint READ newProjectRateHint NOTIFY changed)

public:
    /// Runs a step of the form, which shows a failure. Returns whether it succeeded.
    using Attempt = std::function<bool(const std::function<void()>& step)>;

    /// The world must outlive the choice.
    SessionProjectChoice(const EditorWorld& world, Attempt attempt);

    /// What the form was opened with.
    void loadClient(const std::optional<KestryCore::Uuid>& clientID);
    void loadProject(const KestryCore::Uuid& projectID);

    /// The name of the client, or "Choose a client".
    [[nodiscard]] QString clientName() const;
    [[nodiscard]] bool usesProjects() const;
    /// What is chosen besides the client, or what there is to choose.
    [[nodiscard]] QString projectName() const;
    /// Whether the fields of a new project are shown.
    [[nodiscard]] bool isCreating() const { return isCreating_; }
    [[nodiscard]] QString newProjectRateHint() const { return rateHint(newProjectRate_); }
    [[nodiscard]] bool isEdited() const;

    [[nodiscard]] const std::optional<KestryCore::Uuid>& clientID() const { return clientID_; }
    /// The project to move an existing session to, or that of a new one; nullopt when it stays, or
    /// its client has no projects. Throws LedgerError when a project has to be chosen, when the
    /// session cannot move to the client, and while a new project has a name but is not created:
    /// then its fields take the keyboard.
    [[nodiscard]] std::optional<KestryCore::Uuid> target();

    [[nodiscard]] Menu clientMenu();
    /// Empty for a client without projects.
    [[nodiscard]] Menu projectMenu();
    Q_INVOKABLE void openClients(QQuickItem* item);
    Q_INVOKABLE void openProjects(QQuickItem* item);

    /// Adds the new project to the ledger at once, and chooses it. Does nothing while its fields
    /// are hidden.
    Q_INVOKABLE void createProject();
    Q_INVOKABLE void cancelNewProject();

signals:
    void changed();
    void newProjectWanted();

private:
    void chooseClient(const KestryCore::Uuid& clientID);
    void chooseProject(const KestryCore::Uuid& projectID);
    void setCreating(bool creating);
    [[nodiscard]] const KestryCore::Client* client() const;
    [[nodiscard]] QString rateOf(const KestryCore::Project& project) const;

    const EditorWorld& world_;
    Attempt attempt_;
    std::optional<KestryCore::Uuid> clientID_;
    std::optional<KestryCore::Uuid> projectID_;
    std::optional<KestryCore::Uuid> originalClientID_;
    std::optional<KestryCore::Uuid> originalProjectID_;
    bool isCreating_ = false;
    QString newProjectName_;
    QString newProjectRate_;
    KestryCore::Subscription ledger_;
};

} // namespace Kestry
