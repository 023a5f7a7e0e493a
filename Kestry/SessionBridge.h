#pragma once

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <string>
#include <vector>

#include "AppState.h"
#include "Commander.h"
#include "Scheduler.h"
#include "SessionFacts.h"
#include "SessionTarget.h"
#include "TimeStore.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// Gives views the session: the store and the shared state as properties, the commander as calls. A
/// failure of a call appears in `message`.
///
/// While a session runs, `elapsedChanged` is emitted at each of its full seconds; otherwise nothing
/// ticks.
class SessionBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one bridge.")
    Q_PROPERTY(bool hasSession READ hasSession NOTIFY changed)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY changed)
    Q_PROPERTY(QString sessionID READ sessionID NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString label READ label NOTIFY changed)
    Q_PROPERTY(QString projectName READ projectName NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool hasClients READ hasClients NOTIFY changed)
    Q_PROPERTY(QString targetClient READ targetClient NOTIFY changed)
    Q_PROPERTY(QString targetDetail READ targetDetail NOTIFY changed)
    Q_PROPERTY(QString targetLabel READ targetLabel NOTIFY changed)
    Q_PROPERTY(double panelHeight READ panelHeight NOTIFY changed)
    Q_PROPERTY(QString elapsed READ elapsed NOTIFY elapsedChanged)
    Q_PROPERTY(QString spokenElapsed READ spokenElapsed NOTIFY elapsedChanged)
    Q_PROPERTY(QString sessionValue READ sessionValue NOTIFY elapsedChanged)
    Q_PROPERTY(QString monthValue READ monthValue NOTIFY monthChanged)
    Q_PROPERTY(QString monthExplanation READ monthExplanation NOTIFY monthChanged)

public:
    /// The user's calendar and the words for money.
    struct Locale {
        const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar;
        KestryCore::MoneyText words;
    };

    /// Everything handed in must outlive the bridge.
    SessionBridge(Commander& commander, const KestryCore::TimeStore& store, const AppState& state,
        KestryCore::Clock now, KestryCore::Scheduler& scheduler, Locale locale);
    SessionBridge(const SessionBridge&) = delete;
    SessionBridge& operator=(const SessionBridge&) = delete;
    ~SessionBridge() override { commander_.installTitleWriter({}); }

    [[nodiscard]] bool hasSession() const;
    [[nodiscard]] bool isRunning() const;
    /// The identifier of the session; empty without one.
    [[nodiscard]] QString sessionID() const;
    [[nodiscard]] QString title() const;
    /// The name of the session in lists: its title, else its project, else "Session".
    [[nodiscard]] QString label() const;
    /// The project of the session; empty for the hidden project of a client without projects.
    [[nodiscard]] QString projectName() const;
    /// The latest failure, else the notice of a clock jump; empty without either.
    [[nodiscard]] QString message() const;
    [[nodiscard]] bool hasClients() const;
    /// What the next session is for: the client; project and rate; all of it for a screen reader.
    [[nodiscard]] QString targetClient() const;
    [[nodiscard]] QString targetDetail() const;
    [[nodiscard]] QString targetLabel() const;
    /// The height that the panel needs, in device-independent pixels.
    [[nodiscard]] double panelHeight() const;
    [[nodiscard]] QString elapsed() const;
    [[nodiscard]] QString spokenElapsed() const;
    /// What the session has earned, or why it earns nothing; empty without a session.
    [[nodiscard]] QString sessionValue() const;
    /// What this month has earned, this session included, and a sentence on what is counted.
    [[nodiscard]] QString monthValue() const;
    [[nodiscard]] QString monthExplanation() const;
    /// The angle of the turning mark, in degrees.
    Q_INVOKABLE [[nodiscard]] double activityAngle() const;
    /// Earlier titles that begin with the typed text, best first.
    Q_INVOKABLE [[nodiscard]] QStringList titleSuggestions(const QString& typed) const;

    Q_INVOKABLE void start();
    Q_INVOKABLE void pauseOrResume();
    Q_INVOKABLE void stop();
    /// Renames the session in progress. Refused when it no longer has this identifier; returns
    /// whether the title has been written.
    Q_INVOKABLE bool rename(const QString& sessionID, const QString& title);
    /// Opens the form for a new client.
    Q_INVOKABLE void askForClient();

signals:
    void changed();
    void elapsedChanged();
    void monthChanged();
    /// The session is about to be stopped or paused, and a field in which its title is being typed
    /// is to write it now, through `rename`.
    void titleWanted();

private:
    [[nodiscard]] bool writeTitle();
    void refreshSoon();
    void refresh();
    void tick();
    [[nodiscard]] double elapsedSeconds() const;
    /// Of the session in progress; nullptr when missing. Valid until the ledger changes.
    struct Records {
        const KestryCore::Project* project = nullptr;
        const KestryCore::Client* client = nullptr;
    };
    [[nodiscard]] Records sessionRecords() const;
    [[nodiscard]] SessionTarget target() const;

    Commander& commander_;
    const KestryCore::TimeStore& store_;
    const AppState& state_;
    KestryCore::Clock now_;
    KestryCore::Scheduler& scheduler_;
    const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar_;
    KestryCore::MoneyText words_;
    SessionFacts facts_;
    SessionFacts::Month month_;
    bool wasRefused_ = false; ///< The latest title.
    KestryCore::Timer refresh_;
    KestryCore::Timer tick_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
