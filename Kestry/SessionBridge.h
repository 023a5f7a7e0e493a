#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <vector>

#include "AppState.h"
#include "Scheduler.h"
#include "TargetListModel.h"
#include "TimeStore.h"

namespace Kestry {

/// The session and the ways to command it, as views see them: the store and the shared state in
/// properties, the views' wishes as calls. A failure of any call shows in `message`.
///
/// The elapsed time follows the clock once a second while a session runs, and only then.
class SessionBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one bridge.")
    Q_PROPERTY(bool hasSession READ hasSession NOTIFY changed)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString label READ label NOTIFY changed)
    Q_PROPERTY(QString clientName READ clientName NOTIFY changed)
    Q_PROPERTY(QString projectName READ projectName NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool isRecovered READ isRecovered NOTIFY changed)
    Q_PROPERTY(bool hasClients READ hasClients NOTIFY changed)
    Q_PROPERTY(bool choosesProject READ choosesProject NOTIFY changed)
    Q_PROPERTY(double baseHeight READ baseHeight NOTIFY changed)
    Q_PROPERTY(Kestry::TargetListModel* clients READ clients CONSTANT)
    Q_PROPERTY(Kestry::TargetListModel* projects READ projects CONSTANT)
    Q_PROPERTY(QString elapsed READ elapsed NOTIFY elapsedChanged)
    Q_PROPERTY(QString spokenElapsed READ spokenElapsed NOTIFY elapsedChanged)

public:
    /// Everything handed in must outlive the bridge.
    SessionBridge(KestryCore::TimeStore& store, AppState& state, KestryCore::Clock now,
        KestryCore::Scheduler& scheduler);

    [[nodiscard]] bool hasSession() const;
    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] QString title() const;
    /// What to call the session: its title, else its project, else "Session".
    [[nodiscard]] QString label() const;
    /// Of the session, or of the next one while there is none; empty without clients.
    [[nodiscard]] QString clientName() const;
    /// As `clientName`; empty when the client has no projects to choose from.
    [[nodiscard]] QString projectName() const;
    /// The latest failure in words; empty without one.
    [[nodiscard]] QString message() const;
    /// A session was found running at the start and was paused.
    [[nodiscard]] bool isRecovered() const;
    [[nodiscard]] bool hasClients() const;
    /// Whether the client of the next session has projects.
    [[nodiscard]] bool choosesProject() const;
    /// The height that the panel needs for its standing rows.
    [[nodiscard]] double baseHeight() const;
    [[nodiscard]] TargetListModel* clients() { return &clients_; }
    [[nodiscard]] TargetListModel* projects() { return &projects_; }
    [[nodiscard]] QString elapsed() const;
    [[nodiscard]] QString spokenElapsed() const;

    Q_INVOKABLE void start();
    Q_INVOKABLE void pauseOrResume();
    Q_INVOKABLE void stop();
    Q_INVOKABLE void rename(const QString& title);
    /// True when the client was added; it is then the one for the next session.
    Q_INVOKABLE bool addClient(const QString& name);
    Q_INVOKABLE void chooseClient(const QString& recordID);
    /// An empty identifier leaves the project to the store.
    Q_INVOKABLE void chooseProject(const QString& recordID);
    Q_INVOKABLE void dismissRecovery();

signals:
    void changed();
    void elapsedChanged();

private:
    bool perform(const std::function<void()>& change);
    void refresh();
    void tick();
    [[nodiscard]] double elapsedSeconds() const;
    [[nodiscard]] std::optional<KestryCore::Project> sessionProject() const;
    [[nodiscard]] std::vector<TargetRow> clientRows() const;
    [[nodiscard]] std::vector<TargetRow> projectRows() const;

    KestryCore::TimeStore& store_;
    AppState& state_;
    KestryCore::Clock now_;
    KestryCore::Scheduler& scheduler_;
    TargetListModel clients_;
    TargetListModel projects_;
    KestryCore::Timer tick_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
