#include "OverviewBridge.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "SessionListFixture.h"

namespace Kestry {
namespace {

using KestryCore::CalendarDay;
using KestryCore::Date;
using KestryCore::Uuid;
using KestryCore::ZoneCalendar;

constexpr double hour = 3600.0;

/// The Overview on an evening of September 2025 in Berlin, unless the clock is set.
class OverviewBridgeTest : public SessionListFixture {
protected:
    /// Lets time pass up to a moment.
    void waitUntil(Date moment) { world.scheduler.advance(moment - world.now()); }
    [[nodiscard]] QString bar(int row, ActivityBars::Role role = ActivityBars::LabelRole)
    {
        return overview.bars()->data(overview.bars()->index(row), role).toString();
    }
    [[nodiscard]] double barHeight(int row)
    {
        return bar(row, ActivityBars::BarHeightRole).toDouble();
    }
    [[nodiscard]] int look(int row)
    {
        return overview.bars()->data(overview.bars()->index(row), ActivityBars::LookRole).toInt();
    }
    [[nodiscard]] QStringList labels() { return SessionListFixture::labels(*overview.sessions()); }
    Today today{world.scheduler, [this] { return world.now(); }, calendar};
    OverviewBridge overview{worldOfList(), today};
    QAbstractItemModelTester tester{
        overview.bars(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(OverviewBridgeTest, WithoutClientsOnlyTheMonthRemains)
{
    KestryCore::TimeStore empty(world.storePlatform(), ApplicationWorld::inMemory());
    const SessionList::World known = worldOfList();
    OverviewBridge first({commander, empty, state, world.scheduler, known.now, calendar,
                             known.money, known.openMenu, deletion},
        today);
    first.open();
    EXPECT_FALSE(first.hasClients());
    EXPECT_EQ(first.month(), "September 2025");
    first.addClient();
    EXPECT_EQ((*state.editor)->id(), "client-new");
    addClient(empty, "Birch");
    world.scheduler.turn();
    EXPECT_TRUE(first.hasClients());
}

TEST_F(OverviewBridgeTest, AnEmptyMonthShowsZeros)
{
    overview.open();
    EXPECT_EQ(
        overview.billableEarnings().spoken(), "Billable earnings: $0.00. Recorded billable value");
    EXPECT_EQ(overview.trackedTime().spoken(), "Tracked time: 0h 0m. Across 0 sessions");
    EXPECT_EQ(overview.projectedEarnings().spoken(), "Earnings: $0. At your daily pace");
    EXPECT_EQ(overview.projectedTime().spoken(), "Time: 0h 0m. At your daily pace");
    EXPECT_EQ(overview.scaleLabels(), (QStringList{"4h", "2h", "0h"}));
    ASSERT_EQ(overview.bars()->rowCount(), 30);
    for (int row = 0; row < 30; ++row) {
        EXPECT_EQ(barHeight(row), 3.0);
    }
    EXPECT_TRUE(overview.sessions()->isEmpty());
    EXPECT_EQ(overview.emptyText(), "No sessions in September 2025.");
    EXPECT_EQ(overview.spokenActivity(), "No time tracked in September 2025.");
}

TEST_F(OverviewBridgeTest, TheHeadingsOfThePresentMonthAreOfItsFuture)
{
    overview.open();
    EXPECT_EQ(overview.recordedTitle(), "Recorded this month");
    EXPECT_EQ(overview.projectedTitle(), "Projected this month");
    EXPECT_EQ(overview.projectedHelp(),
        "Estimates use recorded earnings and hours ÷ calendar days elapsed (including today) × "
        "days in this month. They are not guaranteed work or payment.");
    overview.previousMonth();
    EXPECT_EQ(overview.recordedTitle(), "Recorded this period");
    EXPECT_EQ(overview.projectedTitle(), "Month-end totals");
    EXPECT_EQ(overview.projectedHelp(), "Final recorded earnings and tracked time for this month.");
}

TEST_F(OverviewBridgeTest, MonthsGoBackWithoutEndAndNotBeyondThePresentOne)
{
    overview.open();
    EXPECT_FALSE(overview.canGoOn());
    overview.nextMonth();
    EXPECT_EQ(overview.month(), "September 2025");
    for (int count = 0; count < 24; ++count) {
        overview.previousMonth();
    }
    EXPECT_EQ(overview.month(), "September 2023");
    EXPECT_TRUE(overview.canGoOn());
    overview.nextMonth();
    EXPECT_EQ(overview.month(), "October 2023");
}

TEST_F(OverviewBridgeTest, OpeningAgainShowsThePresentMonth)
{
    overview.open();
    overview.previousMonth();
    overview.close();
    overview.open();
    EXPECT_EQ(overview.month(), "September 2025");
}

TEST_F(OverviewBridgeTest, APastMonthEndsWithWhatItRecorded)
{
    saveAt("August", inMonth(8, 5, 9), inMonth(8, 5, 12));
    overview.open();
    EXPECT_EQ(overview.trackedTime().value, "0h 0m");
    overview.previousMonth();
    EXPECT_EQ(overview.billableEarnings().value, "$300.00");
    EXPECT_EQ(overview.projectedEarnings().value, "$300.00");
    EXPECT_EQ(overview.projectedEarnings().line, "Final billable value");
    EXPECT_EQ(overview.trackedTime().value, "3h 0m");
    EXPECT_EQ(overview.projectedTime().value, "3h 0m");
    EXPECT_EQ(overview.trackedTime().line, "Across 1 session");
}

TEST_F(OverviewBridgeTest, TimeWithoutARateLeavesNoEarningsToShow)
{
    saveOn(store.addProject(aster, {"Favour", 0, false}), "Draft", world.now() + -2.0 * hour,
        world.now());
    overview.open();
    EXPECT_EQ(overview.billableEarnings().value, "Rate not set");
    EXPECT_EQ(overview.billableEarnings().line, "2h 0m still unpriced");
    EXPECT_EQ(overview.projectedEarnings().value, "Rate not set");
    EXPECT_EQ(overview.projectedEarnings().line, "Rate needed to estimate");
}

TEST_F(OverviewBridgeTest, TheChartHasEachDayOnOneScale)
{
    saveAt("Long", inMonth(8, 14, 9), inMonth(8, 14, 13) + 360.0);
    saveAt("Short", inMonth(8, 15, 9), inMonth(8, 15, 12));
    overview.open();
    overview.previousMonth();
    EXPECT_EQ(overview.bars()->rowCount(), 31);
    EXPECT_EQ(overview.scaleLabels(), (QStringList{"6h", "3h", "0h"}));
    EXPECT_EQ(bar(13), "Aug 14: 4h 6m");
    EXPECT_EQ(barHeight(14), 69.0);
    EXPECT_EQ(overview.dayLabels(), (QStringList{"Aug", "10", "20"}));
    EXPECT_EQ(overview.spokenActivity(),
        "7 hours 6 minutes on 2 days in August 2025. The most was 4 hours 6 minutes on August 14.");
}

TEST_F(OverviewBridgeTest, TheChartBeginsAtToday)
{
    overview.open();
    const int row = calendar->day(world.now()).day - 1;
    EXPECT_EQ(overview.bars()->firstRow(), row);
    EXPECT_EQ(look(row), ActivityBars::Today);
    EXPECT_EQ(look(row - 1), ActivityBars::Idle);
    EXPECT_EQ(look(row + 1), ActivityBars::Later);
    overview.previousMonth();
    EXPECT_EQ(overview.bars()->firstRow(), 0);
    EXPECT_EQ(look(30), ActivityBars::Idle);
}

TEST_F(OverviewBridgeTest, TheSessionInProgressStandsAboveInThePresentMonthAlone)
{
    start("Review");
    overview.open();
    EXPECT_TRUE(overview.sessions()->showsActive());
    overview.previousMonth();
    EXPECT_FALSE(overview.sessions()->showsActive());
    EXPECT_TRUE(overview.sessions()->isEmpty());
}

TEST_F(OverviewBridgeTest, MovingBetweenMonthsReplaysTheEntrance)
{
    overview.open();
    EXPECT_EQ(overview.sessions()->revealID(), "overview:0");
    overview.previousMonth();
    EXPECT_EQ(overview.sessions()->revealID(), "overview:-1");
    overview.nextMonth();
    EXPECT_EQ(overview.sessions()->revealID(), "overview:0");
}

TEST_F(OverviewBridgeTest, ViewAllLimitsThePageOfSessionsToTheMonth)
{
    state.selectedClient.assign(aster);
    overview.open();
    overview.previousMonth();
    overview.viewAll();
    EXPECT_EQ(*state.destination, Destination::sessions);
    EXPECT_EQ(*state.selectedClient, std::nullopt);
    ASSERT_TRUE(state.sessionsMonth->has_value());
    EXPECT_EQ(calendar->month(**state.sessionsMonth)->start, inMonth(8, 1));
}

TEST_F(OverviewBridgeTest, ARunningSessionMovesOnlyWhatChanges)
{
    start("Review");
    overview.open();
    const QSignalSpy time(&overview, &OverviewBridge::trackedTimeChanged);
    const QSignalSpy earnings(&overview, &OverviewBridge::billableEarningsChanged);
    const QSignalSpy month(&overview, &OverviewBridge::monthChanged);
    const QSignalSpy bars(overview.bars(), &QAbstractItemModel::dataChanged);
    world.scheduler.advance(59.5);
    EXPECT_EQ(time.count(), 1); // it counts as a session now
    EXPECT_GT(earnings.count(), 50);
    EXPECT_EQ(bars.count(), 1); // it has time now
    world.scheduler.advance(1.0);
    EXPECT_EQ(time.count(), 2);
    EXPECT_EQ(bars.count(), 2);
    EXPECT_EQ(month.count(), 0);
    EXPECT_EQ(overview.trackedTime().value, "0h 1m");
}

TEST_F(OverviewBridgeTest, NothingWakesButForMidnightWhileNothingRuns)
{
    save("Design");
    overview.open();
    world.scheduler.turn();
    const QSignalSpy ticks(overview.sessions(), &SessionList::ticked);
    world.scheduler.advance(2.0 * hour);
    EXPECT_EQ(ticks.count(), 0);
    start("Review");
    overview.previousMonth();
    const auto before = ticks.count();
    world.scheduler.advance(60.0);
    EXPECT_EQ(ticks.count(), before);
}

TEST_F(OverviewBridgeTest, TheLastSecondOfAMonthIsOfItsLastDay)
{
    waitUntil(inMonth(9, 30, 23));
    start("Night");
    overview.open();
    waitUntil(inMonth(10, 1) + -1.0);
    EXPECT_EQ(overview.month(), "September 2025");
    EXPECT_EQ(bar(29), "Sep 30: 0h 59m");
    EXPECT_EQ(overview.trackedTime().value, "0h 59m");
}

TEST_F(OverviewBridgeTest, AtMidnightThePageMovesOnToTheNewMonth)
{
    waitUntil(inMonth(9, 30, 23));
    start("Night");
    overview.open();
    waitUntil(inMonth(10, 1, 1));
    EXPECT_EQ(overview.month(), "October 2025");
    EXPECT_EQ(overview.bars()->rowCount(), 31);
    EXPECT_EQ(bar(0), "Oct 1: 1h 0m");
    EXPECT_EQ(overview.trackedTime().value, "1h 0m");
    overview.previousMonth();
    EXPECT_EQ(overview.trackedTime().value, "1h 0m"); // no hour is on both days
}

TEST_F(OverviewBridgeTest, AtMidnightTodayMovesOnAlsoWhileNothingRuns)
{
    save("Design", 1.0, 1.0);
    overview.open();
    const QString projected = overview.projectedTime().value;
    const int row = overview.bars()->firstRow();
    world.scheduler.advance(24.0 * hour);
    EXPECT_EQ(overview.bars()->firstRow(), row + 1);
    EXPECT_EQ(look(row), ActivityBars::Busy);
    EXPECT_NE(overview.projectedTime().value, projected);
}

TEST_F(OverviewBridgeTest, AClockThatWasSetIsFollowedOnceTodayLooks)
{
    save("Design");
    overview.open();
    world.clockAhead = 40.0 * 24.0 * hour;
    today.look();
    EXPECT_NE(overview.month(), "September 2025");
    EXPECT_EQ(overview.trackedTime().value, "0h 0m");
    EXPECT_TRUE(overview.sessions()->isEmpty());
}

TEST_F(OverviewBridgeTest, AnotherZoneMovesHoursToOtherDays)
{
    saveAt("Night", inMonth(8, 31, 23), inMonth(9, 1, 1));
    overview.open();
    EXPECT_EQ(overview.trackedTime().value, "1h 0m");
    EXPECT_EQ(bar(0), "Sep 1: 1h 0m");
    calendar.assign(ZoneCalendar("Asia/Tokyo", "en_US"));
    EXPECT_EQ(overview.trackedTime().value, "2h 0m");
    EXPECT_EQ(bar(0), "Sep 1: 2h 0m");
    calendar.assign(ZoneCalendar("America/New_York", "en_US"));
    EXPECT_EQ(overview.trackedTime().value, "0h 0m");
    EXPECT_TRUE(overview.sessions()->isEmpty());
}

/// The labels of bars as a view has them, which asks again only for what it is told of.
class MirroredLabels {
public:
    explicit MirroredLabels(ActivityBars& bars) : bars_(bars)
    {
        QObject::connect(&bars, &QAbstractItemModel::modelReset, &context_, [this] { read(); });
        QObject::connect(&bars, &QAbstractItemModel::dataChanged, &context_,
            [this](const QModelIndex& first, const QModelIndex& last) {
                for (int row = first.row(); row <= last.row(); ++row) {
                    labels[row] = label(row);
                }
            });
        read();
    }
    QStringList labels;

private:
    [[nodiscard]] QString label(int row) const
    {
        return bars_.data(bars_.index(row), ActivityBars::LabelRole).toString();
    }
    void read()
    {
        labels.clear();
        for (int row = 0; row < bars_.rowCount(); ++row) {
            labels << label(row);
        }
    }

    QObject context_;
    ActivityBars& bars_;
};

TEST_F(OverviewBridgeTest, AZoneChangeEastwardsOrWestwardsIsToldForEachBar)
{
    saveAt("Night", inMonth(9, 1, 1), inMonth(9, 1, 2));
    overview.open();
    const MirroredLabels shown(*overview.bars());
    for (const char* zone : {"Asia/Tokyo", "America/New_York", "Pacific/Kiritimati"}) {
        calendar.assign(ZoneCalendar(zone, "en_US"));
        ASSERT_EQ(shown.labels.size(), 30);
        EXPECT_EQ(shown.labels.first().section(':', 0, 0), "Sep 1") << zone;
        EXPECT_EQ(shown.labels.last(), "Sep 30: 0h 0m") << zone;
        EXPECT_EQ(shown.labels, MirroredLabels(*overview.bars()).labels) << zone;
    }
}

TEST_F(OverviewBridgeTest, WordsOfAnotherLanguageAreToldForEachBar)
{
    overview.open();
    const MirroredLabels shown(*overview.bars());
    calendar.assign(ZoneCalendar("Europe/Berlin", "de_DE"));
    EXPECT_EQ(shown.labels.first(), "1. Sept.: 0h 0m");
    EXPECT_EQ(shown.labels, MirroredLabels(*overview.bars()).labels);
}

TEST_F(OverviewBridgeTest, AChangeFromElsewhereShowsAtOnce)
{
    overview.open();
    save("Design", 1.0, 0.5);
    EXPECT_EQ(overview.trackedTime().value, "0h 30m");
    EXPECT_EQ(labels(), QStringList{"Design"});
}

TEST_F(OverviewBridgeTest, APageThatIsClosedDoesNothing)
{
    overview.open();
    overview.close();
    const QSignalSpy time(&overview, &OverviewBridge::trackedTimeChanged);
    save("Design");
    start("Review");
    world.scheduler.advance(120.0);
    EXPECT_EQ(time.count(), 0);
}

} // namespace
} // namespace Kestry
