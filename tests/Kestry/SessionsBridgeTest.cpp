#include "SessionsBridge.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "ApplicationWorld.h"

namespace Kestry {
namespace {

using KestryCore::Date;
using KestryCore::SessionListPlace;
using KestryCore::SessionSortField;
using KestryCore::Uuid;

class SessionsBridgeTest : public ::testing::Test {
protected:
    SessionsBridgeTest()
    {
        aster = addClient(store, "Aster Studio");
        website = addProject(store, aster, "Website");
    }

    SessionsBridge::World worldOfBridge()
    {
        return {commander, store, state, world.scheduler, [this] { return world.now(); }, calendar,
            KestryCore::MoneyText("en_US"),
            [this](Menu opened, const QString& /*name*/, const QQuickItem& /*item*/) {
                menu = std::move(opened);
            }};
    }

    Uuid save(const std::string& title, double hoursAgo = 1.0, double hours = 0.5)
    {
        const Date start = world.now() + -3600.0 * hoursAgo;
        return saveAt(title, start, start + 3600.0 * hours);
    }
    Uuid saveAt(const std::string& title, Date start, Date end)
    {
        KestryCore::NewEntry entry;
        entry.clientID = aster;
        entry.projectID = website;
        entry.title = title;
        entry.start = start;
        entry.duration = end - start;
        const Uuid id = store.addEntry(entry);
        world.scheduler.turn();
        return id;
    }
    void start(const std::string& title)
    {
        store.start(website, title, world.now());
        world.scheduler.turn();
    }
    [[nodiscard]] QStringList labels(SessionsBridge& list)
    {
        QStringList result;
        for (int row = 0; row < list.rows()->rowCount(); ++row) {
            result << list.rows()->data(list.rows()->index(row), Qt::DisplayRole).toString();
        }
        return result;
    }
    void sortBy(SessionSortField field) { page.sortBy(static_cast<int>(field)); }
    [[nodiscard]] Date inMonth(int month, int day, int hourOfDay = 0) const
    {
        return *calendar->date({KestryCore::CalendarDay{2025, month, day}, hourOfDay, 0, 0.0});
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    Commander commander{store, state, [this] { return world.now(); }, [] {}};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar{
        KestryCore::ZoneCalendar("Europe/Berlin", "en_US")};
    Menu menu;
    SessionsBridge page{worldOfBridge(), SessionListPlace::page};
    SessionsBridge dashboard{worldOfBridge(), SessionListPlace::dashboard};
    QAbstractItemModelTester tester{
        page.rows(), QAbstractItemModelTester::FailureReportingMode::Fatal};
    QQuickItem item;
    Uuid aster;
    Uuid website;
};

TEST_F(SessionsBridgeTest, APageThatIsNotOpenHasNoRows)
{
    save("Design");
    EXPECT_EQ(page.rows()->rowCount(), 0);
    page.open();
    EXPECT_EQ(labels(page), QStringList{"Design"});
    page.close();
    EXPECT_EQ(page.rows()->rowCount(), 0);
}

TEST_F(SessionsBridgeTest, SessionsAreNewestFirst)
{
    save("Old", 20);
    save("New", 10);
    page.open();
    EXPECT_EQ(labels(page), (QStringList{"New", "Old"}));
}

TEST_F(SessionsBridgeTest, TheTitleIsThatOfTheClient)
{
    page.open();
    EXPECT_EQ(page.title(), "Sessions");
    state.selectedClient.assign(aster);
    EXPECT_EQ(page.title(), "Aster Studio sessions");
    state.selectedClient.assign(Uuid::random());
    EXPECT_EQ(page.title(), "Sessions");
}

TEST_F(SessionsBridgeTest, TheCountIsInThePluralAlsoForOne)
{
    page.open();
    EXPECT_EQ(page.countText(), "0 sessions");
    save("Design");
    EXPECT_EQ(page.countText(), "1 sessions");
    start("Review");
    EXPECT_EQ(page.countText(), "2 sessions");
}

TEST_F(SessionsBridgeTest, ASearchThatFindsOnlyTheSessionInProgressIsNotEmpty)
{
    save("Design");
    start("Review");
    page.open();
    page.setSearch("revi");
    EXPECT_TRUE(page.showsActive());
    EXPECT_EQ(page.rows()->rowCount(), 0);
    EXPECT_EQ(page.countText(), "1 sessions");
    EXPECT_EQ(page.emptyTitle(), "");
    EXPECT_EQ(page.emptyText(), "");
}

TEST_F(SessionsBridgeTest, ExportSaysAllOnceTheListIsLimited)
{
    save("Design");
    page.open();
    EXPECT_EQ(page.exportLabel(), "Export");
    EXPECT_EQ(page.exportHelp(), "1 saved sessions · CSV");
    page.setSearch("nothing");
    EXPECT_EQ(page.exportLabel(), "Export");
    state.sessionsMonth.assign(inMonth(1, 1));
    EXPECT_EQ(page.exportLabel(), "Export all");
    EXPECT_EQ(page.exportHelp(), "1 saved sessions · CSV");
    page.clearMonth();
    state.selectedClient.assign(aster);
    EXPECT_EQ(page.exportLabel(), "Export all");
}

TEST_F(SessionsBridgeTest, AnEmptyListSaysWhy)
{
    page.open();
    EXPECT_EQ(page.emptyTitle(), "No sessions yet");
    EXPECT_EQ(page.emptyText(), "Start a timer or add time you’ve already worked.");
    page.setSearch("x");
    EXPECT_EQ(page.emptyTitle(), "No matching sessions");
    EXPECT_EQ(page.emptyText(), "Try a different client, project, or description.");
    state.sessionsMonth.assign(inMonth(1, 1));
    EXPECT_EQ(page.emptyTitle(), "No sessions this month");
    EXPECT_EQ(page.emptyText(), "Clear the month filter or try a different search.");
}

TEST_F(SessionsBridgeTest, AMonthLimitsThePageUntilItIsCleared)
{
    saveAt("April", inMonth(4, 5, 9), inMonth(4, 5, 10));
    saveAt("Across", inMonth(4, 30, 23), inMonth(5, 1, 1));
    saveAt("May", inMonth(5, 5, 9), inMonth(5, 5, 10));
    state.sessionsMonth.assign(inMonth(4, 15));
    page.open();
    EXPECT_EQ(page.month(), "April 2025");
    EXPECT_EQ(labels(page), (QStringList{"Across", "April"}));
    page.clearMonth();
    EXPECT_EQ(page.month(), "");
    EXPECT_EQ(page.rows()->rowCount(), 3);
}

TEST_F(SessionsBridgeTest, AListInADashboardIgnoresTheMonth)
{
    save("Design");
    state.sessionsMonth.assign(inMonth(1, 1));
    dashboard.setClientID(aster);
    dashboard.open();
    EXPECT_EQ(labels(dashboard), QStringList{"Design"});
    EXPECT_EQ(dashboard.month(), "");
    EXPECT_EQ(dashboard.title(), "Sessions");
}

TEST_F(SessionsBridgeTest, AListInADashboardShowsTenMoreEachTime)
{
    for (int number = 0; number < 12; ++number) {
        save("Session " + std::to_string(number), number + 1.0);
    }
    dashboard.setClientID(aster);
    dashboard.open();
    EXPECT_EQ(dashboard.rows()->rowCount(), 10);
    EXPECT_EQ(dashboard.countText(), "12 sessions");
    EXPECT_TRUE(dashboard.offersMore());
    dashboard.showMore();
    EXPECT_EQ(dashboard.rows()->rowCount(), 12);
    EXPECT_FALSE(dashboard.offersMore());
}

TEST_F(SessionsBridgeTest, ClearingTheSearchShowsTheFirstTenAgain)
{
    for (int number = 0; number < 12; ++number) {
        save("Session", number + 1.0);
    }
    dashboard.setClientID(aster);
    dashboard.open();
    dashboard.setSearch("sess");
    dashboard.showMore();
    dashboard.setSearch("");
    EXPECT_EQ(dashboard.rows()->rowCount(), 10);
}

TEST_F(SessionsBridgeTest, APageShowsAllSessions)
{
    for (int number = 0; number < 12; ++number) {
        save("Session", number + 1.0);
    }
    page.open();
    EXPECT_EQ(page.rows()->rowCount(), 12);
    EXPECT_FALSE(page.offersMore());
}

TEST_F(SessionsBridgeTest, AnotherClientClearsTheSearch)
{
    save("Design");
    page.open();
    page.setSearch("nothing");
    state.selectedClient.assign(aster);
    EXPECT_EQ(page.search(), "");
    EXPECT_EQ(labels(page), QStringList{"Design"});
}

TEST_F(SessionsBridgeTest, ASecondPressOnAColumnTurnsTheOrderRound)
{
    save("Short", 3, 0.25);
    save("Long", 5, 1.0);
    page.open();
    sortBy(SessionSortField::duration);
    EXPECT_EQ(labels(page), (QStringList{"Long", "Short"}));
    sortBy(SessionSortField::duration);
    EXPECT_EQ(labels(page), (QStringList{"Short", "Long"}));
    sortBy(SessionSortField::title);
    EXPECT_EQ(labels(page), (QStringList{"Long", "Short"}));
    page.sortBy(99);
    EXPECT_TRUE(page.titleColumn().isActive);
}

TEST_F(SessionsBridgeTest, OpeningAgainBeginsWithTheFirstCriteria)
{
    save("Design");
    page.open();
    page.setSearch("nothing");
    sortBy(SessionSortField::title);
    page.close();
    page.open();
    EXPECT_EQ(page.search(), "");
    EXPECT_TRUE(page.dateColumn().isActive);
    EXPECT_EQ(page.rows()->rowCount(), 1);
}

TEST_F(SessionsBridgeTest, ASaveFromElsewhereInsertsItsRowAlone)
{
    save("Old", 20);
    page.open();
    const QSignalSpy resets(page.rows(), &QAbstractItemModel::modelReset);
    const QSignalSpy anew(&page, &SessionsBridge::shownAnew);
    save("New", 10);
    EXPECT_EQ(labels(page), (QStringList{"New", "Old"}));
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(anew.count(), 0);
}

TEST_F(SessionsBridgeTest, ACheckpointLeavesTheRowsAlone)
{
    save("Design");
    start("Review");
    page.open();
    const KestryCore::TimeEntry* before = page.rows()->entry(0);
    world.scheduler.advance(15);
    store.checkpoint(world.now());
    world.scheduler.turn();
    EXPECT_EQ(page.rows()->entry(0), before);
}

TEST_F(SessionsBridgeTest, TheSessionInProgressTicksOnceASecond)
{
    start("Review");
    page.open();
    EXPECT_EQ(page.active().label, "Review");
    EXPECT_EQ(page.active().detail, "Aster Studio · Website");
    EXPECT_EQ(page.active().state, "Live");
    const QSignalSpy ticks(&page, &SessionsBridge::ticked);
    const QSignalSpy changes(&page, &SessionsBridge::changed);
    world.scheduler.advance(3);
    EXPECT_EQ(ticks.count(), 3);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(page.elapsed(), "00:00:03");
}

TEST_F(SessionsBridgeTest, TheValueOfTheSessionInProgressGrows)
{
    start("Review");
    page.open();
    world.scheduler.advance(1800);
    EXPECT_EQ(page.activeValue(), "$50.00");
    EXPECT_EQ(page.activeSpoken(), "30 minutes, $50.00");
}

TEST_F(SessionsBridgeTest, NothingTicksWhilePausedOrClosed)
{
    start("Review");
    page.open();
    world.scheduler.advance(1);
    commander.pauseOrResume();
    world.scheduler.turn();
    EXPECT_EQ(page.active().state, "Paused");
    EXPECT_TRUE(world.scheduler.isIdle());
    commander.pauseOrResume();
    world.scheduler.turn();
    page.close();
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(SessionsBridgeTest, ASessionThatHasJustBegunComesIntoItsMonth)
{
    state.sessionsMonth.assign(world.now());
    page.open();
    start("Review");
    EXPECT_FALSE(page.showsActive());
    world.scheduler.advance(1);
    EXPECT_TRUE(page.showsActive());
    EXPECT_EQ(page.countText(), "1 sessions");
}

TEST_F(SessionsBridgeTest, ARowOpensItsForm)
{
    const Uuid id = save("Design");
    page.open();
    page.edit(7);
    EXPECT_FALSE(state.editor->has_value());
    page.edit(0);
    EXPECT_EQ((*state.editor)->id(), "entry-" + id.text());
    page.addTime();
    EXPECT_EQ((*state.editor)->id(), "entry-new");
}

TEST_F(SessionsBridgeTest, TheSessionInProgressOpensItsForm)
{
    start("Review");
    page.open();
    page.editActive();
    EXPECT_EQ((*state.editor)->id(), "active-" + store.data()->active->id.text());
}

TEST_F(SessionsBridgeTest, ASessionIsDeletedOnceThatIsConfirmed)
{
    save("Old", 20);
    save("New", 10);
    page.open();
    page.askToDelete(1);
    EXPECT_TRUE(page.isAskingToDelete());
    EXPECT_EQ(store.data()->entries.size(), 2U);
    page.confirmDelete();
    world.scheduler.turn();
    EXPECT_FALSE(page.isAskingToDelete());
    EXPECT_EQ(labels(page), QStringList{"New"});
}

TEST_F(SessionsBridgeTest, ACancelledDeletionDeletesNothing)
{
    save("Design");
    page.open();
    page.askToDelete(0);
    page.cancelDelete();
    page.confirmDelete();
    EXPECT_FALSE(page.isAskingToDelete());
    EXPECT_EQ(store.data()->entries.size(), 1U);
}

TEST_F(SessionsBridgeTest, TheQuestionGoesWithASessionThatWasDeletedElsewhere)
{
    const Uuid id = save("Design");
    page.open();
    page.askToDelete(0);
    store.deleteEntry(id);
    world.scheduler.turn();
    EXPECT_FALSE(page.isAskingToDelete());
}

TEST_F(SessionsBridgeTest, ADeletionThatFailsIsToldAndChangesNothing)
{
    save("Design");
    page.open();
    world.damageLedger();
    page.askToDelete(0);
    page.confirmDelete();
    world.scheduler.turn();
    EXPECT_TRUE(store.errorMessage()->has_value());
    EXPECT_EQ(labels(page), QStringList{"Design"});
}

TEST_F(SessionsBridgeTest, TheMenuOfARowEditsAndDeletes)
{
    const Uuid id = save("Design");
    page.open();
    page.openMenu(0, &item);
    ASSERT_EQ(menu.size(), 2U);
    EXPECT_EQ(menu[0].text, "Edit session");
    menu[0].action();
    EXPECT_EQ((*state.editor)->id(), "entry-" + id.text());
    EXPECT_EQ(menu[1].text, "Delete session");
    menu[1].action();
    EXPECT_TRUE(page.isAskingToDelete());
}

TEST_F(SessionsBridgeTest, TheMenuOfASessionThatHasGoneDeletesNothing)
{
    const Uuid id = save("Design");
    page.open();
    page.openMenu(0, &item);
    store.deleteEntry(id);
    world.scheduler.turn();
    ASSERT_EQ(menu.size(), 2U);
    menu[1].action();
    EXPECT_FALSE(page.isAskingToDelete());
}

TEST_F(SessionsBridgeTest, TheMenuOfTheSessionInProgressCommandsIt)
{
    start("Review");
    page.open();
    page.openActiveMenu(&item);
    ASSERT_EQ(menu.size(), 3U);
    EXPECT_EQ(menu[0].text, "Edit session");
    EXPECT_EQ(menu[1].text, "Pause session");
    menu[1].action();
    EXPECT_TRUE(store.data()->active->isPaused());
    page.openActiveMenu(&item);
    EXPECT_EQ(menu[1].text, "Resume session");
    EXPECT_EQ(menu[2].text, "Stop and save session");
    menu[2].action();
    EXPECT_FALSE(store.data()->active);
}

TEST_F(SessionsBridgeTest, TypingLeadsToTheNextRowThatBeginsSo)
{
    save("Élan", 5);
    save("Draft", 4);
    save("Design", 3);
    page.open();
    EXPECT_EQ(page.typeAhead("d", -1), 0);
    EXPECT_EQ(page.typeAhead("r", 0), 1);
    world.scheduler.advance(2);
    EXPECT_EQ(page.typeAhead("D", 1), 0);
    world.scheduler.advance(2);
    EXPECT_EQ(page.typeAhead("é", 0), 2);
    world.scheduler.advance(2);
    EXPECT_EQ(page.typeAhead("x", 0), -1);
}

TEST_F(SessionsBridgeTest, ABlankAloneLeadsNowhere)
{
    save("Design");
    page.open();
    EXPECT_EQ(page.typeAhead(" ", 0), -1);
}

} // namespace
} // namespace Kestry
