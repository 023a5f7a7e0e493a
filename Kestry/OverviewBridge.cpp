#include "OverviewBridge.h"

#include <utility>

#include "MonthOffset.h"
#include "SpokenActivity.h"

namespace Kestry {

using KestryCore::Date;
using KestryCore::MonthCard;

namespace {

OverviewCard overviewCard(const char* title, const MonthCard& card)
{
    OverviewCard result;
    result.title = title;
    result.value = QString::fromStdString(card.value);
    result.line = QString::fromStdString(card.line);
    return result;
}

} // namespace

OverviewBridge::OverviewBridge(SessionList::World world, const Today& today)
    : store_(world.store), state_(world.state), commander_(world.commander), now_(world.now),
      calendar_(world.calendar), money_(world.money), today_(today), totals_(world.store),
      recent_(std::move(world))
{
    // The list tells of each change of the ledger, and of each second of the session in progress.
    connect(&recent_.list(), &SessionList::ticked, this, &OverviewBridge::update);
    // Another calendar has other months, and the list has its words first.
    connect(&recent_.list(), &SessionList::wordsChanged, this, [this] {
        totals_.forget();
        showMonth();
    });
}

void OverviewBridge::open()
{
    monthOffset_ = 0;
    totals_.forget();
    subscriptions_.clear();
    subscriptions_.push_back(today_.start().observe([this](const auto&) { showMonth(); }));
    showMonth();
}

void OverviewBridge::close()
{
    subscriptions_.clear();
    recent_.close();
    totals_.forget();
}

void OverviewBridge::go(int monthOffset)
{
    monthOffset_ = monthOffset;
    showMonth();
}

void OverviewBridge::previousMonth()
{
    go(monthOffset_ - 1);
}

void OverviewBridge::nextMonth()
{
    if (canGoOn()) {
        go(monthOffset_ + 1);
    }
}

Date OverviewBridge::anchor() const
{
    return monthAnchor(monthOffset_, now_(), *calendar_);
}

void OverviewBridge::showMonth()
{
    const Date anchor = this->anchor();
    // A month out of the calendar's reach has no sessions.
    const auto interval =
        calendar_->month(anchor).value_or(KestryCore::MonthInterval{anchor, anchor});
    recent_.show(RecentSessions::OfMonth{interval, isCurrent()},
        "overview:" + QString::number(monthOffset_));
}

void OverviewBridge::update()
{
    const Date now = now_();
    const Date anchor = this->anchor();
    const KestryCore::DayText& days = recent_.list().days();
    publish(month_,
        {monthOffset_, QString::fromStdString(days.month(anchor)),
            QString::fromStdString(days.shortMonth(anchor))},
        &OverviewBridge::monthChanged);
    publish(hasClients_, !store_.data()->clients.empty(), &OverviewBridge::hasClientsChanged);
    const KestryCore::MonthMetrics metrics = totals_.of(anchor, now, *calendar_);
    const auto shown =
        isCurrent() ? KestryCore::ShownMonth::current : KestryCore::ShownMonth::other;
    showCards(monthCards(metrics, shown, money_));
    showChart(metrics, anchor);
}

void OverviewBridge::showCards(const KestryCore::MonthCards& cards)
{
    publish(billableEarnings_, overviewCard("Billable earnings", cards.billableEarnings),
        &OverviewBridge::billableEarningsChanged);
    publish(trackedTime_, overviewCard("Tracked time", cards.trackedTime),
        &OverviewBridge::trackedTimeChanged);
    publish(projectedEarnings_, overviewCard("Earnings", cards.projectedEarnings),
        &OverviewBridge::projectedEarningsChanged);
    publish(projectedTime_, overviewCard("Time", cards.projectedTime),
        &OverviewBridge::projectedTimeChanged);
}

void OverviewBridge::showChart(const KestryCore::MonthMetrics& metrics, Date anchor)
{
    const KestryCore::DayText& days = recent_.list().days();
    bars_.show(activityBars(metrics.daily), calendar_->startOfDay(now_()), days);
    QStringList labels;
    for (const std::string& label : KestryCore::ActivityScale(metrics.daily).labels()) {
        labels << QString::fromStdString(label);
    }
    publish(scaleLabels_, std::move(labels), &OverviewBridge::scaleLabelsChanged);
    publish(spokenActivity_, QString::fromStdString(Kestry::spokenActivity(metrics, anchor, days)),
        &OverviewBridge::spokenActivityChanged);
}

template <class Value>
void OverviewBridge::publish(Value& shown, Value value, void (OverviewBridge::*changed)())
{
    if (shown != value) {
        shown = std::move(value);
        emit(this->*changed)();
    }
}

QString OverviewBridge::recordedTitle() const
{
    return isCurrent() ? "Recorded this month" : "Recorded this period";
}

QString OverviewBridge::projectedTitle() const
{
    return isCurrent() ? "Projected this month" : "Month-end totals";
}

QString OverviewBridge::projectedHelp() const
{
    return isCurrent() ? "Estimates use recorded earnings and hours ÷ calendar days elapsed "
                         "(including today) × days in this month. They are not guaranteed work or "
                         "payment."
                       : "Final recorded earnings and tracked time for this month.";
}

void OverviewBridge::viewAll()
{
    state_.selectedClient.assign(std::nullopt);
    state_.sessionsMonth.assign(anchor());
    state_.destination.assign(Destination::sessions);
}

void OverviewBridge::addClient()
{
    commander_.newClient();
}

} // namespace Kestry
