#include "SessionFacts.h"

#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "ZoneCalendar.h"

namespace Kestry {
namespace {

using KestryCore::Date;
using KestryCore::Uuid;

constexpr double hour = 3600.0;

/// Counts how often it is asked for the day after another, which a walk through a month does.
class CountingCalendar final : public KestryCore::Calendar {
public:
    [[nodiscard]] std::optional<KestryCore::MonthInterval> month(Date date) const override
    {
        ++monthsAsked;
        return calendar.month(date);
    }
    [[nodiscard]] std::optional<int> daysInMonth(Date date) const override
    {
        return calendar.daysInMonth(date);
    }
    [[nodiscard]] int dayOfMonth(Date date) const override { return calendar.dayOfMonth(date); }
    [[nodiscard]] int monthsBetween(Date from, Date to) const override
    {
        return calendar.monthsBetween(from, to);
    }
    [[nodiscard]] Date startOfDay(Date date) const override { return calendar.startOfDay(date); }
    [[nodiscard]] std::optional<Date> startOfNextDay(Date date) const override
    {
        return calendar.startOfNextDay(date);
    }

    KestryCore::ZoneCalendar calendar{"UTC", "en_US"};
    mutable int monthsAsked = 0;
};

class SessionFactsTest : public ::testing::Test {
protected:
    static constexpr const char* plain =
        "Billable earnings across all clients this month, including this session.";
    static constexpr const char* withUnpriced =
        "Billable earnings across all clients, including this session. Time without a rate is "
        "excluded.";

    Uuid addPricedClient(KestryCore::Cents rateCents, bool rateIsKnown = true)
    {
        KestryCore::NewClient client;
        client.name = "Aster";
        client.rateCents = rateCents;
        client.rateIsKnown = rateIsKnown;
        client.projectsEnabled = false;
        return store.addClient(client);
    }
    void saveSession(const Uuid& client, double seconds)
    {
        store.start(client, std::nullopt, "", world.now());
        world.scheduler.advance(seconds);
        store.stop(world.now());
    }
    [[nodiscard]] SessionFacts::Month month() { return facts.month(world.now(), calendar); }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), ApplicationWorld::inMemory()};
    CountingCalendar calendar;
    SessionFacts facts{store, KestryCore::MoneyText("en_US")};
};

TEST_F(SessionFactsTest, ASessionIsWorthItsHoursAtItsRate)
{
    store.start(addPricedClient(15000), std::nullopt, "", world.now());
    EXPECT_EQ(facts.sessionValue(world.now()), "$0.00");
    EXPECT_EQ(facts.sessionValue(world.now() + 1.5 * hour), "$225.00");
}

TEST_F(SessionFactsTest, ANonbillableSessionSaysSoInPlaceOfAnAmount)
{
    KestryCore::LedgerData ledger = *store.data();
    store.start(addPricedClient(15000), std::nullopt, "", world.now());
    ledger = *store.data();
    ledger.active->isBillable = false;
    KestryCore::StoreOptions options;
    options.demoLedger = ledger;
    const KestryCore::TimeStore other(world.storePlatform(), options);
    const SessionFacts otherFacts(other, KestryCore::MoneyText("en_US"));
    EXPECT_EQ(otherFacts.sessionValue(world.now() + hour), "Nonbillable");
}

TEST_F(SessionFactsTest, ASessionWithoutARateSaysThatItIsNotSet)
{
    store.start(addPricedClient(0, false), std::nullopt, "", world.now());
    EXPECT_EQ(facts.sessionValue(world.now() + hour), "Rate not set");
}

TEST_F(SessionFactsTest, WithoutASessionThereIsNoValue)
{
    EXPECT_EQ(facts.sessionValue(world.now()), "");
    EXPECT_EQ(month().earned, "$0.00");
}

TEST_F(SessionFactsTest, TheMonthCountsSavedSessionsAndTheOneInProgress)
{
    const Uuid client = addPricedClient(10000);
    saveSession(client, 2 * hour);
    EXPECT_EQ(month().earned, "$200.00");
    store.start(client, std::nullopt, "", world.now());
    world.scheduler.advance(hour / 2);
    EXPECT_EQ(month(), (SessionFacts::Month{"$250.00", plain}));
}

TEST_F(SessionFactsTest, TimeWithoutARateIsNamedWhereverItStands)
{
    const Uuid unpriced = addPricedClient(0, false);
    store.start(unpriced, std::nullopt, "", world.now());
    world.scheduler.advance(hour);
    EXPECT_EQ(month().explanation, withUnpriced);
    store.stop(world.now());
    EXPECT_EQ(month(), (SessionFacts::Month{"$0.00", withUnpriced}));
}

TEST_F(SessionFactsTest, ANewMonthBeginsAtNothing)
{
    saveSession(addPricedClient(10000), hour);
    EXPECT_EQ(month().earned, "$100.00");
    world.scheduler.advance(32 * 24 * hour);
    EXPECT_EQ(month().earned, "$0.00");
}

TEST_F(SessionFactsTest, ASessionAcrossMidnightOfTheFirstCountsItsPartOfTheMonth)
{
    const Uuid client = addPricedClient(10000);
    const Date firstOfNext = calendar.calendar.month(world.now())->end;
    store.start(client, std::nullopt, "", world.now());
    EXPECT_EQ(facts.month(firstOfNext + 2 * hour, calendar).earned, "$200.00");
}

TEST_F(SessionFactsTest, SavedSessionsAreNotCountedAgainEverySecond)
{
    const Uuid client = addPricedClient(10000);
    saveSession(client, hour);
    store.start(client, std::nullopt, "", world.now());
    EXPECT_EQ(month().earned, "$100.00");
    const int afterFirst = calendar.monthsAsked;
    EXPECT_EQ(month().earned, "$100.00");
    const int ofSessionAlone = calendar.monthsAsked - afterFirst;
    store.checkpoint(world.now()); // changes the ledger, and no saved session
    EXPECT_EQ(month().earned, "$100.00");
    EXPECT_EQ(calendar.monthsAsked - afterFirst, 2 * ofSessionAlone);
}

TEST_F(SessionFactsTest, TheMonthIsToTheCentWhatTheReportsSay)
{
    // Half a cent lies between the sum over the days and that of saved sessions and the last one.
    const Uuid client = addPricedClient(100);
    saveSession(client, 144);
    world.scheduler.advance(24 * hour);
    saveSession(client, 1044);
    store.start(client, std::nullopt, "", world.now());
    world.scheduler.advance(522);
    const double cents = KestryCore::metrics(*store.data(), world.now(), calendar).earnedCents;
    EXPECT_EQ(KestryCore::MoneyText("en_US").money(cents), "$0.47");
    EXPECT_EQ(month().earned, "$0.47");
}

TEST_F(SessionFactsTest, TimeByWhichTheClockHasJumpedIsWorthNothing)
{
    store.start(addPricedClient(15000), std::nullopt, "", world.now());
    world.scheduler.advance(10);
    world.clockAhead = 2 * hour;
    EXPECT_EQ(facts.sessionValue(world.now()), "$0.42");
    EXPECT_EQ(month().earned, "$0.42");
}

} // namespace
} // namespace Kestry
