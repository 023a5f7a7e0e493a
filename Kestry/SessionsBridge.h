#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

#include "SessionColumn.h"
#include "SessionList.h"
#include "SessionQuery.h"

namespace Kestry {

/// The sessions table as a view shows it: the criteria of its list, and the texts around it. It
/// works only while it is open.
///
/// The page is of the client that the state has selected, if any, and of its month. A table inside
/// a dashboard is of one client and shows a few sessions first.
class SessionsBridge final : public QObject, private SessionSelection {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the bridges.")
    Q_PROPERTY(bool isEmbedded READ isEmbedded CONSTANT)
    Q_PROPERTY(Kestry::SessionList* list READ list CONSTANT)
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

public:
    SessionsBridge(SessionList::World world, KestryCore::SessionListPlace place);

    /// Begins to show sessions, with the criteria at their start.
    Q_INVOKABLE void open();
    /// Lets the sessions go. A table that was never opened costs nothing.
    Q_INVOKABLE void close();
    /// For a table in a dashboard. The page follows the state.
    void setClientID(std::optional<KestryCore::Uuid> clientID);

    [[nodiscard]] bool isEmbedded() const { return query_.embedded(); }
    [[nodiscard]] SessionList* list() { return &list_; }
    [[nodiscard]] QString search() const { return QString::fromStdString(query_.search()); }
    void setSearch(const QString& search);
    [[nodiscard]] QString title() const;
    /// The month that limits the table; empty without one.
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

    /// Sorts by a column, by its `field`.
    Q_INVOKABLE void sortBy(int field);
    Q_INVOKABLE void showMore();
    Q_INVOKABLE void clearMonth();
    Q_INVOKABLE void addTime();

signals:
    void changed();

private:
    void followState();
    void showAnew();
    [[nodiscard]] QString nextRevealID();
    [[nodiscard]] SessionsModel::Entries sessions(const KestryCore::LedgerData& ledger) override;
    [[nodiscard]] Active active(
        const KestryCore::LedgerData& ledger, KestryCore::Date until) override;
    [[nodiscard]] KestryCore::SessionSource source(const KestryCore::LedgerData& ledger) const;
    [[nodiscard]] bool hasMonth() const;
    [[nodiscard]] SessionColumn column(KestryCore::SessionSortField field) const;

    KestryCore::TimeStore& store_;
    AppState& state_;
    const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar_;
    KestryCore::SessionQuery query_;
    std::optional<KestryCore::LocalizedOrder> order_; // slow to make
    std::size_t foundCount_ = 0;
    std::optional<KestryCore::Date> shownMonth_;
    int revealNumber_ = 0;
    SessionList list_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
