#include "SessionQuery.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "ArbitraryLedger.h"
#include "SampleLedger.h"
#include "ZoneCalendar.h"

namespace KestryCore {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A calendar that reaches no month.
class NoMonths final : public Calendar {
public:
    std::optional<MonthInterval> month(Date /*date*/) const override { return std::nullopt; }
    std::optional<int> daysInMonth(Date /*date*/) const override { return std::nullopt; }
    int dayOfMonth(Date /*date*/) const override { return 1; }
    int monthsBetween(Date /*from*/, Date /*to*/) const override { return 0; }
    Date startOfDay(Date date) const override { return date; }
    std::optional<Date> startOfNextDay(Date /*date*/) const override { return std::nullopt; }
};

/// Two clients with a project each, and numbered sessions; lists are their numbers.
class SessionLists : public testing::Test {
protected:
    SessionLists()
    {
        ledger.clients.append(Sample::client(2));
        Project other = Sample::project(2);
        other.clientID = Sample::clientID(2);
        ledger.projects.append(other);
        ledger.entries = {};
    }
    void add(unsigned number, Date start, unsigned project = 1)
    {
        TimeEntry entry = Sample::entry(number);
        entry.projectID = Sample::projectID(project);
        entry.spans = {{start, start + Sample::hour}};
        ledger.entries.append(entry);
    }
    void addSessions(unsigned count)
    {
        for (unsigned number = 1; number <= count; ++number) {
            add(number, at(number));
        }
    }
    static Date at(unsigned day, int month = 6)
    {
        return dateInUtc({{2026, month, static_cast<int>(day)}, 9});
    }
    SessionSource source() const { return {ledger, *calendar, order, sessionsMonth}; }
    std::vector<unsigned> list() const
    {
        std::vector<unsigned> numbers;
        for (const TimeEntry* entry : query.sessions(source())) {
            numbers.push_back(entry->id.bytes.back());
        }
        return numbers;
    }
    bool showsActive(Date now) const { return query.showsActive(source(), now); }

