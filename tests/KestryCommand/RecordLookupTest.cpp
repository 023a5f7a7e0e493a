#include "RecordLookup.h"

#include <gmock/gmock.h>

namespace Kestry {
namespace {

using KestryCore::Client;
using KestryCore::LedgerData;
using KestryCore::Project;
using KestryCore::TimeEntry;
using KestryCore::Uuid;
using testing::ThrowsMessage;

Uuid id(unsigned char number)
{
    Uuid uuid;
    uuid.bytes[15] = number;
    return uuid;
}

std::string idText(unsigned char number)
{
    return id(number).text();
}

Client client(unsigned char number, const std::string& name)
{
    Client result;
    result.id = id(number);
    result.name = name;
    return result;
}

Project project(unsigned char number, unsigned char owner, const std::string& name)
{
    Project result;
    result.id = id(number);
    result.clientID = id(owner);
    result.name = name;
    return result;
}

TimeEntry entry(unsigned char number, unsigned char projectNumber, const std::string& title)
{
    TimeEntry result;
    result.id = id(number);
    result.projectID = id(projectNumber);
    result.title = title;
    result.recordedDuration = 5400.0;
    return result;
}

LedgerData ledger()
{
    LedgerData result;
    result.clients = {client(1, "Aster Studio"), client(2, "Astrolabe"), client(3, "Northstar"),
        client(4, "Aster")};
    result.projects = {project(11, 1, "Website"), project(12, 3, "Website"),
        project(13, 3, "Strategy"), project(14, 4, "Client sessions")};
    result.projects.modify(id(14), [](Project& hidden) { hidden.isClientDefault = true; });
    result.entries = {entry(21, 11, "Sketches"), entry(22, 13, ""), entry(23, 12, "Sketches")};
    return result;
}

TEST(FindClient, FindsAUniqueBeginningInAnyCase)
{
    EXPECT_EQ(findClient(ledger(), "north"), id(3));
    EXPECT_EQ(findClient(ledger(), " ASTRO "), id(2));
}

TEST(FindClient, PrefersTheWholeNameToABeginning)
{
    EXPECT_EQ(findClient(ledger(), "Aster"), id(4));
    EXPECT_EQ(findClient(ledger(), "aster"), id(4));
}

TEST(FindClient, PrefersTheVeryNameToOneInAnotherCase)
{
    LedgerData data = ledger();
    data.clients.append(client(5, "ASTER"));
    EXPECT_EQ(findClient(data, "ASTER"), id(5));
}

TEST(FindClient, IgnoresCaseBeyondAscii)
{
    LedgerData data;
    data.clients = {client(1, "Straße Öl")};
    EXPECT_EQ(findClient(data, "STRASSE ö"), id(1));
}

TEST(FindClient, ListsTheCandidatesOfAnAmbiguousName)
{
    EXPECT_THAT([] { (void)findClient(ledger(), "ast"); },
        ThrowsMessage<LookupError>("\"ast\" may mean any of these:\n  " + idText(1)
            + "  Aster Studio\n  " + idText(2) + "  Astrolabe\n  " + idText(4) + "  Aster"));
}

TEST(FindClient, ListsNoMoreThanTenCandidates)
{
    LedgerData data;
    for (unsigned char number = 1; number <= 12; ++number) {
        data.clients.append(client(number, "Twin"));
    }
    EXPECT_THAT([&] { (void)findClient(data, "twin"); },
        ThrowsMessage<LookupError>(testing::EndsWith(idText(10) + "  Twin\n  and 2 more")));
}

TEST(FindClient, WritesControlCharactersOfCandidatesOut)
{
    LedgerData data;
    data.clients = {client(1, "Twin\n\x1B[2J"), client(2, "Twin")};
    EXPECT_THAT([&] { (void)findClient(data, "tw"); },
        ThrowsMessage<LookupError>(testing::HasSubstr("  Twin\\n\\x1B[2J\n")));
}

TEST(FindClient, HintsAtANearNameWhenThereIsNone)
{
    EXPECT_THAT([] { (void)findClient(ledger(), "Norhtstar"); },
        ThrowsMessage<LookupError>(
            "There is no client \"Norhtstar\". Did you mean \"Northstar\"?"));
    EXPECT_THAT([] { (void)findClient(ledger(), "Zeppelin"); },
        ThrowsMessage<LookupError>("There is no client \"Zeppelin\"."));
}

TEST(FindClient, TakesTheEmptyTextForNobody)
{
    LedgerData data;
    data.clients = {client(1, "Only one")};
    EXPECT_THROW((void)findClient(data, ""), LookupError);
    EXPECT_THROW((void)findClient(data, "  "), LookupError);
}

TEST(FindClient, LeavesIdentifiersToTheLedgerToJudge)
{
    EXPECT_EQ(findClient(ledger(), idText(1)), id(1));
    EXPECT_EQ(findClient(ledger(), "00000000-0000-0000-0000-0000000000fe"), id(0xFE));
}

TEST(FindProject, LooksAtTheClientsOwnProjectsFirst)
{
    EXPECT_EQ(findProject(ledger(), "website", id(1)), id(11));
    EXPECT_EQ(findProject(ledger(), "website", id(3)), id(12));
    EXPECT_EQ(findProject(ledger(), "strategy", id(1)), id(13));
}

TEST(FindProject, TellsProjectsOfTheSameNameByTheirClients)
{
    EXPECT_THAT([] { (void)findProject(ledger(), "website"); },
        ThrowsMessage<LookupError>("\"website\" may mean any of these:\n  " + idText(11)
            + "  Website  (Aster Studio)\n  " + idText(12) + "  Website  (Northstar)"));
}

TEST(FindProject, DoesNotFindHiddenProjectsByName)
{
    EXPECT_THROW((void)findProject(ledger(), "Client sessions", id(4)), LookupError);
}

TEST(FindEntry, FindsASessionByWhatStandsForItInLists)
{
    EXPECT_EQ(findEntry(ledger(), "strat"), id(22));
}

TEST(FindEntry, TellsSessionsOfTheSameTitleByClientAndLength)
{
    EXPECT_THAT([] { (void)findEntry(ledger(), "sketches"); },
        ThrowsMessage<LookupError>("\"sketches\" may mean any of these:\n  " + idText(21)
            + "  Sketches  (Aster Studio, 1h 30m)\n  " + idText(23)
            + "  Sketches  (Northstar, 1h 30m)"));
}

TEST(FindSession, FindsTheOneInProgressToo)
{
    LedgerData data = ledger();
    data.active.emplace();
    data.active->id = id(30);
    data.active->title = "In the works";
    EXPECT_EQ(findSession(data, "in the"), id(30));
    EXPECT_THROW((void)findEntry(data, "in the"), LookupError);
}

TEST(SessionName, IsTheTitleThenTheProjectThenAPlainWord)
{
    LedgerData data = ledger();
    EXPECT_EQ(sessionName(data, " Sketches", id(11)), " Sketches");
    EXPECT_EQ(sessionName(data, "", id(11)), "Website");
    EXPECT_EQ(sessionName(data, "", id(14)), "Session");
    EXPECT_EQ(sessionName(data, "", id(99)), "Session");
    data.clients.modify(id(1), [](Client& owner) { owner.projectsEnabled = false; });
    EXPECT_EQ(sessionName(data, "", id(11)), "Session");
}

} // namespace
} // namespace Kestry
