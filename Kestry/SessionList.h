#pragma once

#include <QObject>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ActiveRow.h"
#include "AppState.h"
#include "Commander.h"
#include "MenuEntry.h"
#include "Scheduler.h"
#include "SessionDeletion.h"
#include "SessionsModel.h"
#include "TimeStore.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// Which sessions a list shows. A list asks when something that it follows has changed.
class SessionSelection {
public:
    /// Whether the session in progress has its row above the others. `notYet` means that time alone
    /// may bring it: one that has only just begun is in no month yet.
    enum class Active { hidden, notYet, shown };

    virtual ~SessionSelection() = default;

    /// The saved sessions in their order, records of `ledger`.
    [[nodiscard]] virtual SessionsModel::Entries sessions(const KestryCore::LedgerData& ledger) = 0;
    /// `until` is how far a running session counts. Asked only while there is a session.
    [[nodiscard]] virtual Active active(
        const KestryCore::LedgerData& ledger, KestryCore::Date until) = 0;

protected:
    SessionSelection() = default;
    SessionSelection(const SessionSelection&) = default;
    SessionSelection& operator=(const SessionSelection&) = default;
};

/// What every list of sessions has: its rows, the row of the session in progress, and what can be
/// done with a row. It works only while it is open; while a session in it runs, `ticked` is emitted
/// at each full second, without looking at the saved sessions.
class SessionList final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Lists come from the bridges.")
    Q_PROPERTY(Kestry::SessionsModel* rows READ rows CONSTANT)
    /// Changes when other sessions are shown, and not when those that are shown have changed.
    Q_PROPERTY(QString revealID READ revealID NOTIFY shownAnew)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)
    Q_PROPERTY(bool showsActive READ showsActive NOTIFY changed)
    Q_PROPERTY(Kestry::ActiveRow active READ active NOTIFY changed)
    Q_PROPERTY(QString elapsed READ elapsed NOTIFY ticked)
    Q_PROPERTY(QString activeValue READ activeValue NOTIFY ticked)
    Q_PROPERTY(QString activeSpoken READ activeSpoken NOTIFY ticked)

public:
    /// What a list needs of the program. All of it must outlive the list.
    struct World {
        Commander& commander;
        KestryCore::TimeStore& store;
        AppState& state;
        KestryCore::Scheduler& scheduler;
        KestryCore::Clock now;
        const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar;
        KestryCore::MoneyText money;
        /// Shows a menu beside an item, under a name for screen readers.
        std::function<void(Menu menu, const QString& name, const QQuickItem& item)> openMenu;
        SessionDeletion& deletion;
        ClientLogos* logos = nullptr; ///< Null: rows have none.
    };

    /// The selection must outlive the list.
    SessionList(World world, SessionSelection& selection);

    /// Begins to show sessions, from the top.
    void open(const QString& revealID);
    /// Shows other sessions, from the top. The list must be open.
    void showAnew(const QString& revealID);
    /// Lets the sessions go. A list that was never opened costs nothing.
    void close();
    [[nodiscard]] bool isOpen() const { return days_.has_value(); }

    /// Whether the rows show other sessions than before, or the same after a change.
    enum class Rows { other, same };
    /// Asks the selection again. The list must be open.
    void refresh(Rows rows);

    [[nodiscard]] SessionsModel* rows() { return &rows_; }
    [[nodiscard]] QString revealID() const { return revealID_; }
    /// Whether there is no row at all.
    [[nodiscard]] bool isEmpty() const { return rows_.rowCount() == 0 && !showsActive(); }
    /// Whether the session in progress has its row above the others.
    [[nodiscard]] bool showsActive() const
    {
        return activeShown_ == SessionSelection::Active::shown;
    }
    [[nodiscard]] const ActiveRow& active() const { return active_; }
    [[nodiscard]] QString elapsed() const;
    [[nodiscard]] QString activeValue() const;
    /// Its length and its value as a screen reader should say them: "2 hours 30 minutes, $375.00".
    [[nodiscard]] QString activeSpoken() const;
    /// The words for days, while the list is open.
    [[nodiscard]] const KestryCore::DayText& days() const { return *days_; }

    // Rows are numbered from 0; nothing happens for a row that does not exist.

    Q_INVOKABLE void edit(int row);
    Q_INVOKABLE void editActive();
    /// Asks for a confirmation before it deletes the session of a row.
    Q_INVOKABLE void askToDelete(int row);
    /// Opens the menu of a row, or of the session in progress, beside an item.
    Q_INVOKABLE void openMenu(int row, QQuickItem* item);
    Q_INVOKABLE void openActiveMenu(QQuickItem* item);
    /// The row that typing leads to, by the beginning of its name; -1 for none. Letters typed
    /// shortly after one another are one beginning.
    Q_INVOKABLE int typeAhead(const QString& text, int currentRow);

signals:
    /// The rows, or what the row of the session in progress says besides its figures.
    void changed();
    void shownAnew();
    void ticked();
    /// The words for days are of another calendar. The sessions are asked for again after this.
    void wordsChanged();

private:
    void followWorld();
    void followLedgerSoon();
    void followLedger();
    void loadTexts();
    void refreshActive();
    void tick();
    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] double elapsedSeconds() const;
    [[nodiscard]] int findRow(const std::string& beginning, int from) const;
    [[nodiscard]] Menu rowMenu(const KestryCore::Uuid& id);
    [[nodiscard]] Menu activeMenu();

    World world_;
    SessionSelection& selection_;
    SessionsModel rows_;
    std::optional<KestryCore::DayText> days_; // slow to make
    QString revealID_;
    SessionSelection::Active activeShown_ = SessionSelection::Active::hidden;
    ActiveRow active_;
    std::string typed_;
    KestryCore::Timer typing_;
    KestryCore::Timer refresh_;
    KestryCore::Timer tick_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
