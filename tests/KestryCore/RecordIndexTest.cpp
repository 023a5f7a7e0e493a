#include "RecordIndex.h"

#include <gtest/gtest.h>

#include "LedgerGenerator.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

TEST(RecordIndex, FindsEachRecordOfALedgerWhereItStands)
{
    const LedgerData ledger = generateLedger({.sessions = 0, .clients = 300, .projects = 900});
    const RecordIndex index(ledger);
    for (const Client& client : ledger.clients) {
        ASSERT_EQ(index.client(client.id), &client);
    }
    for (const Project& project : ledger.projects) {
        ASSERT_EQ(index.project(project.id), &project);
    }
}

TEST(RecordIndex, FindsNothingUnderAnIdentifierOfAnotherKind)
{
    const LedgerData ledger = Sample::ledger();
    const RecordIndex index(ledger);
    EXPECT_EQ(index.client(Sample::projectID()), nullptr);
    EXPECT_EQ(index.project(Sample::clientID()), nullptr);
}

TEST(RecordIndex, GoesFromASessionToItsProjectAndClient)
{
    const LedgerData ledger = Sample::ledger();
    const RecordIndex index(ledger);
    const Project* project = index.projectOf(Sample::entry());
    EXPECT_EQ(project, &ledger.projects.front());
    EXPECT_EQ(index.clientOf(project), &ledger.clients.front());
}

TEST(RecordIndex, KnowsNoClientWithoutAProjectOrOfOneWhoseClientIsGone)
{
    LedgerData ledger = Sample::ledger();
    ledger.clients.remove(Sample::clientID());
    const RecordIndex index(ledger);
    EXPECT_EQ(index.clientOf(nullptr), nullptr);
    EXPECT_EQ(index.clientOf(&ledger.projects.front()), nullptr);
}

TEST(RecordIndex, FindsTheFirstOfTwoRecordsWithOneIdentifier)
{
    LedgerData ledger = Sample::ledger();
    Project second = Sample::project();
    second.name = "Second";
    ledger.projects.append(second);
    EXPECT_EQ(RecordIndex(ledger).project(Sample::projectID())->name, "Catalogue");
}

} // namespace
} // namespace KestryCore
