#pragma once

#include <QQuickItem>
#include <QStringList>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "AppState.h"
#include "AppearanceForm.h"
#include "ApplicationWorld.h"
#include "ClientDashboardBridge.h"
#include "CloudViewWorld.h"
#include "Commander.h"
#include "EditorForms.h"
#include "FakeAutostart.h"
#include "FolderOpener.h"
#include "MenuController.h"
#include "NotchSurface.h"
#include "OverviewBridge.h"
#include "PathForm.h"
#include "SavingSign.h"
#include "SessionBridge.h"
#include "SessionExport.h"
#include "SessionsBridge.h"
#include "SettingsBridge.h"
#include "SidebarSession.h"
#include "UpdateViewWorld.h"
#include "WorkspaceBridge.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// Menus that are only asked for.
class FakeMenus : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList asked MEMBER asked_ NOTIFY askedChanged)
public:
    using QObject::QObject;

    Q_INVOKABLE void openTarget(QQuickItem* anchor) { note("target", anchor); }
    Q_INVOKABLE void openTitle(QQuickItem* anchor) { note("title", anchor); }

signals:
    void askedChanged();
    void editTitleChosen();

private:
    void note(const QString& menu, const QQuickItem* anchor)
    {
        asked_ << menu + (anchor ? "" : " without an anchor");
        emit askedChanged();
    }

    QStringList asked_;
};

/// A desktop without a dialog for files.
class NoFileChooser final : public FileChooser {
public:
    void ask(const FileQuestion& /*question*/, Answered answered) override
    {
        answered({FileAnswer::Kind::unavailable});
    }
};

/// A desktop without a file browser.
class NoFolders final : public FolderOpener {
public:
    void open(const QString& /*folder*/, Answered answered) override { answered(false); }
};

/// The world around a view under test: a ledger in memory, time that passes when told to, and a
/// surface that remembers what the view reports.
class ViewWorld : public QObject, private NotchPanelEvents {
    Q_OBJECT
    Q_PROPERTY(Kestry::SessionBridge* session READ session CONSTANT)
    Q_PROPERTY(Kestry::NotchSurface* surface READ surface CONSTANT)
    Q_PROPERTY(Kestry::FakeMenus* menus READ menus CONSTANT)
    Q_PROPERTY(Kestry::MenuController* openMenu READ openMenu CONSTANT)
    Q_PROPERTY(Kestry::WorkspaceBridge* workspace READ workspace CONSTANT)
    Q_PROPERTY(Kestry::SidebarSession* sidebarSession READ sidebarSession CONSTANT)
    Q_PROPERTY(Kestry::SessionsBridge* sessions READ sessions CONSTANT)
    Q_PROPERTY(Kestry::SessionsBridge* clientSessions READ clientSessions CONSTANT)
    Q_PROPERTY(Kestry::ClientDashboardBridge* clientPage READ clientPage CONSTANT)
    Q_PROPERTY(Kestry::OverviewBridge* overview READ overview CONSTANT)
    Q_PROPERTY(Kestry::SessionDeletion* deletion READ deletion CONSTANT)
    Q_PROPERTY(Kestry::SessionExport* exporter READ exporter CONSTANT)
    Q_PROPERTY(Kestry::SettingsBridge* settings READ settings CONSTANT)
    Q_PROPERTY(Kestry::CloudViewWorld* cloud READ cloud CONSTANT)
    Q_PROPERTY(Kestry::UpdateViewWorld* updates READ updates CONSTANT)
    Q_PROPERTY(Kestry::PathForm* chooser READ chooser CONSTANT)
    Q_PROPERTY(Kestry::EditorForms* forms READ forms CONSTANT)
    Q_PROPERTY(Kestry::SavingSign* saving READ saving CONSTANT)
    Q_PROPERTY(QStringList reports READ reports NOTIFY reported)
    Q_PROPERTY(QString editorID READ editorID NOTIFY reported)

public:
    explicit ViewWorld(QObject* parent = nullptr) : ViewWorld(ApplicationWorld::inMemory(), parent)
    {
    }
    ~ViewWorld() override;

    ViewWorld(const ViewWorld&) = delete;
    ViewWorld& operator=(const ViewWorld&) = delete;

