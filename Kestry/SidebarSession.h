#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

#include "AppState.h"
#include "SessionBridge.h"
#include "SessionTarget.h"
#include "TextForms.h"
#include "TimeStore.h"

namespace Kestry {

/// What the session box of the sidebar says and does besides what all views of the session share
/// (`SessionBridge`): its lines, the title that is typed in it, and the session of another device.
///
/// The title field is of the next session while there is none, and then what is typed goes to the
/// state at once. While a session is in progress the field shows its title. An edit begins with the
/// first change, and belongs to the session of that moment: Return, leaving the field, and whatever
/// stops or pauses the session in this program write it; Escape, or the end of that session
/// elsewhere, drops it. A title that is refused stays in the field.
class SidebarSession final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one box.")
    Q_PROPERTY(QString heading READ heading NOTIFY changed)
    Q_PROPERTY(QString targetClient READ targetClient NOTIFY changed)
    Q_PROPERTY(QString targetProject READ targetProject NOTIFY changed)
    Q_PROPERTY(QString targetRate READ targetRate NOTIFY changed)
    Q_PROPERTY(QString targetDetail READ targetDetail NOTIFY changed)
    Q_PROPERTY(QString targetLabel READ targetLabel NOTIFY changed)
    Q_PROPERTY(QString line READ line NOTIFY changed)
    Q_PROPERTY(QString titleText READ titleText NOTIFY titleChanged)
    Q_PROPERTY(QString value READ value NOTIFY ticked)
    Q_PROPERTY(QString remoteTitle READ remoteTitle NOTIFY changed)
    Q_PROPERTY(QString remoteState READ remoteState NOTIFY changed)

public:
    /// Everything handed in must outlive the box. It changes when the session does, and ticks with
    /// it.
    SidebarSession(SessionBridge& session, const KestryCore::TimeStore& store, AppState& state,
        KestryCore::Clock now, KestryCore::MoneyText words);

    /// "Current session" or "New session".
    [[nodiscard]] QString heading() const;
    /// What the next session is for. The project is empty for a client without projects, and so
    /// are project and rate without a client.
    [[nodiscard]] QString targetClient() const { return text(target_.client); }
    [[nodiscard]] QString targetProject() const { return text(target_.project); }
    [[nodiscard]] QString targetRate() const { return text(target_.rate); }
    /// Project and rate in one line.
    [[nodiscard]] QString targetDetail() const { return session_.targetDetail(); }
    [[nodiscard]] QString targetLabel() const { return text(target_.accessibilityLabel); }
    /// Client and project of the session in progress; empty without one.
    [[nodiscard]] QString line() const;
    /// What the title field shows.
    [[nodiscard]] QString titleText() const;
    /// "$12.50 earned", "Nonbillable session" or "Hourly rate not set"; empty without a session.
    [[nodiscard]] QString value() const;
    /// The session in progress on another device, in two lines. Both are empty while one is in
    /// progress here, and when none is known elsewhere. Of several the first that runs is told,
    /// else the first.
    [[nodiscard]] QString remoteTitle() const;
    [[nodiscard]] QString remoteState() const;

    /// Opens the form of the session in progress. Does nothing without one.
    Q_INVOKABLE void edit();
    // The title field: it has got the keyboard, its text was changed, Return, Escape, and it has
    // lost the keyboard.
    Q_INVOKABLE void beginTitle();
    Q_INVOKABLE void typeTitle(const QString& title);
    Q_INVOKABLE void submitTitle();
    Q_INVOKABLE void cancelTitle();
    Q_INVOKABLE void endTitle();

signals:
    /// A session was begun, or has ended. The views are told of it next.
    void switched();
    void changed();
    void titleChanged();
    void ticked();

private:
    [[nodiscard]] static QString text(std::string_view utf8);
    [[nodiscard]] const KestryCore::SyncedSession* remoteSession() const;
    void refresh();
    void writeTitle();

    SessionBridge& session_;
    const KestryCore::TimeStore& store_;
    AppState& state_;
    KestryCore::Clock now_;
    KestryCore::MoneyText words_;
    SessionTarget target_;
    bool hadSession_ = false;
    bool hasKeyboard_ = false;                ///< The title field.
    std::optional<KestryCore::Uuid> renamed_; ///< Whose title is being typed.
    QString draft_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
