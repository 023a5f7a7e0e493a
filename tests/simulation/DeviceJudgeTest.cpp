#include "DeviceJudge.h"

#include <gtest/gtest.h>

#include "CloudArchive.h"
#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "SampleLedger.h"
#include "SyncCloudRecord.h"
#include "World.h"

namespace KestryCore {
namespace {

/// One device, connected, with one client, and no faults but those of the test.
class DeviceJudgeFixture : public testing::Test {
protected:
    DeviceJudgeFixture() : world(1, false)
    {
        world.hasFaults = false;
        world.members.push_back(std::make_unique<Member>("Device", world, 0.0));
        world.open(member());
        change([](TimeStore& store) {
            store.beginSync("account", "Device", CloudSyncEnvironment::development);
        });
        change([](TimeStore& store) { store.addClient({"Client"}); });
    }

    Member& member() { return *world.members.front(); }
    void change(const std::function<void(TimeStore&)>& action)
    {
        world.change(member(), "", action, World::Refusal::never);
    }
    /// The same behind the judge's back.
    void perform(const std::function<void(TimeStore&)>& action)
    {
        (void)member().device.perform(action, DiskFault::none);
    }
    SyncRecord savedElsewhere(unsigned revision)
    {
        SyncRecord record = Sample::record(Sample::client());
        record.revision = Sample::id(revision).text();
        world.book.enter(record);
        return record;
    }

    /// The store takes a record.
    CloudStore::SaveOutcome save(const SyncRecord& record)
    {
        return world.save(CloudStore::asSent(record, std::nullopt));
    }
    /// The judge sees what the program shows and the disk has.
    void publish()
    {
        member().judge.sawPublished(member().device.ledger(), member().device.primary());
    }

