#include "NewestSessions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "LedgerGenerator.h"
#include "LocalizedOrder.h"
#include "SampleLedger.h"
#include "SessionQuery.h"
#include "ZoneCalendar.h"

namespace KestryCore {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Numbered sessions of June 2026 on one project; lists are their numbers.
class NewestSessions : public testing::Test {
protected:
    NewestSessions() { ledger.entries = {}; }

    void add(unsigned number, Date start, Date end)
    {
        TimeEntry entry = Sample::entry(number);
        entry.spans = {{start, end}};
        ledger.entries.append(entry);
    }
    void add(unsigned number, unsigned day) { add(number, at(day), at(day) + Sample::hour); }
    static Date at(unsigned day, int month = 6)
    {
        return dateInUtc({{2026, month, static_cast<int>(day)}, 9});
    }
    std::vector<unsigned> ofJune(std::size_t count = 5) const
    {
        std::vector<unsigned> numbers;
        for (const TimeEntry* entry : newestSessionsOfMonth(ledger, june, count)) {
            numbers.push_back(entry->id.bytes.back());
        }
        return numbers;
    }

    LedgerData ledger = Sample::ledger();
    const ZoneCalendar zone{"UTC", "en_US"};
    const MonthInterval june = *zone.month(at(15));
};

TEST_F(NewestSessions, AreTheFewThatBeganLastWhateverTheirOrder)
{
    add(1, 3);
    add(2, 9);
    add(3, 1);
    add(4, 5);
    EXPECT_THAT(ofJune(3), ElementsAre(2, 4, 1));
    EXPECT_THAT(ofJune(9), ElementsAre(2, 4, 1, 3));
}

TEST_F(NewestSessions, OfThoseThatBeganTogetherTheLowerIdentifierGoesFirst)
{
    add(2, 3);
    add(1, 3);
    add(3, 3);
    EXPECT_THAT(ofJune(2), ElementsAre(1, 2));
}

TEST_F(NewestSessions, OfAMonthNeedMoreThanItsBorder)
{
    add(1, at(31, 5), june.start);
    add(2, june.end, at(1, 7));
    EXPECT_THAT(ofJune(), IsEmpty());
    add(3, at(31, 5), june.start + 1.0);
    add(4, june.end + -1.0, at(1, 7));
    EXPECT_THAT(ofJune(), ElementsAre(4, 3));
}

TEST_F(NewestSessions, OfAMonthMayHaveAnySpanInIt)
{
    TimeEntry entry = Sample::entry(1);
    entry.spans = {{at(30, 5), at(30, 5) + 60.0}, {at(1), at(1) + 60.0}};
    ledger.entries.append(entry);
    EXPECT_THAT(ofJune(), ElementsAre(1));
}

TEST_F(NewestSessions, AreNoneWithoutSpans)
{
    TimeEntry entry = Sample::entry(1);
    entry.spans = {};
    entry.recordedDuration = 3600.0;
    ledger.entries.append(entry);
    EXPECT_THAT(ofJune(), IsEmpty());
}

TEST_F(NewestSessions, OfAClientAreTheFirstOfItsSortedList)
{
    const LedgerData many = generateLedger({.sessions = 3'000, .clients = 7, .projects = 20});
    const LocalizedOrder order("en_US");
    for (const Client& client : many.clients) {
        const SessionQuery query(SessionListPlace::dashboard, client.id);
        auto expected = query.sessions({many, zone, order, std::nullopt});
        expected.resize(std::min<std::size_t>(expected.size(), 5));
        EXPECT_EQ(newestSessionsOfClient(many, client.id, 5), expected);
    }
    EXPECT_THAT(newestSessionsOfClient(many, Sample::clientID(9), 5), IsEmpty());
}

} // namespace
} // namespace KestryCore
