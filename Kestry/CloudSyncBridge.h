#pragma once

#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <string>
#include <vector>

#include "CloudSyncController.h"
#include "DateTimeText.h"
#include "SignInForm.h"
#include "SyncComparison.h"
#include "SyncSummaries.h"
#include "TimeStore.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// Gives the settings page what it shows of replication: the switch and the status, the sessions on
/// other devices, and the conflicts that wait for the user. It keeps nothing but the texts shown.
class CloudSyncBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one bridge.")
    Q_PROPERTY(bool isOn READ isOn NOTIFY changed)
    Q_PROPERTY(bool canSwitch READ canSwitch NOTIFY changed)
    Q_PROPERTY(bool isSyncing READ isSyncing NOTIFY changed)
    Q_PROPERTY(QString status READ status NOTIFY changed)
    Q_PROPERTY(QString failure READ failure NOTIFY changed)
    Q_PROPERTY(bool offersUpload READ offersUpload NOTIFY changed)
    Q_PROPERTY(bool hasDetails READ hasDetails NOTIFY changed)
    Q_PROPERTY(QString note READ note CONSTANT)
    Q_PROPERTY(bool canSignIn READ canSignIn CONSTANT)
    Q_PROPERTY(bool isSignedIn READ isSignedIn NOTIFY changed)
    Q_PROPERTY(QString account READ account NOTIFY changed)
    Q_PROPERTY(Kestry::SignInForm* signIn READ signIn CONSTANT)
    Q_PROPERTY(QVariantList sessions READ sessions NOTIFY sessionsChanged)
    Q_PROPERTY(QVariantList conflicts READ conflicts NOTIFY conflictsChanged)

public:
    /// All of it must outlive the bridge.
    struct World {
        KestryCore::TimeStore& store;
        KestryCore::CloudSyncController& controller;
        CloudAccount& account;
        const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar;
    };

    explicit CloudSyncBridge(World world);

    [[nodiscard]] bool isOn() const { return world_.controller.isEnabled(); }
    /// Whether the user may use the switch now.
    [[nodiscard]] bool canSwitch() const;
    [[nodiscard]] bool isSyncing() const { return *world_.controller.fields().isSyncing; }
    /// "Up to date · Last synced 9:26 AM"
    [[nodiscard]] QString status() const;
    /// The last failure in full; empty without one.
    [[nodiscard]] QString failure() const;
    /// Whether the store went back in time or is another one, so that uploading again is the way
    /// on.
    [[nodiscard]] bool offersUpload() const { return *world_.controller.fields().offersUpload; }
    /// Whether the ledger was ever connected.
    [[nodiscard]] bool hasDetails() const { return bool(world_.store.data()->replication); }
    /// What replication is, or why this build has none.
    [[nodiscard]] QString note() const;
    /// Not in a demo, which keeps nothing.
    [[nodiscard]] bool canSignIn() const { return !world_.store.isDemo(); }
    [[nodiscard]] bool isSignedIn() const { return world_.account.name()->has_value(); }
    /// Who is signed in where, and what is not as usual with the desktop and the password.
    [[nodiscard]] QString account() const;
    [[nodiscard]] SignInForm* signIn() { return &signIn_; }
    /// Of each session that runs on another device: `title` and `detail`.
    [[nodiscard]] const QVariantList& sessions() const { return sessions_; }
    /// Of each conflict: its `id`, the two versions as `summary`, two lines, and their `fields`,
    /// each with `name`, `local`, `remote` and `differs`.
    [[nodiscard]] const QVariantList& conflicts() const { return conflicts_; }

    /// Turns replication on or off. A failure shows in `status` and `failure`.
    Q_INVOKABLE void toggle();
    /// Turns replication off, and forgets the account. The ledger keeps what it knows.
    Q_INVOKABLE void signOut();
    /// Exchanges records with the cloud now.
    Q_INVOKABLE void syncNow();
    /// Delivers all records of this device anew. What the store has otherwise becomes conflicts.
    Q_INVOKABLE void uploadAgain();
    /// The conflict's local version is the right one. A failure is published as the store's
    /// `errorMessage`, and the conflict stays.
    Q_INVOKABLE void keepLocal(const QString& conflictID);
    /// The conflict's version from the cloud is the right one.
    Q_INVOKABLE void useCloud(const QString& conflictID);

signals:
    void changed();
    void sessionsChanged();
    void conflictsChanged();

private:
    /// What the rows of conflicts are made of.
    struct Compared {
        KestryCore::RecordList<KestryCore::SyncConflict> conflicts;
        KestryCore::RecordList<KestryCore::Client> clients;
        KestryCore::RecordList<KestryCore::Project> projects;
    };

    void refresh();
    void refreshDetails();
    [[nodiscard]] bool hasNewConflicts();
    void resolve(const QString& conflictID, KestryCore::ConflictChoice choice);
    [[nodiscard]] QVariantList sessionRows() const;
    [[nodiscard]] QVariantList conflictRows() const;

    World world_;
    SignInForm signIn_{world_.account};
    std::optional<KestryCore::DateTimeText> moments_;
    std::optional<KestryCore::SyncSummaries> summaries_;
    std::optional<KestryCore::SyncComparison> comparison_;
    Compared compared_;
    bool hasCompared_ = false; ///< In the language and the time of now.
    QVariantList sessions_;
    QVariantList conflicts_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
