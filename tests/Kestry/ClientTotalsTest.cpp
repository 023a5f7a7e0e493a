#include "ClientTotals.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "ApplicationWorld.h"
#include "ArbitraryLedger.h"
#include "StandInCalendar.h"
#include "ZoneCalendar.h"

namespace Kestry {
namespace {

using KestryCore::ClientMetrics;
using KestryCore::Date;
using KestryCore::LedgerData;
using KestryCore::Uuid;

const KestryCore::ZoneCalendar& berlinCalendar()
{
    static const KestryCore::ZoneCalendar calendar("Europe/Berlin", "en_US");
    return calendar;
}

KestryCore::StoreOptions openWith(const LedgerData& ledger)
{
    KestryCore::StoreOptions options;
    options.demoLedger = ledger;
    options.runningSession = KestryCore::RunningSessionPolicy::keep;
    return options;
}

class ClientTotalsTest : public ::testing::Test {
protected:
    ClientTotalsTest() { aster = addClient(store, "Aster"); }

    void work(const Uuid& client, double seconds)
    {
        store.start(client, std::nullopt, "", world.now());
        world.scheduler.advance(seconds);
        store.stop(world.now());
    }
    [[nodiscard]] ClientMetrics metrics() { return totals.metrics(aster, world.now(), calendar); }
    [[nodiscard]] ClientMetrics plain() const
    {
        return KestryCore::clientMetrics(*store.data(), aster, world.now(), calendar);
    }
    /// How often it asks which month a date is in, which each walk through the sessions does.
    [[nodiscard]] int monthsAskedBy(const std::function<void()>& question)
    {
        int asked = 0;
        calendar.monthAnswer = [&](Date date) {
            ++asked;
            return berlinCalendar().month(date);
        };
        question();
        calendar.monthAnswer = {};
        return asked;
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), ApplicationWorld::inMemory()};
    KestryCore::StandInCalendar calendar{berlinCalendar()};
    ClientTotals totals{store};
    Uuid aster;
};

TEST_F(ClientTotalsTest, FollowSavedSessionsAndTheOneInProgress)
{
    work(aster, 3600);
    EXPECT_EQ(metrics().seconds, 3600.0);
    work(aster, 1800);
    EXPECT_EQ(metrics().seconds, 5400.0);
    store.start(aster, std::nullopt, "", world.now());
    world.scheduler.advance(60);
    EXPECT_EQ(metrics().seconds, 5460.0);
    store.pause(world.now());
    world.scheduler.advance(60);
    EXPECT_EQ(metrics().seconds, 5460.0);
    EXPECT_EQ(metrics(), plain());
}

TEST_F(ClientTotalsTest, LeaveOutTheSessionOfAnotherClient)
{
    const Uuid birch = addClient(store, "Birch");
    store.start(birch, std::nullopt, "", world.now());
    world.scheduler.advance(60);
    EXPECT_FALSE(totals.hasSession(aster));
    EXPECT_EQ(metrics(), ClientMetrics{});
    EXPECT_TRUE(totals.hasSession(birch));
    EXPECT_EQ(totals.metrics(birch, world.now(), calendar).seconds, 60.0);
}

TEST_F(ClientTotalsTest, CountCalendarMonthsAlsoWhereNothingWasDone)
{
    work(aster, 3600);
    EXPECT_EQ(metrics().monthCount, 1);
    world.scheduler.advance(70 * 86400.0);
    EXPECT_EQ(metrics().monthCount, 3);
    EXPECT_EQ(metrics().monthSeconds, 0.0);
    EXPECT_EQ(metrics().averageMonthlySeconds, 1200.0);
    EXPECT_EQ(metrics(), plain());
}

TEST_F(ClientTotalsTest, WalkThroughSavedSessionsOnceAndNotAtEachTick)
{
    work(aster, 3600);
    store.start(aster, std::nullopt, "", world.now());
    const int first = monthsAskedBy([this] { EXPECT_EQ(metrics().seconds, 3600.0); });
    world.scheduler.advance(1);
    const int tick = monthsAskedBy([this] { EXPECT_EQ(metrics().seconds, 3601.0); });
    EXPECT_LT(tick, first);
    store.checkpoint(world.now()); // changes the ledger, and no saved session
    EXPECT_EQ(monthsAskedBy([this] { EXPECT_EQ(metrics().seconds, 3601.0); }), tick);
}

TEST_F(ClientTotalsTest, AnotherZoneMovesHoursBetweenMonths)
{
    const Date monthEnd = berlinCalendar().month(world.now())->end;
    KestryCore::NewEntry entry;
    entry.clientID = aster;
    entry.start = monthEnd + -1800.0;
    entry.duration = 1800.0;
    world.scheduler.advance(monthEnd - world.now() + 3600.0);
    store.addEntry(entry);
    EXPECT_EQ(metrics().monthSeconds, 0.0);
    totals.forgetSaved();
    const KestryCore::ZoneCalendar tokyo("Asia/Tokyo", "en_US");
    EXPECT_EQ(totals.metrics(aster, world.now(), tokyo).monthSeconds, 1800.0);
}

TEST_F(ClientTotalsTest, TimeByWhichTheClockHasJumpedIsNotCounted)
{
    store.start(aster, std::nullopt, "", world.now());
    world.scheduler.advance(10);
    world.clockAhead = 7200;
    EXPECT_EQ(metrics().seconds, 10.0);
}

RC_GTEST_PROP(AnyClientTotals, AreToTheLastBitThoseOfTheWholeLedger, ())
{
    const LedgerData ledger = *KestryCore::arbitraryLedger();
    ApplicationWorld world;
    const KestryCore::TimeStore store({.files = world.files}, openWith(ledger));
    ClientTotals totals(store);
    Date now = ledger.active ? ledger.active->checkpointAt : ApplicationWorld::morning;
    for (int second = 0; second < 8; ++second) {
        for (const KestryCore::Client& client : ledger.clients) {
            RC_ASSERT(totals.metrics(client.id, now, berlinCalendar())
                == KestryCore::clientMetrics(*store.data(), client.id, now, berlinCalendar()));
        }
        now = now + *rc::gen::element(1.0, 0.37, 86'400.0, 3'000'000.0);
    }
}

} // namespace
} // namespace Kestry
