#include "SessionLabel.h"

#include <gtest/gtest.h>

#include "RecordIndex.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

class SessionLabels : public testing::Test {
protected:
    std::string label() const { return std::string(sessionLabel(entry, RecordIndex(ledger))); }
    void editProject(const std::function<void(Project&)>& change)
    {
        ledger.projects.modify(Sample::projectID(), change);
    }
    void editClient(const std::function<void(Client&)>& change)
    {
        ledger.clients.modify(Sample::clientID(), change);
    }

    LedgerData ledger = Sample::ledger();
    TimeEntry entry = Sample::entry();
};

TEST_F(SessionLabels, ATitleStandsAsItIs)
{
    entry.title = "  Proofs ";
    EXPECT_EQ(label(), "  Proofs ");
}

TEST_F(SessionLabels, ATitleOfOneBlankIsThatBlank)
{
    entry.title = " ";
    EXPECT_EQ(label(), " ");
}

TEST_F(SessionLabels, AnUntitledSessionShowsItsProject)
{
    entry.title.clear();
    EXPECT_EQ(label(), "Catalogue");
}

TEST_F(SessionLabels, AnUntitledSessionOfTheDefaultProjectIsASession)
{
    entry.title.clear();
    editProject([](Project& project) { project.isClientDefault = true; });
    EXPECT_EQ(label(), "Session");
}

TEST_F(SessionLabels, AnUntitledSessionOfAClientWithoutProjectsIsASession)
{
    entry.title.clear();
    editClient([](Client& client) { client.projectsEnabled = false; });
    EXPECT_EQ(label(), "Session");
}

TEST_F(SessionLabels, ASessionInProgressIsCalledByTheSameRule)
{
    const Project* project = ledger.projects.find(Sample::projectID());
    Client client = *ledger.clients.find(Sample::clientID());
    EXPECT_EQ(sessionLabel(" ", project, &client), " ");
    EXPECT_EQ(sessionLabel("", project, &client), "Catalogue");
    EXPECT_EQ(sessionLabel("", project, nullptr), "Catalogue");
    EXPECT_EQ(sessionLabel("", nullptr, nullptr), "Session");
    client.projectsEnabled = false;
    EXPECT_EQ(sessionLabel("", project, &client), "Session");
}

TEST_F(SessionLabels, AProjectWhoseClientIsGoneStillShows)
{
    entry.title.clear();
    ledger.clients.remove(Sample::clientID());
    EXPECT_EQ(label(), "Catalogue");
}

TEST_F(SessionLabels, AnUntitledSessionWhoseProjectIsGoneIsASession)
{
    entry.title.clear();
    ledger.projects.remove(Sample::projectID());
    EXPECT_EQ(label(), "Session");
}

} // namespace
} // namespace KestryCore
