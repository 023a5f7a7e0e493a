#include "SessionsBridge.h"

#include <QAbstractItemModelTester>

#include "SessionListFixture.h"

namespace Kestry {
namespace {

using KestryCore::SessionListPlace;
using KestryCore::SessionSortField;
using KestryCore::Uuid;

class SessionsBridgeTest : public SessionListFixture {
protected:
    void sortBy(SessionSortField field) { page.sortBy(static_cast<int>(field)); }
    [[nodiscard]] static QStringList labels(SessionsBridge& table)
    {
        return SessionListFixture::labels(*table.list());
    }

    SessionsBridge page{worldOfList(), SessionListPlace::page};
    SessionsBridge dashboard{worldOfList(), SessionListPlace::dashboard};
    QAbstractItemModelTester tester{
        page.list()->rows(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(SessionsBridgeTest, APageThatIsNotOpenHasNoRows)
{
    save("Design");
    EXPECT_EQ(page.list()->rows()->rowCount(), 0);
    page.open();
    EXPECT_EQ(labels(page), QStringList{"Design"});
    page.close();
    EXPECT_EQ(page.list()->rows()->rowCount(), 0);
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
    EXPECT_TRUE(page.list()->showsActive());
    EXPECT_EQ(page.list()->rows()->rowCount(), 0);
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
    EXPECT_EQ(page.list()->rows()->rowCount(), 3);
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
    EXPECT_EQ(dashboard.list()->rows()->rowCount(), 10);
    EXPECT_EQ(dashboard.countText(), "12 sessions");
    EXPECT_TRUE(dashboard.offersMore());
    dashboard.showMore();
    EXPECT_EQ(dashboard.list()->rows()->rowCount(), 12);
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
    EXPECT_EQ(dashboard.list()->rows()->rowCount(), 10);
}

TEST_F(SessionsBridgeTest, APageShowsAllSessions)
{
    for (int number = 0; number < 12; ++number) {
        save("Session", number + 1.0);
    }
    page.open();
    EXPECT_EQ(page.list()->rows()->rowCount(), 12);
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
    EXPECT_EQ(page.list()->rows()->rowCount(), 1);
}

TEST_F(SessionsBridgeTest, ASessionThatHasJustBegunComesIntoItsMonth)
{
    state.sessionsMonth.assign(world.now());
    page.open();
    start("Review");
    EXPECT_FALSE(page.list()->showsActive());
    world.scheduler.advance(1);
    EXPECT_TRUE(page.list()->showsActive());
    EXPECT_EQ(page.countText(), "1 sessions");
}

TEST_F(SessionsBridgeTest, ATableThatIsClosedTakesItsQuestionAlong)
{
    save("Design");
    page.open();
    page.list()->askToDelete(0);
    page.close();
    EXPECT_FALSE(deletion.isAsking());
}

TEST_F(SessionsBridgeTest, TimeIsAddedInAForm)
{
    page.open();
    page.addTime();
    EXPECT_EQ((*state.editor)->id(), "entry-new");
}

TEST_F(SessionsBridgeTest, OnlyOtherSessionsAreShownAnew)
{
    page.open();
    const QString first = page.list()->revealID();
    save("Design");
    EXPECT_EQ(page.list()->revealID(), first);
    state.selectedClient.assign(aster);
    EXPECT_NE(page.list()->revealID(), first);
}

} // namespace
} // namespace Kestry
