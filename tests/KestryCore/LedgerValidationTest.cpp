#include "LedgerValidation.h"

#include <gtest/gtest.h>

#include <limits>

#include "LedgerValidationFixture.h"
#include "LogoImages.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

using namespace Sample;

constexpr const char* badSources = "Duplicate or empty imported source identifiers.";

// Identifiers

TEST_F(LedgerValidation, AnEmptyLedgerIsSound)
{
    ledger = LedgerData{};
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, IdentifiersMustDifferWithinEachList)
{
    constexpr const char* message = "Duplicate identifiers in ledger.";
    ledger.clients.append(client());
    EXPECT_EQ(verdict(), message);
    ledger = runningLedger();
    ledger.projects.append(project());
    EXPECT_EQ(verdict(), message);
    ledger = runningLedger();
    ledger.entries.append(entry());
    EXPECT_EQ(verdict(), message);
}

TEST_F(LedgerValidation, AnIdentifierMayServeInSeveralLists)
{
    changeClient([](Client& client) { client.id = id(1); });
    ledger.projects = {project()};
    ledger.projects.modify(projectID(), [](Project& project) {
        project.id = id(1);
        project.clientID = id(1);
    });
    changeEntry([](TimeEntry& entry) { entry.id = entry.projectID = id(1); });
    active.projectID = id(1);
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, EntriesMustNotShareASourceIdentifier)
{
    appendEntry("import-7");
    EXPECT_EQ(verdict(), accepted);
    appendEntry("import-7");
    EXPECT_EQ(verdict(), badSources);
}

TEST_F(LedgerValidation, AnEntryAndTheActiveSessionMustNotShareASourceIdentifier)
{
    appendEntry("import-7");
    active.sourceID = "import-7";
    EXPECT_EQ(verdict(), badSources);
}

TEST_F(LedgerValidation, AnEmptySourceIdentifierIsRefusedEvenOnce)
{
    active.sourceID = "";
    EXPECT_EQ(verdict(), badSources);
    active.sourceID.reset();
    appendEntry("");
    EXPECT_EQ(verdict(), badSources);
}

TEST_F(LedgerValidation, SourceIdentifiersAreComparedAsTheyStand)
{
    appendEntry(" ");
    appendEntry("a");
    appendEntry("A");
    appendEntry("a ");
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, AbsentSourceIdentifiersAreNoDuplicates)
{
    appendEntry(std::nullopt);
    appendEntry(std::nullopt);
    EXPECT_EQ(verdict(), accepted);
}

// Clients and projects

TEST_F(LedgerValidation, AClientOfBlanksAloneHasNoName)
{
    for (const char* name : {"", " \n\t", "\u3000\u2028\u0085"}) {
        changeClient([&](Client& client) { client.name = name; });
        EXPECT_EQ(verdict(), "Enter a name.");
    }
}

TEST_F(LedgerValidation, ANameWithBlanksAroundItPassesAndStaysSo)
{
    changeClient([](Client& client) { client.name = "  Harbour \n"; });
    EXPECT_EQ(verdict(), accepted);
    EXPECT_EQ(ledger.clients.front().name, "  Harbour \n");
}

TEST_F(LedgerValidation, AZeroWidthSpaceIsAName)
{
    changeClient([](Client& client) { client.name = "\u200B"; });
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, AClientRateMayBeZeroButNotNegative)
{
    changeClient([](Client& client) { client.hourlyRateCents = 0; });
    EXPECT_EQ(verdict(), accepted);
    changeClient([](Client& client) { client.hourlyRateCents = -1; });
    EXPECT_EQ(verdict(), "Hourly rates cannot be negative.");
}

TEST_F(LedgerValidation, ALogoMustFollowTheRuleForLogos)
{
    changeClient([](Client& client) { client.logoData = LogoImages::png(); });
    EXPECT_EQ(verdict(), accepted);
    changeClient([](Client& client) { client.logoData = ""; });
    EXPECT_EQ(verdict(), "Client logos must be valid PNG images up to 256 pixels and 256 KB.");
}

TEST_F(LedgerValidation, AProjectOfBlanksAloneHasNoName)
{
    changeProject([](Project& project) { project.name = "\u00A0"; });
    EXPECT_EQ(verdict(), "Enter a name.");
}

TEST_F(LedgerValidation, AnUnknownClientAndALedgerWithoutClientsGiveTheSameMessage)
{
    changeProject([](Project& project) { project.clientID = clientID(2); });
    EXPECT_EQ(verdict(), "Invalid project client or hourly rate.");
    ledger = runningLedger();
    ledger.clients.remove(clientID());
    EXPECT_EQ(verdict(), "Invalid project client or hourly rate.");
}

TEST_F(LedgerValidation, AProjectRateMayBeZeroButNotNegative)
{
    changeProject([](Project& project) { project.hourlyRateCents = 0; });
    EXPECT_EQ(verdict(), accepted);
    changeProject([](Project& project) { project.hourlyRateCents = -1; });
    EXPECT_EQ(verdict(), "Invalid project client or hourly rate.");
}

// What is not looked at

TEST_F(LedgerValidation, ColoursTitlesHighRatesAndTheFutureAreNotLookedAt)
{
    changeClient([](Client& client) {
        client.colorHex = "no colour";
        client.hourlyRateCents = std::numeric_limits<Cents>::max();
    });
    changeEntry([](TimeEntry& entry) { entry.title = ""; });
    setEntrySpans({span(6e9, 6e9 + 60)});
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, SeveralDefaultProjectsOfAClientWithProjectsAreNotLookedAt)
{
    for (const unsigned number : {2U, 3U}) {
        Project another = project(number);
        another.isClientDefault = true;
        ledger.projects.append(another);
    }
    EXPECT_EQ(verdict(), accepted);
}

TEST_F(LedgerValidation, NothingIsChanged)
{
    changeClient([](Client& client) { client.hourlyRateCents = -1; });
    const LedgerData before = ledger;
    EXPECT_NE(verdict(), accepted);
    EXPECT_EQ(ledger, before);
}

// What is remembered of sound records

TEST_F(LedgerValidation, ASoundEntryIsRefusedOnceItsProjectIsGone)
{
    ASSERT_EQ(verdict(), accepted);
    ledger.active.reset();
    ledger.projects.remove(projectID());
    EXPECT_EQ(verdict(), "Invalid entry project, rate, or intervals.");
}

TEST_F(LedgerValidation, ASoundProjectIsRefusedOnceItsClientIsGone)
{
    ASSERT_EQ(verdict(), accepted);
    ledger.clients.remove(clientID());
    EXPECT_EQ(verdict(), "Invalid project client or hourly rate.");
}

TEST_F(LedgerValidation, ASoundRecordIsCheckedAgainOnceItWasChanged)
{
    ASSERT_EQ(verdict(), accepted);
    setRecordedDuration(-1);
    EXPECT_EQ(verdict(), sessionTooLong);
    EXPECT_EQ(verdict(), sessionTooLong);
}

} // namespace
} // namespace KestryCore