    World world;
};

TEST_F(DeviceJudgeFixture, IsContentWhileEverythingIsInOrder)
{
    change([](TimeStore& store) { store.addClient({"Other"}); });
    EXPECT_NO_THROW(member().judge.sawSaved());
    EXPECT_NO_THROW(world.kill(member()));
    EXPECT_NO_THROW(world.open(member()));
}

TEST_F(DeviceJudgeFixture, NoticesALedgerThatIsNotSound)
{
    member().device.damagePrimary();
    EXPECT_THROW(member().judge.sawEnd(), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesThatTheDiskIsBehindTheScreen)
{
    member().device.putBack({member().device.backup().value(), std::nullopt});
    EXPECT_THROW(member().judge.sawSaved(), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesACursorThatHasPassedARecord)
{
    save(savedElsewhere(1));
    const std::string cursor =
        archiveCursor(workspaceZone(), {world.cloud.changesSince(std::nullopt, 10)->cursor});
    perform([&](TimeStore& store) { store.applyRemoteSync({}, {}, cursor); });
    EXPECT_THROW(member().judge.sawSaved(), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesAVersionThatNobodySaved)
{
    SyncRecord forged = savedElsewhere(1);
    forged.revision = Sample::id(2).text();
    perform([&](TimeStore& store) { store.applyRemoteSync({forged}, {}, {}); });
    EXPECT_THROW(member().judge.sawSaved(), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesAVersionThatIsLostWithADevice)
{
    change([](TimeStore& store) { store.addClient({"Only here"}); });
    const auto backup = member().device.backup().value();
    member().device.kill();
    member().device.putBack({backup, std::nullopt});
    EXPECT_THROW(member().judge.sawEnd(), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesASessionElsewhereInAProjectThatIsNotHere)
{
    world.kill(member());
    LedgerData ledger = decodeLedger(member().device.primary().value());
    const SyncedSession timer = Sample::synced(Sample::runningSession());
    ledger.replication.edit().remoteSessions[Sample::record(timer).recordID] = timer;
    member().device.putBack({encodeLedger(ledger), std::nullopt});
    EXPECT_THROW(member().judge.sawEnd(), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesARestoreThatDropsWhatTheBackupHas)
{
    const LedgerData before = member().device.ledger();
    LedgerData backup = decodeLedger(member().device.backup().value());
    backup.clients.append(Sample::client());
    member().device.putBack({member().device.primary().value(), encodeLedger(backup)});
    EXPECT_THROW(member().judge.sawRestored(before), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesAConflictThatShowsAnOlderVersion)
{
    const SyncRecord mine = member().device.store().pendingSyncRecords().front();
    SyncRecord theirs = mine;
    theirs.revision = Sample::id(1).text();
    perform([&](TimeStore& store) { store.applyRemoteSync({theirs}, {}, {}); });
    EXPECT_NO_THROW(member().judge.sawSaved());
    world.kill(member());
    LedgerData ledger = decodeLedger(member().device.primary().value());
    ledger.replication.edit().conflicts = {{mine.recordID, theirs, theirs}};
    member().device.putBack({encodeLedger(ledger), std::nullopt});
    EXPECT_THROW(member().judge.sawEnd(), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesASessionThatWasGivenUpAndStillRuns)
{
    const Uuid client = member().device.ledger().clients.front().id;
    change([&](TimeStore& store) {
        store.start(client, std::nullopt, "Title", member().device.now());
    });
    SyncRecord theirs = member().device.store().pendingSyncRecords().back();
    theirs.revision = Sample::id(1).text();
    change([&](TimeStore& store) { store.applyRemoteSync({theirs}, {}, {}); });
    world.kill(member());
    LedgerData ledger = decodeLedger(member().device.primary().value());
    ledger.replication.edit().conflicts = {};
    ledger.replication.edit().outbox.erase(theirs.recordID);
    ledger.replication.edit().baseRevisions[theirs.recordID] = theirs.revision;
    member().device.putBack({encodeLedger(ledger), std::nullopt});
    EXPECT_THROW(member().judge.sawEnd(), Violation);
}

TEST_F(DeviceJudgeFixture, AllowsADeliveryToBeKnownBeforeItIsSaved)
{
    const SyncRecord sent = member().device.store().pendingSyncRecords().front();
    perform([&](TimeStore& store) { store.acknowledgeDelivery(sent, "fields"); });
    EXPECT_NE(encodeLedger(member().device.ledger()), member().device.primary());
    EXPECT_NO_THROW(publish());
}

TEST_F(DeviceJudgeFixture, NoticesAnythingElseThatIsShownAndNotSaved)
{
    const std::string former = member().device.primary().value();
    perform([](TimeStore& store) { store.addClient({"Other"}); });
    EXPECT_THROW(member().judge.sawPublished(member().device.ledger(), former), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesADeliveryThatWasForgotten)
{
    LedgerData ledger = member().device.ledger();
    ledger.replication.edit().outbox = {};
    EXPECT_THROW(member().judge.sawPublished(ledger, member().device.primary()), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesACursorThatHasPassedARemoval)
{
    const SyncRecord record = savedElsewhere(1);
    save(record);
    world.cloud.remove(record.recordID);
    const std::string cursor =
        archiveCursor(workspaceZone(), {world.cloud.changesSince(std::nullopt, 10)->cursor});
    perform([&](TimeStore& store) { store.applyRemoteSync({}, {}, cursor); });
    EXPECT_THROW(publish(), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesWhatIsLeftWaitingThoughItCouldBeApplied)
{
    EXPECT_NO_THROW(member().judge.sawFetched());
    world.kill(member());
    LedgerData ledger = decodeLedger(member().device.primary().value());
    const SyncRecord waiting = savedElsewhere(1);
    ledger.replication.edit().staged[waiting.recordID] = waiting;
    member().device.putBack({encodeLedger(ledger), std::nullopt});
    world.open(member());
    EXPECT_THROW(member().judge.sawFetched(), Violation);
}

TEST_F(DeviceJudgeFixture, NoticesAVersionOfTheCloudWrittenOverUnseen)
{
    const CloudStore::SaveOutcome first = save(savedElsewhere(1));
    EXPECT_THROW(
        world.save(CloudStore::asSent(savedElsewhere(2), CloudStore::systemFields(*first.server))),
        Violation);
}

TEST_F(DeviceJudgeFixture, AllowsAReturnToAnOldCopyToLoseWhatWasOnlyThere)
{
    const SimulatedDevice::Copy copy = member().device.copy();
    change([](TimeStore& store) { store.addClient({"Only here"}); });
    world.kill(member());
    member().device.putBack(copy);
    EXPECT_NO_THROW(member().judge.sawPutBack());
    EXPECT_NO_THROW(world.open(member()));
}

} // namespace
} // namespace KestryCore
