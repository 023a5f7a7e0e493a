#include "SessionList.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include "NewestSessions.h"
#include "SessionListFixture.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;

/// The newest hundred, and the session in progress.
class AllSessions final : public SessionSelection {
public:
    SessionsModel::Entries sessions(const KestryCore::LedgerData& ledger) override
    {
        return KestryCore::newestSessionsOfClient(ledger, ledger.clients.front().id, 100);
    }
    Active active(const KestryCore::LedgerData& /*ledger*/, KestryCore::Date /*until*/) override
    {
        return Active::shown;
    }
};

class SessionListTest : public SessionListFixture {
protected:
    void open() { list.open("all"); }

    AllSessions selection;
    SessionList list{worldOfList(), selection};
    QAbstractItemModelTester tester{
        list.rows(), QAbstractItemModelTester::FailureReportingMode::Fatal};
    QQuickItem item;
};

TEST_F(SessionListTest, AListIsEmptyWithoutAnyRow)
{
    open();
    EXPECT_TRUE(list.isEmpty());
    const Uuid id = save("Design");
    EXPECT_FALSE(list.isEmpty());
    store.deleteEntry(id);
    world.scheduler.turn();
    EXPECT_TRUE(list.isEmpty());
    start("Review");
    EXPECT_FALSE(list.isEmpty());
}

TEST_F(SessionListTest, ASaveFromElsewhereInsertsItsRowAlone)
{
    save("Old", 20);
    open();
    const QSignalSpy resets(list.rows(), &QAbstractItemModel::modelReset);
    const QSignalSpy anew(&list, &SessionList::shownAnew);
    save("New", 10);
    EXPECT_EQ(labels(list), (QStringList{"New", "Old"}));
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(anew.count(), 0);
}

TEST_F(SessionListTest, ACheckpointLeavesTheRowsAlone)
{
    save("Design");
    start("Review");
    open();
    const KestryCore::TimeEntry* before = list.rows()->entry(0);
    world.scheduler.advance(15);
    store.checkpoint(world.now());
    world.scheduler.turn();
    EXPECT_EQ(list.rows()->entry(0), before);
}

TEST_F(SessionListTest, TheSessionInProgressTicksOnceASecond)
{
    start("Review");
    open();
    EXPECT_EQ(list.active().label, "Review");
    EXPECT_EQ(list.active().detail, "Aster Studio · Website");
    EXPECT_EQ(list.active().state, "Live");
    const QSignalSpy ticks(&list, &SessionList::ticked);
    const QSignalSpy changes(&list, &SessionList::changed);
    world.scheduler.advance(3);
    EXPECT_EQ(ticks.count(), 3);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(list.elapsed(), "00:00:03");
}

TEST_F(SessionListTest, TheValueOfTheSessionInProgressGrows)
{
    start("Review");
    open();
    world.scheduler.advance(1800);
    EXPECT_EQ(list.activeValue(), "$50.00");
    EXPECT_EQ(list.activeSpoken(), "30 minutes, $50.00");
}

TEST_F(SessionListTest, ANonbillableSessionInProgressSaysSoInPlaceOfAnAmount)
{
    start("Review");
    KestryCore::StoreOptions options;
    options.demoLedger = *store.data();
    options.demoLedger->active->isBillable = false;
    KestryCore::TimeStore other(world.storePlatform(), options);
    SessionList there(worldOf(other), selection);
    there.open("all");
    world.scheduler.advance(1800);
    EXPECT_EQ(there.activeValue(), "Nonbillable");
    EXPECT_EQ(there.activeSpoken(), "30 minutes, Nonbillable");
}

TEST_F(SessionListTest, ASessionInProgressWithoutARateSaysThatItIsNotSet)
{
    const Uuid shop = store.addProject(aster, {"Shop", 0, false});
    store.start(shop, "Review", world.now());
    open();
    EXPECT_EQ(list.activeValue(), "Rate not set");
}

TEST_F(SessionListTest, NothingTicksWhilePausedOrClosed)
{
    start("Review");
    open();
    world.scheduler.advance(1);
    commander.pauseOrResume();
    world.scheduler.turn();
    EXPECT_EQ(list.active().state, "Paused");
    EXPECT_TRUE(world.scheduler.isIdle());
    commander.pauseOrResume();
    world.scheduler.turn();
    list.close();
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(SessionListTest, ARowOpensItsForm)
{
    const Uuid id = save("Design");
    open();
    list.edit(7);
    EXPECT_FALSE(state.editor->has_value());
    list.edit(0);
    EXPECT_EQ((*state.editor)->id(), "entry-" + id.text());
}

TEST_F(SessionListTest, TheSessionInProgressOpensItsForm)
{
    start("Review");
    open();
    list.editActive();
    EXPECT_EQ((*state.editor)->id(), "active-" + store.data()->active->id.text());
}

TEST_F(SessionListTest, TheMenuOfARowEditsAndDeletes)
{
    const Uuid id = save("Design");
    open();
    list.openMenu(0, &item);
    ASSERT_EQ(menu.size(), 2U);
    EXPECT_EQ(menu[0].text, "Edit session");
    menu[0].action();
    EXPECT_EQ((*state.editor)->id(), "entry-" + id.text());
    EXPECT_EQ(menu[1].text, "Delete session");
    menu[1].action();
    EXPECT_TRUE(deletion.isAsking());
}

TEST_F(SessionListTest, TheMenuOfTheSessionInProgressCommandsIt)
{
    start("Review");
    open();
    list.openActiveMenu(&item);
    ASSERT_EQ(menu.size(), 3U);
    EXPECT_EQ(menu[0].text, "Edit session");
    EXPECT_EQ(menu[1].text, "Pause session");
    menu[1].action();
    EXPECT_TRUE(store.data()->active->isPaused());
    list.openActiveMenu(&item);
    EXPECT_EQ(menu[1].text, "Resume session");
    EXPECT_EQ(menu[2].text, "Stop and save session");
    menu[2].action();
    EXPECT_FALSE(store.data()->active);
}

TEST_F(SessionListTest, TypingLeadsToTheNextRowThatBeginsSo)
{
    save("Élan", 5);
    save("Draft", 4);
    save("Design", 3);
    open();
    EXPECT_EQ(list.typeAhead("d", -1), 0);
    EXPECT_EQ(list.typeAhead("r", 0), 1);
    world.scheduler.advance(2);
    EXPECT_EQ(list.typeAhead("D", 1), 0);
    world.scheduler.advance(2);
    EXPECT_EQ(list.typeAhead("é", 0), 2);
    world.scheduler.advance(2);
    EXPECT_EQ(list.typeAhead("x", 0), -1);
}

TEST_F(SessionListTest, ABlankAloneLeadsNowhere)
{
    save("Design");
    open();
    EXPECT_EQ(list.typeAhead(" ", 0), -1);
}

} // namespace
} // namespace Kestry
