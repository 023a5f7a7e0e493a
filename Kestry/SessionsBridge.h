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
#include "LocalizedOrder.h"
#include "MenuEntry.h"
#include "Scheduler.h"
#include "SessionColumn.h"
#include "SessionQuery.h"
#include "SessionsModel.h"
#include "TimeStore.h"
#include "ZoneCalendar.h"

namespace Kestry {

/// A list of sessions as a view shows it: its criteria and its rows, the texts around them, and
/// what can be done with a row. It works only while it is open; while a session in it runs,
/// `ticked` is emitted at each full second, without looking at the saved sessions.
///
/// The page is of the client that the state has selected, if any, and of its month. A list inside a
/// dashboard is of one client and shows a few sessions first.
class SessionsBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the bridges.")
    Q_PROPERTY(bool isEmbedded READ isEmbedded CONSTANT)
    Q_PROPERTY(Kestry::SessionsModel* rows READ rows CONSTANT)
    /// Changes when other sessions are shown, and not when those that are shown have changed.
    Q_PROPERTY(QString revealID READ revealID NOTIFY shownAnew)
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY changed)
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString month READ month NOTIFY changed)
    Q_PROPERTY(QString countText READ countText NOTIFY changed)
    Q_PROPERTY(QString exportLabel READ exportLabel NOTIFY changed)
    Q_PROPERTY(QString exportHelp READ exportHelp NOTIFY changed)
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY changed)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed)
    Q_PROPERTY(bool offersMore READ offersMore NOTIFY changed)
    Q_PROPERTY(Kestry::SessionColumn titleColumn READ titleColumn NOTIFY changed)
    Q_PROPERTY(Kestry::SessionColumn dateColumn READ dateColumn NOTIFY changed)
    Q_PROPERTY(Kestry::SessionColumn durationColumn READ durationColumn NOTIFY changed)
    Q_PROPERTY(Kestry::SessionColumn valueColumn READ valueColumn NOTIFY changed)
    Q_PROPERTY(bool showsActive READ showsActive NOTIFY changed)
    Q_PROPERTY(Kestry::ActiveRow active READ active NOTIFY changed)
    Q_PROPERTY(QString elapsed READ elapsed NOTIFY ticked)
    Q_PROPERTY(QString activeValue READ activeValue NOTIFY ticked)
    Q_PROPERTY(QString activeSpoken READ activeSpoken NOTIFY ticked)
    Q_PROPERTY(bool isAskingToDelete READ isAskingToDelete NOTIFY askingToDeleteChanged)

public:
    /// What a list needs of the program. All of it must outlive the bridge.
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
        ClientLogos* logos = nullptr; ///< Null: rows have none.
    };

    SessionsBridge(World world, KestryCore::SessionListPlace place);

    /// Begins to show sessions, with the criteria at their start.
    Q_INVOKABLE void open();
    /// Lets the sessions go. A list that was never opened costs nothing.
    Q_INVOKABLE void close();
    /// For a list in a dashboard. The page follows the state.
    void setClientID(std::optional<KestryCore::Uuid> clientID);

    [[nodiscard]] bool isEmbedded() const { return query_.embedded(); }
    [[nodiscard]] SessionsModel* rows() { return &rows_; }
    [[nodiscard]] QString revealID() const { return QString::number(revealNumber_); }
    [[nodiscard]] QString search() const { return QString::fromStdString(query_.search()); }
    void setSearch(const QString& search);
    [[nodiscard]] QString title() const;
    /// The month that limits the list; empty without one.
    [[nodiscard]] QString month() const;
    [[nodiscard]] QString countText() const;
    [[nodiscard]] QString exportLabel() const;
    [[nodiscard]] QString exportHelp() const;
    /// What is shown in place of rows; both are empty while there are rows.
    [[nodiscard]] QString emptyTitle() const;
    [[nodiscard]] QString emptyText() const;
    [[nodiscard]] bool offersMore() const { return query_.offersMore(foundCount_); }
    [[nodiscard]] SessionColumn titleColumn() const;
    [[nodiscard]] SessionColumn dateColumn() const;
    [[nodiscard]] SessionColumn durationColumn() const;
    [[nodiscard]] SessionColumn valueColumn() const;
    /// Whether the session in progress has its row above the others.
    [[nodiscard]] bool showsActive() const { return showsActive_; }
    [[nodiscard]] const ActiveRow& active() const { return active_; }
    [[nodiscard]] QString elapsed() const;
    [[nodiscard]] QString activeValue() const;
    /// Its length and its value as a screen reader should say them: "2 hours 30 minutes, $375.00".
    [[nodiscard]] QString activeSpoken() const;
    [[nodiscard]] bool isAskingToDelete() const { return pendingDelete_.has_value(); }

    /// Sorts by a column, by its `field`.
    Q_INVOKABLE void sortBy(int field);
    Q_INVOKABLE void showMore();
    Q_INVOKABLE void clearMonth();

    // Rows are numbered from 0; nothing happens for a row that does not exist.

    Q_INVOKABLE void edit(int row);
    Q_INVOKABLE void editActive();
    Q_INVOKABLE void addTime();
    /// Asks for a confirmation before it deletes the session of a row.
    Q_INVOKABLE void askToDelete(int row);
    Q_INVOKABLE void confirmDelete();
    Q_INVOKABLE void cancelDelete();
    /// Opens the menu of a row, or of the session in progress, beside an item.
    Q_INVOKABLE void openMenu(int row, QQuickItem* item);
    Q_INVOKABLE void openActiveMenu(QQuickItem* item);
    /// The row that typing leads to, by the beginning of its name; -1 for none. Letters typed
    /// shortly after one another are one beginning.
    Q_INVOKABLE int typeAhead(const QString& text, int currentRow);

signals:
    void changed();
    void shownAnew();
    void ticked();
    void askingToDeleteChanged();

private:
    /// Whether a query is for other sessions than before, or for the same after a change.
    enum class Rows { other, same };

    void followWorld();
    void followLedgerSoon();
    void followLedger();
    void followState();
    void loadTexts();
    void showAnew();
    void query(Rows rows);
    void refreshActive();
    void tick();
    void setPendingDelete(std::optional<KestryCore::Uuid> id);
    [[nodiscard]] KestryCore::SessionSource source() const;
    [[nodiscard]] bool isOpen() const { return texts_.has_value(); }
    [[nodiscard]] bool hasMonth() const;
    [[nodiscard]] bool isRunning() const;
    [[nodiscard]] double elapsedSeconds() const;
    [[nodiscard]] SessionColumn column(KestryCore::SessionSortField field) const;
    [[nodiscard]] int findRow(const std::string& beginning, int from) const;
    [[nodiscard]] Menu rowMenu(const KestryCore::Uuid& id);
    [[nodiscard]] Menu activeMenu();

    World world_;
    KestryCore::SessionQuery query_;
    SessionsModel rows_;
    /// What is slow to make, while the list is open.
    struct Texts {
        KestryCore::LocalizedOrder order;
        KestryCore::DayText days;
    };
    std::optional<Texts> texts_;
    std::size_t foundCount_ = 0;
    std::optional<KestryCore::Date> shownMonth_;
    int revealNumber_ = 0;
    bool showsActive_ = false;
    ActiveRow active_;
    std::optional<KestryCore::Uuid> pendingDelete_;
    std::string typed_;
    KestryCore::Timer typing_;
    KestryCore::Timer refresh_;
    KestryCore::Timer tick_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
