#pragma once

#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <vector>

#include "ActivityBars.h"
#include "MonthCards.h"
#include "MonthTotals.h"
#include "OverviewCard.h"
#include "RecentSessions.h"
#include "Today.h"

namespace Kestry {

/// The Overview as its view shows it: one month, which is the present one at offset 0 and follows
/// the clock. It works only while it is open. A signal tells of what has changed, and of nothing
/// else; while a session runs in the present month, its figures move on once a second.
class OverviewBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the bridges.")
    Q_PROPERTY(bool hasClients READ hasClients NOTIFY hasClientsChanged)
    Q_PROPERTY(bool canGoOn READ canGoOn NOTIFY monthChanged)
    Q_PROPERTY(QString month READ month NOTIFY monthChanged)
    Q_PROPERTY(QString recordedTitle READ recordedTitle NOTIFY monthChanged)
    Q_PROPERTY(QString projectedTitle READ projectedTitle NOTIFY monthChanged)
    Q_PROPERTY(QString projectedHelp READ projectedHelp NOTIFY monthChanged)
    Q_PROPERTY(QStringList dayLabels READ dayLabels NOTIFY monthChanged)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY monthChanged)
    Q_PROPERTY(
        Kestry::OverviewCard billableEarnings READ billableEarnings NOTIFY billableEarningsChanged)
    Q_PROPERTY(Kestry::OverviewCard trackedTime READ trackedTime NOTIFY trackedTimeChanged)
    Q_PROPERTY(Kestry::OverviewCard projectedEarnings READ projectedEarnings NOTIFY
            projectedEarningsChanged)
    Q_PROPERTY(Kestry::OverviewCard projectedTime READ projectedTime NOTIFY projectedTimeChanged)
    Q_PROPERTY(Kestry::ActivityBars* bars READ bars CONSTANT)
    Q_PROPERTY(QStringList scaleLabels READ scaleLabels NOTIFY scaleLabelsChanged)
    Q_PROPERTY(QString spokenActivity READ spokenActivity NOTIFY spokenActivityChanged)
    Q_PROPERTY(Kestry::SessionList* sessions READ sessions CONSTANT)

public:
    /// All that is handed in must outlive the bridge.
    OverviewBridge(SessionList::World world, const Today& today);

    /// Begins with the present month.
    Q_INVOKABLE void open();
    Q_INVOKABLE void close();
    Q_INVOKABLE void previousMonth();
    /// Does nothing in the present month.
    Q_INVOKABLE void nextMonth();
    /// Goes to the page of all sessions, limited to this month.
    Q_INVOKABLE void viewAll();
    /// Opens the form for a new client.
    Q_INVOKABLE void addClient();

    [[nodiscard]] bool hasClients() const { return hasClients_; }
    [[nodiscard]] bool canGoOn() const { return monthOffset_ < 0; }
    /// "March 2026"
    [[nodiscard]] QString month() const { return month_.name; }
    [[nodiscard]] QString recordedTitle() const;
    [[nodiscard]] QString projectedTitle() const;
    [[nodiscard]] QString projectedHelp() const;
    /// Of the chart's days, below them.
    [[nodiscard]] QStringList dayLabels() const { return {month_.shortName, "10", "20"}; }
    /// In place of sessions when there are none.
    [[nodiscard]] QString emptyText() const { return "No sessions in " + month_.name + "."; }
    [[nodiscard]] const OverviewCard& billableEarnings() const { return billableEarnings_; }
    [[nodiscard]] const OverviewCard& trackedTime() const { return trackedTime_; }
    [[nodiscard]] const OverviewCard& projectedEarnings() const { return projectedEarnings_; }
    [[nodiscard]] const OverviewCard& projectedTime() const { return projectedTime_; }
    [[nodiscard]] ActivityBars* bars() { return &bars_; }
    /// Of the chart's axis, from the top.
    [[nodiscard]] QStringList scaleLabels() const { return scaleLabels_; }
    /// The chart in words.
    [[nodiscard]] QString spokenActivity() const { return spokenActivity_; }
    [[nodiscard]] SessionList* sessions() { return &recent_.list(); }

signals:
    void hasClientsChanged();
    void monthChanged();
    void billableEarningsChanged();
    void trackedTimeChanged();
    void projectedEarningsChanged();
    void projectedTimeChanged();
    void scaleLabelsChanged();
    void spokenActivityChanged();

private:
    /// The month that is shown, in words.
    struct Month {
        int offset = 0;
        QString name;
        QString shortName;

        friend bool operator==(const Month&, const Month&) = default;
    };

    void go(int monthOffset);
    void showMonth();
    void update();
    void showCards(const KestryCore::MonthCards& cards);
    void showChart(const KestryCore::MonthMetrics& metrics, KestryCore::Date anchor);
    [[nodiscard]] bool isCurrent() const { return monthOffset_ == 0; }
    [[nodiscard]] KestryCore::Date anchor() const;
    template <class Value>
    void publish(Value& shown, Value value, void (OverviewBridge::*changed)());

    KestryCore::TimeStore& store_;
    AppState& state_;
    Commander& commander_;
    KestryCore::Clock now_;
    const KestryCore::Observable<KestryCore::ZoneCalendar>& calendar_;
    KestryCore::MoneyText money_;
    const Today& today_;
    MonthTotals totals_;
    RecentSessions recent_;
    int monthOffset_ = 0;
    bool hasClients_ = false;
    Month month_;
    OverviewCard billableEarnings_;
    OverviewCard trackedTime_;
    OverviewCard projectedEarnings_;
    OverviewCard projectedTime_;
    ActivityBars bars_;
    QStringList scaleLabels_;
    QString spokenActivity_;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