    [[nodiscard]] SessionBridge* session() { return &bridge_; }
    [[nodiscard]] NotchSurface* surface() { return &surface_; }
    [[nodiscard]] FakeMenus* menus() { return &menus_; }
    [[nodiscard]] MenuController* openMenu() { return &openMenu_; }
    [[nodiscard]] WorkspaceBridge* workspace() { return &workspace_; }
    [[nodiscard]] SidebarSession* sidebarSession() { return &sidebarSession_; }
    [[nodiscard]] SessionsBridge* sessions() { return &sessions_; }
    [[nodiscard]] SessionsBridge* clientSessions() { return &clientSessions_; }
    [[nodiscard]] ClientDashboardBridge* clientPage() { return &clientPage_; }
    [[nodiscard]] OverviewBridge* overview() { return &overview_; }
    [[nodiscard]] SessionDeletion* deletion() { return &deletion_; }
    [[nodiscard]] SessionExport* exporter() { return &exporter_; }
    [[nodiscard]] SettingsBridge* settings() { return &settings_; }
    [[nodiscard]] CloudViewWorld* cloud() { return &cloud_; }
    [[nodiscard]] UpdateViewWorld* updates() { return &updates_; }
    [[nodiscard]] PathForm* chooser() { return &chooser_; }
    [[nodiscard]] EditorForms* forms() { return &forms_; }
    [[nodiscard]] SavingSign* saving() { return &saving_; }
    [[nodiscard]] QStringList reports() const { return reports_; }
    /// Of the form that was asked for; empty without one.
    [[nodiscard]] QString editorID() const;

    Q_INVOKABLE void clearReports();
    /// A card of a dashboard with this line.
    Q_INVOKABLE [[nodiscard]] static Kestry::DashboardFigure figureOf(const QString& line)
    {
        return {"Hours this month", "6h 0m", line, {}, "Hours this month, 6 hours, " + line};
    }
    /// Opens a menu of entries with these names, of which the first is checked and the last is
    /// disabled, and an entry "More" with a submenu of two.
    Q_INVOKABLE void openMenuOf(const QStringList& names);
    Q_INVOKABLE void addClient(const QString& name);
    /// Adds a client without projects, at a hundred dollars an hour.
    Q_INVOKABLE void addPlainClient(const QString& name);
    Q_INVOKABLE void selectFirstClient();
    Q_INVOKABLE void selectLastClient();
    /// Saves an hour on a new project of the first client that has no rate.
    Q_INVOKABLE void addUnpricedHour();
    /// Somebody switches the projects of the first client off.
    Q_INVOKABLE void disableProjects();
    /// Adds a project at a hundred dollars an hour to the first client, and selects it.
    Q_INVOKABLE void addProject(const QString& name);
    Q_INVOKABLE void start(const QString& title);
    /// Another device tells of a session on the first project that has run for so long.
    Q_INVOKABLE void runElsewhere(const QString& device, double seconds);
    /// Saves half an hour on the first client, and selects nothing.
    Q_INVOKABLE void save(const QString& title, double hoursAgo);
    /// Saves so many hours, which have just ended, on a new project of the first client at a rate.
    Q_INVOKABLE void bill(const QString& project, double hours, double hourlyRateCents);
    /// Another time zone is the system's, as "Asia/Tokyo".
    Q_INVOKABLE void moveToZone(const QString& zone)
    {
        calendar_.assign(KestryCore::ZoneCalendar(zone.toStdString(), "en_US"));
    }
    Q_INVOKABLE void limitToThisMonth() { state_.sessionsMonth.assign(world_.now()); }
    /// The entries of the menu that was asked for last.
    Q_INVOKABLE [[nodiscard]] QStringList menuEntries() const;
    Q_INVOKABLE void forgetMenu() { menuOfRow_.clear(); }
    /// Adds an hour of work to the first project.
    Q_INVOKABLE void addEntry(const QString& title);
    // Open a form: that of the first client, project or saved session, of the session in progress,
    // and of time added by hand.
    Q_INVOKABLE void editClient();
    Q_INVOKABLE void editProject();
    Q_INVOKABLE void editEntry();
    Q_INVOKABLE void editSession();
    Q_INVOKABLE void newEntry();
    /// Opens the form of a session that came from another program's file.
    Q_INVOKABLE void editImported();
    /// The titles of all saved sessions.
    Q_INVOKABLE QStringList entryTitles() const;
    /// From now on all that is chosen becomes a logo.
    Q_INVOKABLE void useLogo() { hasLogo_ = true; }
    /// Does what waits beside the main thread.
    Q_INVOKABLE void workBeside();
    Q_INVOKABLE void advance(double seconds) { world_.scheduler.advance(seconds); }
    Q_INVOKABLE void tellOfExport(const QString& message)
    {
        state_.exportMessage.assign(message.toStdString());
    }
    Q_INVOKABLE void fail(const QString& message)
    {
        store_.reportFailure(message.toStdString());
        world_.scheduler.turn();
    }
    /// Somebody sets the clock forward while a session runs, which its pause finds.
    Q_INVOKABLE void setClockForward(double seconds)
    {
        world_.clockAhead += seconds;
        bridge_.pauseOrResume();
        world_.scheduler.turn();
    }
    Q_INVOKABLE void pointAtPanels(bool inside) { surface_.setHovered(inside); }
    Q_INVOKABLE void reveal(bool shown, bool atOnce);
    Q_INVOKABLE void clearFocus() { emit surface_.focusCleared(); }
    Q_INVOKABLE void rebuild() { surface_.rebuild({}); }
    /// What an input method does to a field: letters on trial, then letters for good.
    Q_INVOKABLE static void compose(QQuickItem* field, const QString& onTrial);
    Q_INVOKABLE static void commit(QQuickItem* field, const QString& letters);
    /// What a file manager does to an item: drags a file over it, and drops it.
    Q_INVOKABLE static void drop(QQuickItem* item, const QUrl& file);
    Q_INVOKABLE void reduceMotion(bool reduces) { surface_.setReducesMotion(reduces); }

signals:
    void reported();

protected:
    /// With a store that has these options; without a directory of their own they get the world's.
    ViewWorld(KestryCore::StoreOptions options, QObject* parent);

