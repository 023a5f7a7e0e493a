#pragma once

#include <QImage>
#include <QObject>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <utility>
#include <vector>

#include "ClientTotals.h"
#include "DashboardFigures.h"
#include "DayText.h"
#include "ProjectsModel.h"
#include "RecentSessions.h"
#include "SessionsBridge.h"
#include "Today.h"

namespace Kestry {

/// The page of the client that the state has selected: its figures, its projects and its sessions.
/// It works only while it is open. While a session of the client runs, the figures follow at each
/// full second, without looking at the saved sessions; what has not changed is not told.
class ClientDashboardBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one bridge.")
    /// Of the client; empty when it is gone, as are all other texts then.
    Q_PROPERTY(QString clientID READ clientID NOTIFY clientIDChanged)
    Q_PROPERTY(QString name READ name NOTIFY nameChanged)
    Q_PROPERTY(QVariant logo READ logo NOTIFY logoChanged)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY subtitleChanged)
    Q_PROPERTY(bool hasProjects READ hasProjects NOTIFY hasProjectsChanged)
    Q_PROPERTY(QString noProjects READ noProjects NOTIFY noProjectsChanged)
    Q_PROPERTY(Kestry::DashboardFigure earnings READ earnings NOTIFY earningsChanged)
    Q_PROPERTY(Kestry::DashboardFigure hours READ hours NOTIFY hoursChanged)
    Q_PROPERTY(Kestry::DashboardFigure monthHours READ monthHours NOTIFY monthHoursChanged)
    Q_PROPERTY(Kestry::DashboardFigure average READ average NOTIFY averageChanged)
    Q_PROPERTY(QString unpriced READ unpriced NOTIFY unpricedChanged)
    Q_PROPERTY(Kestry::ProjectsModel* projects READ projects CONSTANT)
    Q_PROPERTY(Kestry::SessionsBridge* sessions READ sessions CONSTANT)
    Q_PROPERTY(Kestry::SessionList* recent READ recent CONSTANT)

public:
    /// What a list of sessions needs of the program. All that is handed in must outlive the bridge.
    using World = SessionList::World;

    ClientDashboardBridge(const World& world, const Today& today);

    /// Begins to follow the client that is selected.
    Q_INVOKABLE void open();
    /// Lets everything go. A page that was never opened costs nothing.
    Q_INVOKABLE void close();

    [[nodiscard]] QString clientID() const { return clientID_; }
    [[nodiscard]] QString name() const { return name_; }
    /// An image, null without one.
    [[nodiscard]] QVariant logo() const { return logo_; }
    [[nodiscard]] QString subtitle() const { return subtitle_; }
    /// Whether the client bills by projects; else all its sessions are listed.
    [[nodiscard]] bool hasProjects() const { return hasProjects_; }
    /// What stands in place of projects; empty while there are some.
    [[nodiscard]] QString noProjects() const { return noProjects_; }
    [[nodiscard]] const DashboardFigure& earnings() const { return figures_.earnings; }
    [[nodiscard]] const DashboardFigure& hours() const { return figures_.hours; }
    [[nodiscard]] const DashboardFigure& monthHours() const { return figures_.monthHours; }
    [[nodiscard]] const DashboardFigure& average() const { return figures_.average; }
    [[nodiscard]] QString unpriced() const { return figures_.unpriced; }
    [[nodiscard]] ProjectsModel* projects() { return &projects_; }
    /// The sessions of a client without projects.
    [[nodiscard]] SessionsBridge* sessions() { return &sessions_; }
    /// The newest sessions of a client with projects.
    [[nodiscard]] SessionList* recent() { return &recent_.list(); }

    Q_INVOKABLE void editClient();
    Q_INVOKABLE void addProject();
    /// Does nothing for a project that is gone.
    Q_INVOKABLE void editProject(const QString& recordID);
    /// Starts a session on a project; refused in words while one is in progress.
    Q_INVOKABLE void start(const QString& recordID);
    /// Goes to the page of all sessions of the client.
    Q_INVOKABLE void viewAll();

signals:
    void clientIDChanged();
    void nameChanged();
    void logoChanged();
    void subtitleChanged();
    void hasProjectsChanged();
    void noProjectsChanged();
    void earningsChanged();
    void hoursChanged();
    void monthHoursChanged();
    void averageChanged();
    void unpricedChanged();

private:
    using Signal = void (ClientDashboardBridge::*)();

    void followWorld();
    void followLedgerSoon();
    void followLedger();
    void refresh();
    void refreshHeading(const KestryCore::Client* client);
    void refreshProjects(const KestryCore::Client* client);
    void refreshSessions(const KestryCore::Client* client);
    void refreshFigures();
    void show(DashboardFigures figures);
    void tickLater();
    template <class Value>
    void change(Value& held, Value value, Signal changed);
    [[nodiscard]] bool isOpen() const { return days_.has_value(); }
    [[nodiscard]] const KestryCore::Client* client() const;

    World world_;
    const Today& today_;
    ClientTotals totals_;
    ProjectsModel projects_;
    SessionsBridge sessions_;
    RecentSessions recent_;
    std::optional<KestryCore::DayText> days_; ///< Slow to make.
    KestryCore::LedgerData shown_;            ///< The ledger that the projects are of.
    /// Whose sessions are listed, and whether it bills by projects.
    std::optional<std::pair<KestryCore::Uuid, bool>> listed_;
    QString clientID_;
    QString name_;
    QImage logo_;
    QString subtitle_;
    bool hasProjects_ = false;
    QString noProjects_;
    DashboardFigures figures_;
    KestryCore::Timer refresh_;
    KestryCore::Timer tick_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
