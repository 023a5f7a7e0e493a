#include "RecentSessions.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "SessionListFixture.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;

class RecentSessionsTest : public SessionListFixture {
protected:
    void showMonth(int month, bool showsActive = false)
    {
        const RecentSessions::OfMonth ofMonth{*calendar->month(inMonth(month, 15)), showsActive};
        recent.show(ofMonth, QString::number(month));
    }
    void showClient(const Uuid& client)
    {
        recent.show(RecentSessions::OfClient{client}, QString::fromStdString(client.text()));
    }
    SessionList& list() { return recent.list(); }

    RecentSessions recent{worldOfList()};
};

TEST_F(RecentSessionsTest, AMonthShowsItsFiveNewest)
{
    for (int day = 1; day <= 7; ++day) {
        saveAt("Day " + std::to_string(day), inMonth(4, day, 9), inMonth(4, day, 10));
    }
    saveAt("May", inMonth(5, 1, 9), inMonth(5, 1, 10));
    showMonth(4);
    EXPECT_EQ(labels(list()), (QStringList{"Day 7", "Day 6", "Day 5", "Day 4", "Day 3"}));
}

TEST_F(RecentSessionsTest, ASessionAcrossTwoMonthsIsInBoth)
{
    saveAt("Across", inMonth(4, 30, 23), inMonth(5, 1, 1));
    showMonth(4);
    EXPECT_EQ(labels(list()), QStringList{"Across"});
    showMonth(5);
    EXPECT_EQ(labels(list()), QStringList{"Across"});
    showMonth(6);
    EXPECT_TRUE(list().isEmpty());
}

TEST_F(RecentSessionsTest, ASessionThatEndsAsTheMonthBeginsIsNotInIt)
{
    saveAt("April", inMonth(4, 30, 22), inMonth(5, 1));
    showMonth(5);
    EXPECT_TRUE(list().isEmpty());
}

TEST_F(RecentSessionsTest, OnlyTheMonthThatIsNotOverShowsTheSessionInProgress)
{
    start("Review");
    showMonth(9, true);
    EXPECT_TRUE(list().showsActive());
    showMonth(8);
    EXPECT_FALSE(list().showsActive());
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(RecentSessionsTest, AClientShowsItsFiveNewest)
{
    const Uuid birch = addClient(store, "Birch");
    const Uuid app = addProject(store, birch, "App");
    for (int hours = 1; hours <= 6; ++hours) {
        save("Session " + std::to_string(hours), hours);
    }
    saveOn(app, "Other", inMonth(4, 1, 9), inMonth(4, 1, 10));
    showClient(aster);
    EXPECT_EQ(labels(list()),
        (QStringList{"Session 1", "Session 2", "Session 3", "Session 4", "Session 5"}));
    showClient(birch);
    EXPECT_EQ(labels(list()), QStringList{"Other"});
}

TEST_F(RecentSessionsTest, TheSessionInProgressIsShownToItsClientAlone)
{
    const Uuid birch = addClient(store, "Birch");
    start("Review");
    showClient(birch);
    EXPECT_FALSE(list().showsActive());
    EXPECT_TRUE(world.scheduler.isIdle());
    showClient(aster);
    EXPECT_TRUE(list().showsActive());
}

TEST_F(RecentSessionsTest, AListThatIsOpenKeepsItsPlaceUntilItIsOfSomethingElse)
{
    save("Design");
    showClient(aster);
    const QSignalSpy anew(&list(), &SessionList::shownAnew);
    showClient(aster);
    EXPECT_EQ(anew.count(), 0);
    showMonth(9);
    EXPECT_EQ(anew.count(), 1);
}

TEST_F(RecentSessionsTest, AListThatIsClosedHasNoRows)
{
    save("Design");
    showClient(aster);
    recent.close();
    EXPECT_TRUE(list().isEmpty());
    save("Review");
    EXPECT_TRUE(world.scheduler.isIdle());
    EXPECT_EQ(list().rows()->rowCount(), 0);
}

} // namespace
} // namespace Kestry
