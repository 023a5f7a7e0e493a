#include "SessionWords.h"

#include <gtest/gtest.h>

#include <limits>

namespace Kestry {
namespace {

using KestryCore::Client;
using KestryCore::Project;

class SessionWordsTest : public ::testing::Test {
protected:
    SessionWordsTest()
    {
        client.id = KestryCore::Uuid::random();
        client.name = "Aster Studio";
        project.id = KestryCore::Uuid::random();
        project.clientID = client.id;
        project.name = "Website";
    }

    Client client;
    Project project;
};

TEST_F(SessionWordsTest, NamesTheClientAndTheProject)
{
    EXPECT_EQ(sessionDetail(&project, &client), "Aster Studio · Website");
    EXPECT_EQ(spokenSessionDetail(&project, &client), "Aster Studio, Website");
}

TEST_F(SessionWordsTest, TheProjectOfAClientWithoutProjectsIsNotNamed)
{
    client.projectsEnabled = false;
    EXPECT_EQ(sessionDetail(&project, &client), "Aster Studio");
}

TEST_F(SessionWordsTest, AHiddenProjectIsNotNamed)
{
    project.isClientDefault = true;
    EXPECT_EQ(sessionDetail(&project, &client), "Aster Studio");
}

TEST_F(SessionWordsTest, DeletedRecordsHaveTheWordForThem)
{
    EXPECT_EQ(sessionDetail(nullptr, nullptr), "Client · Project");
    EXPECT_EQ(sessionDetail(&project, nullptr), "Client · Website");
}

TEST_F(SessionWordsTest, ALengthIsSaidInHoursAndMinutes)
{
    EXPECT_EQ(spokenHoursAndMinutes(9000), "2 hours 30 minutes");
    EXPECT_EQ(spokenHoursAndMinutes(3660), "1 hour 1 minute");
    EXPECT_EQ(spokenHoursAndMinutes(7200), "2 hours");
    EXPECT_EQ(spokenHoursAndMinutes(59), "0 minutes");
    EXPECT_EQ(spokenHoursAndMinutes(std::numeric_limits<double>::infinity()), "unknown length");
}

TEST_F(SessionWordsTest, ASessionIsSaidInOneLine)
{
    KestryCore::LedgerData ledger;
    ledger.clients.append(client);
    ledger.projects.append(project);
    const KestryCore::Date start =
        KestryCore::dateInUtc({KestryCore::CalendarDay{2026, 3, 14}, 9, 0, 0.0});
    KestryCore::TimeEntry entry;
    entry.projectID = project.id;
    entry.title = "Design review";
    entry.hourlyRateCents = 15000;
    entry.spans = {{start, start + 9000.0}};
    const KestryCore::RecordIndex index(ledger);
    EXPECT_EQ(
        spokenSession(entry, index, KestryCore::DayText(KestryCore::ZoneCalendar("UTC", "en_US")),
            KestryCore::MoneyText("en_US")),
        "Design review, Aster Studio, Website, March 14, 2 hours 30 minutes, $375.00");
}

} // namespace
} // namespace Kestry