    [[nodiscard]] KestryCore::TimeStore& store() { return store_; }
    [[nodiscard]] ApplicationWorld& world() { return world_; }

private:
    void note(const QString& report);
    [[nodiscard]] SessionList::World worldOfSessions();
    [[nodiscard]] LogoSource logos();
    /// A session comes from another device.
    void receive(const KestryCore::Uuid& id, const KestryCore::SyncedSession& session);

    void hover(bool /*inside*/) override { }
    void hoverPreview(bool /*inside*/) { }
    void clickInside() override { }
    void clickElsewhere() override { }
    void detailLostFocus() override { }
    void editingChanged(bool editing) override;
    void resize(double height) override;
    void screensChanged() override { }
    void openApp() override { note("openApp"); }
    void dashboard() override { note("dashboard"); }
    void previewTitle(const std::optional<std::string>& title) override;
    void dismissPreview() override { note("dismissPreview"); }
    void menuOpened(MenuIdentity /*menu*/) override { }
    void menuClosed(MenuIdentity /*menu*/) override { }

    ApplicationWorld world_;
    KestryCore::TimeStore store_;
    AppState state_{world_.defaults};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar_{
        KestryCore::ZoneCalendar("UTC", "en_US")};
    Commander commander_{store_, state_, [this] { return world_.now(); }, [this] { note("quit"); }};
    SessionBridge bridge_{commander_, store_, state_, [this] { return world_.now(); },
        world_.scheduler, {calendar_, KestryCore::MoneyText("en_US")}};
    SidebarSession sidebarSession_{
        bridge_, store_, state_, [this] { return world_.now(); }, KestryCore::MoneyText("en_US")};
    NotchSurface surface_{true};
    FakeMenus menus_;
    MenuController openMenu_{world_.scheduler};
    ClientLogos logos_;
    WorkspaceBridge workspace_{commander_, store_, state_, calendar_, logos_};
    Menu menuOfRow_;
    NoFileChooser desktopChooser_;
    PathForm chooser_{desktopChooser_};
    SessionDeletion deletion_{store_, world_.scheduler};
    SessionsBridge sessions_{worldOfSessions(), KestryCore::SessionListPlace::page};
    SessionsBridge clientSessions_{worldOfSessions(), KestryCore::SessionListPlace::dashboard};
    Today today_{world_.scheduler, [this] { return world_.now(); }, calendar_};
    OverviewBridge overview_{worldOfSessions(), today_};
    ClientDashboardBridge clientPage_{worldOfSessions(), today_};
    SessionExport exporter_{{store_, state_, chooser_, world_.defaults, world_.scheduler,
        [this] { return world_.now(); }, world_.directory.path()}};
    NoFolders folders_;
    FakeAutostart autostart_;
    DesktopChoices desktopChoices_{{state_, store_, autostart_,
        [] {
            return std::vector<KnownScreen>{{"DP-1", "Panorama"}};
        },
        [] { return true; },
        [this](Menu menu, const QString&, const QQuickItem&) { menuOfRow_ = std::move(menu); }}};
    AppearanceSettings appearance_{world_.defaults};
    AppearanceForm appearanceForm_{appearance_};
    CloudViewWorld cloud_;
    UpdateViewWorld updates_{state_};
    SettingsBridge settings_{{store_, state_, folders_, appearanceForm_, desktopChoices_,
        *cloud_.bridge(), *updates_.bridge(), [] { return "2.5.1"; }}};
    EditorForms forms_{{store_, state_, [this] { return world_.now(); }, world_.scheduler,
        calendar_, KestryCore::MoneyText("en_US"), QLocale("en_US"),
        [this](Menu menu, const QString& name, const QQuickItem&) {
            openMenu_.open(std::move(menu), name, MenuController::Window);
        },
        chooser_, logos()}};
    SavingSign saving_;
    std::vector<std::pair<std::function<void()>, std::function<void()>>> beside_;
    bool hasLogo_ = false;
    QStringList reports_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

/// A world whose ledger is on the disk, where it can be damaged.
class DiskWorld : public ViewWorld {
    Q_OBJECT
public:
    explicit DiskWorld(QObject* parent = nullptr)
        : ViewWorld(KestryCore::StoreOptions{}, parent) { }

    /// Saves two clients, and damages the ledger so that a backup is offered.
    Q_INVOKABLE void damage();
    /// Another program restores the backup.
    Q_INVOKABLE void restoreElsewhere();
};

} // namespace Kestry