    LedgerData ledger = Sample::ledger();
    const ZoneCalendar zone{"Europe/Berlin", "de_DE"};
    const Calendar* calendar = &zone;
    const LocalizedOrder order{"de_DE"};
    std::optional<Date> sessionsMonth;
    SessionQuery query;
};

TEST_F(SessionLists, AnEmptyLedgerYieldsNothing)
{
    ledger = {};
    EXPECT_THAT(list(), IsEmpty());
    sessionsMonth = at(1);
    query.setSearch("a");
    query.setClientID(Sample::clientID());
    EXPECT_THAT(list(), IsEmpty());
    EXPECT_FALSE(showsActive(at(1)));
}

TEST_F(SessionLists, TheNewestComesFirst)
{
    addSessions(3);
    EXPECT_THAT(list(), ElementsAre(0x03, 0x02, 0x01));
}

TEST_F(SessionLists, TheyPointIntoTheLedger)
{
    addSessions(1);
    EXPECT_EQ(query.sessions(source()).front(), &ledger.entries.front());
}

TEST_F(SessionLists, ByTitleAnUntitledSessionStandsAtItsLabel)
{
    addSessions(4);
    const std::array titles{"Delta", "", "Cat", "cats"};
    for (unsigned number = 1; number <= titles.size(); ++number) {
        ledger.entries.modify(
            Sample::sessionID(number), [&](TimeEntry& entry) { entry.title = titles[number - 1]; });
    }
    query.setSort({SessionSortField::title, true});
    EXPECT_THAT(list(), ElementsAre(3, 2, 4, 1)); // Cat, Catalogue, cats, Delta
}

TEST_F(SessionLists, ThePageShowsTheSessionsOfTheMonth)
{
    add(1, at(30, 5));
    add(2, at(1));
    add(3, at(1, 7));
    sessionsMonth = at(15);
    EXPECT_THAT(list(), ElementsAre(2));
}

TEST_F(SessionLists, TheMonthIsThatOfTheCalendar)
{
    // 22:30 in UTC on the last of May is half past midnight in Berlin.
    add(1, dateInUtc({{2026, 5, 31}, 22, 30}));
    sessionsMonth = at(15);
    EXPECT_THAT(list(), ElementsAre(1));
    sessionsMonth = at(15, 5);
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(SessionLists, ASessionAcrossMidnightOfTheLastDayMatchesBothMonths)
{
    add(1, dateInUtc({{2026, 5, 31}, 21, 30}));
    sessionsMonth = at(15);
    EXPECT_THAT(list(), ElementsAre(1));
    sessionsMonth = at(15, 5);
    EXPECT_THAT(list(), ElementsAre(1));
}

TEST_F(SessionLists, AMonthThatTheCalendarDoesNotReachLeavesNothingOut)
{
    const NoMonths none;
    calendar = &none;
    addSessions(1);
    sessionsMonth = at(15, 5);
    EXPECT_THAT(list(), ElementsAre(1));
}

TEST_F(SessionLists, TheDashboardShowsAllSessionsOfItsClientWhateverTheMonth)
{
    add(1, at(30, 5));
    add(2, at(1));
    add(3, at(2), 2);
    sessionsMonth = at(15);
    query = SessionQuery(SessionListPlace::dashboard, Sample::clientID());
    EXPECT_THAT(list(), ElementsAre(2, 1));
}

TEST_F(SessionLists, ThePageMayBeOfOneClientInOneMonth)
{
    add(1, at(30, 5));
    add(2, at(1));
    add(3, at(2), 2);
    sessionsMonth = at(15);
    query.setClientID(Sample::clientID());
    EXPECT_THAT(list(), ElementsAre(2));
}

TEST_F(SessionLists, ThePageShowsAllThatItFinds)
{
    EXPECT_FALSE(query.embedded());
    EXPECT_EQ(query.shownCount(1000), 1000U);
    EXPECT_FALSE(query.offersMore(1000));
}

TEST_F(SessionLists, TheDashboardShowsTenAndThenTenMore)
{
    query = SessionQuery(SessionListPlace::dashboard, Sample::clientID());
    EXPECT_TRUE(query.embedded());
    EXPECT_EQ(query.shownCount(25), 10U);
    EXPECT_TRUE(query.offersMore(25));
    query.showMore();
    EXPECT_EQ(query.shownCount(25), 20U);
    query.showMore();
    EXPECT_EQ(query.shownCount(25), 25U);
    EXPECT_FALSE(query.offersMore(25));
}

TEST_F(SessionLists, WhatIsShownInFullOffersNoMore)
{
    query = SessionQuery(SessionListPlace::dashboard, Sample::clientID());
    EXPECT_FALSE(query.offersMore(0));
    EXPECT_EQ(query.shownCount(0), 0U);
    EXPECT_FALSE(query.offersMore(10));
    EXPECT_TRUE(query.offersMore(11));
}

TEST_F(SessionLists, ANewSearchSortOrClientShowsTenAgain)
{
    const std::array<std::function<void()>, 3> changes{[&] { query.setSearch("x"); },
        [&] {
            query.setSort({SessionSortField::title, true});
        },
        [&] { query.setClientID(Sample::clientID(2)); }};
    for (const auto& change : changes) {
        query.showMore();
        change();
        EXPECT_EQ(query.visibleCount(), 10U);
    }
}

TEST_F(SessionLists, TurningTheSortRoundShowsTenAgain)
{
    query.showMore();
    query.setSort({SessionSortField::date, true});
    EXPECT_EQ(query.visibleCount(), 10U);
}

TEST_F(SessionLists, WhatDoesNotChangeShowsNoFewer)
{
    query.showMore();
    query.setSearch("");
    query.setSort({});
    query.setClientID(std::nullopt);
    EXPECT_EQ(query.visibleCount(), 20U);
}

TEST_F(SessionLists, AnotherClientClearsTheSearchAndKeepsTheSort)
{
    query.setSearch("proof");
    query.setSort({SessionSortField::value, true});
    query.setClientID(Sample::clientID());
    EXPECT_EQ(query.search(), "");
    EXPECT_EQ(query.sort(), (SessionSort{SessionSortField::value, true}));
}

TEST_F(SessionLists, TheSameClientKeepsTheSearch)
{
    query = SessionQuery(SessionListPlace::dashboard, Sample::clientID());
    query.setSearch("proof");
    query.setClientID(Sample::clientID());
    EXPECT_EQ(query.search(), "proof");
}

TEST_F(SessionLists, TheSearchKnowsTheCapitalsOfTheLocale)
{
    add(1, at(1));
    ledger.entries.modify(Sample::sessionID(1), [](TimeEntry& entry) { entry.title = "ISPARTA"; });
    query.setSearch("isparta");
    EXPECT_EQ(query.sessions({ledger, zone, LocalizedOrder("de_DE"), {}}).size(), 1U);
    EXPECT_EQ(query.sessions({ledger, zone, LocalizedOrder("tr_TR"), {}}).size(), 0U);
}

TEST_F(SessionLists, TheActiveSessionIsInNoListButShownAbove)
{
    ledger.active = Sample::runningSession();
    EXPECT_THAT(list(), IsEmpty());
    EXPECT_TRUE(showsActive(Date{Sample::noon}));
}

TEST_F(SessionLists, WithoutAnActiveSessionNoneIsShown)
{
    EXPECT_FALSE(showsActive(Date{Sample::noon}));
}

TEST_F(SessionLists, TheActiveSessionIsFilteredLikeASavedOne)
{
    ledger.active = Sample::runningSession();
    query.setSearch("index");
    EXPECT_TRUE(showsActive(Date{Sample::noon}));
    query.setSearch("proofs");
    EXPECT_FALSE(showsActive(Date{Sample::noon}));
    query.setClientID(Sample::clientID(2));
    EXPECT_FALSE(showsActive(Date{Sample::noon}));
}

TEST_F(SessionLists, ARunningSessionReachesIntoTheMonthOfNow)
{
    ledger.active = Sample::runningSession();
    ledger.active->spans.clear();
    ledger.active->runningSince = at(31, 5);
    sessionsMonth = at(15);
    EXPECT_FALSE(showsActive(at(31, 5) + Sample::hour));
    EXPECT_TRUE(showsActive(at(1)));
}

TEST_F(SessionLists, ARunningSessionThatBeginsNowMatchesNoMonth)
{
    ledger.active = Sample::runningSession();
    ledger.active->spans.clear();
    ledger.active->runningSince = at(15);
    sessionsMonth = at(15);
    EXPECT_FALSE(showsActive(at(15)));
    EXPECT_FALSE(showsActive(at(14)));
    EXPECT_TRUE(showsActive(at(15) + 1.0));
}

TEST_F(SessionLists, APausedSessionMatchesTheMonthsOfItsSpans)
{
    ledger.active = Sample::pausedSession();
    ledger.active->spans = {{at(1), at(2)}};
    sessionsMonth = at(15);
    EXPECT_TRUE(showsActive(at(1, 8)));
    sessionsMonth = at(15, 8);
    EXPECT_FALSE(showsActive(at(1, 8)));
}

RC_GTEST_PROP(AnySessionQuery, HoldsExactlyTheSessionsThatMatch, ())
{
    const LedgerData ledger = *arbitraryLedger();
    const ZoneCalendar calendar("Asia/Kathmandu", "en_US");
    const LocalizedOrder order("en_US");
    const Date anyDate{static_cast<double>(*rc::gen::inRange(-900'000'000, 2'000'000'000))};
    const SessionSource source{ledger, calendar, order,
        *rc::gen::arbitrary<bool>() ? std::optional(anyDate) : std::nullopt};
    SessionQuery query(*rc::gen::element(SessionListPlace::page, SessionListPlace::dashboard));
    if (!ledger.clients.empty() && *rc::gen::arbitrary<bool>()) {
        query.setClientID(ledger.clients.front().id);
    }
    query.setSearch(*rc::gen::element<std::string>("", " ", "a", "n "));
    std::vector<const TimeEntry*> expected;
    for (const TimeEntry& entry : ledger.entries) {
        if (query.matches(entry, source)) {
            expected.push_back(&entry);
        }
    }
    RC_ASSERT(std::ranges::is_permutation(query.sessions(source), expected));
}

} // namespace
} // namespace KestryCore
