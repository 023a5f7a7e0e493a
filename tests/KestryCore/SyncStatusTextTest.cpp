#include "SyncStatusText.h"

#include "SyncFixture.h"

namespace KestryCore {
namespace {

using namespace Sample;

class SyncStatusText : public SyncFixture { };

TEST_F(SyncStatusText, ALedgerThatWasNeverConnectedIsOff)
{
    EXPECT_EQ(syncStatusText(Sample::ledger()), "iCloud sync is off");
}

TEST_F(SyncStatusText, NothingToDoIsUpToDate)
{
    EXPECT_EQ(syncStatusText(ledger), "Up to date");
}

TEST_F(SyncStatusText, WhatTheUserHasToDoComesFirstThenWhatIsWaiting)
{
    leavePending(record(client()));
    leavePending(record(project()));
    EXPECT_EQ(syncStatusText(ledger), "Changes pending (2)");
    state().staged[record(project(3)).recordID] = record(project(3));
    EXPECT_EQ(syncStatusText(ledger), "Awaiting related records (1)");
    openConflict(record(client()), remote(client()));
    EXPECT_EQ(syncStatusText(ledger), "Review sync conflicts");
}

} // namespace
} // namespace KestryCore
