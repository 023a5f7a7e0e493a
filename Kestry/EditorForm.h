#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <vector>

#include "AppState.h"
#include "TargetListModel.h"
#include "TimeStore.h"

namespace Kestry {

/// The form over the workspace window, chosen by the state's `editor`: a new client, a new project,
/// or the session in progress. It edits drafts, which are reset whenever another form opens. The
/// ledger changes only in `save`, which closes the form, or sets `error` and changes nothing.
class EditorForm final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one form.")
    Q_PROPERTY(Kind kind READ kind NOTIFY opened)
    Q_PROPERTY(QString title READ title NOTIFY opened)
    Q_PROPERTY(QString line READ line NOTIFY opened)
    Q_PROPERTY(QString clientName READ clientName NOTIFY opened)
    Q_PROPERTY(QString name MEMBER name_ NOTIFY edited)
    Q_PROPERTY(QString rate MEMBER rate_ NOTIFY edited)
    Q_PROPERTY(bool projectsEnabled MEMBER projectsEnabled_ NOTIFY edited)
    Q_PROPERTY(Kestry::TargetListModel* projects READ projects CONSTANT)
    Q_PROPERTY(QString error READ error NOTIFY errorChanged)

public:
    enum Kind { None, Client, Project, Session };
    Q_ENUM(Kind)

    /// Both must outlive the form.
    EditorForm(KestryCore::TimeStore& store, AppState& state);

    [[nodiscard]] Kind kind() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString line() const;
    /// The client of the project in the form.
    [[nodiscard]] QString clientName() const;
    /// The projects that the session can move to: those of its client.
    [[nodiscard]] TargetListModel* projects() { return &projects_; }
    [[nodiscard]] QString error() const { return error_; }

    Q_INVOKABLE void chooseProject(const QString& recordID);
    Q_INVOKABLE void save();
    Q_INVOKABLE void close();

signals:
    void opened();
    void edited();
    void errorChanged();

private:
    void follow();
    void load();
    void listProjects();
    void setError(const QString& error);
    void saveClient();
    void saveProject(const Editor::ProjectForm& form);
    void saveSession(const Editor::ActiveForm& form);
    [[nodiscard]] std::optional<KestryCore::Project> sessionProject() const;

    KestryCore::TimeStore& store_;
    AppState& state_;
    std::optional<Editor> shown_;
    QString name_;
    QString rate_;
    bool projectsEnabled_ = true;
    std::optional<KestryCore::Uuid> projectID_;
    TargetListModel projects_;
    QString error_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
