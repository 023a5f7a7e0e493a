#include "DemoLedger.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "LedgerValidation.h"

namespace KestryCore {
namespace {

const ZoneCalendar& berlin()
{
    static const ZoneCalendar calendar("Europe/Berlin", "de_DE");
    return calendar;
}

Date local(int month, int day, int hour, int minute = 0)
{
    return berlin().date(WallTime{CalendarDay{2026, month, day}, hour, minute, 0.0}).value();
}

std::vector<TimeEntry> entriesAt(Date now)
{
    const LedgerData ledger = demoLedger(now, berlin());
    return {ledger.entries.begin(), ledger.entries.end()};
}

TEST(DemoLedger, HoldsThreeClientsAndFourProjects)
{
    const LedgerData ledger = demoLedger(local(4, 1, 8), berlin());
    std::vector<std::string> clients;
    for (const Client& client : ledger.clients) {
        clients.push_back(
            client.name + " " + std::to_string(client.hourlyRateCents) + " " + client.colorHex);
    }
    EXPECT_EQ(clients,
        (std::vector<std::string>{
            "Aster Studio 15000 B7A5FF", "Linear Labs 17500 A2D8C0", "Northstar 12500 F0BB85"}));
    std::vector<std::string> projects;
    for (const Project& project : ledger.projects) {
        projects.push_back(project.name + " " + std::to_string(project.hourlyRateCents) + " "
            + ledger.clients.find(project.clientID)->name);
    }
    EXPECT_EQ(projects,
        (std::vector<std::string>{"Brand direction 15000 Aster Studio",
            "Product design 17500 Linear Labs", "Strategy 12500 Northstar",
            "Website 15000 Aster Studio"}));
}

TEST(DemoLedger, HasNoSessionBeforeNineOnTheFirst)
{
    EXPECT_TRUE(entriesAt(local(4, 1, 8, 59)).empty());
    EXPECT_TRUE(entriesAt(local(4, 1, 9)).empty());
}

TEST(DemoLedger, CutsTodaysSessionAtTheCurrentTime)
{
    const auto entries = entriesAt(local(4, 1, 10, 30));
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].startedAt(), local(4, 1, 9));
    EXPECT_EQ(entries[0].endedAt(), local(4, 1, 10, 30));
    EXPECT_EQ(entries[0].title, "Design exploration");
}

TEST(DemoLedger, LengthensSessionsInAPatternOfFourDays)
{
    const auto entries = entriesAt(local(6, 5, 23));
    ASSERT_EQ(entries.size(), 5U);
    EXPECT_EQ(entries[0].duration(), 8100.0);
    EXPECT_EQ(entries[1].duration(), 11700.0);
    EXPECT_EQ(entries[2].duration(), 15300.0);
    EXPECT_EQ(entries[3].duration(), 18900.0);
    EXPECT_EQ(entries[4].duration(), 8100.0);
}

TEST(DemoLedger, SkipsWeekendsAndLetsThemShiftThePatterns)
{
    // Friday the 5th is the fifth day, Monday the 8th the eighth.
    const auto entries = entriesAt(local(6, 8, 23));
    ASSERT_EQ(entries.size(), 6U);
    EXPECT_EQ(entries[5].startedAt(), local(6, 8, 9));
    EXPECT_EQ(entries[5].duration(), 18900.0);
    EXPECT_EQ(entries[5].title, "Client workshop");
}

TEST(DemoLedger, StartsNineHoursIntoADayOnWhichTheClocksChange)
{
    // 2026-10-25 is a Sunday; in the Egyptian week it is a working day.
    const ZoneCalendar calendar("Europe/Berlin", "ar_EG");
    const LedgerData ledger = demoLedger(local(10, 25, 20), calendar);
    EXPECT_EQ(ledger.entries.back().startedAt(), local(10, 25, 8));
}

TEST(DemoLedger, NeverReachesIntoTheFutureAndIsSound)
{
    for (Date now = local(3, 1, 0); now < local(5, 1, 0); now = now + 5 * 3601.0) {
        const LedgerData ledger = demoLedger(now, berlin());
        EXPECT_NO_THROW(validate(ledger));
        for (const TimeEntry& entry : ledger.entries) {
            EXPECT_LE(entry.endedAt(), now);
        }
        EXPECT_FALSE(ledger.active);
        EXPECT_FALSE(ledger.replication);
    }
}

TEST(DemoLedger, DiffersOnlyInIdentifiersFromStartToStart)
{
    const auto first = entriesAt(local(6, 8, 12));
    const auto second = entriesAt(local(6, 8, 12));
    ASSERT_EQ(first.size(), second.size());
    for (std::size_t index = 0; index < first.size(); ++index) {
        EXPECT_NE(first[index].id, second[index].id);
        EXPECT_NE(first[index].projectID, second[index].projectID);
        EXPECT_EQ(first[index].title, second[index].title);
        EXPECT_EQ(first[index].spans, second[index].spans);
        EXPECT_EQ(first[index].hourlyRateCents, second[index].hourlyRateCents);
    }
}

} // namespace
} // namespace KestryCore
