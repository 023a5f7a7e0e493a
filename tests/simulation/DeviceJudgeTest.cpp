#include "DeviceJudge.h"

#include <gtest/gtest.h>

#include "SampleLedger.h"
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
    world.save(savedElsewhere(1), std::nullopt);
    const std::string cursor = world.cloud.changesSince(std::nullopt, 10)->cursor;
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

TEST_F(DeviceJudgeFixture, NoticesAVersionOfTheCloudWrittenOverUnseen)
{
    const CloudStore::SaveOutcome first = world.save(savedElsewhere(1), std::nullopt);
    EXPECT_THROW(world.save(savedElsewhere(2), CloudStore::systemFields(first.server)), Violation);
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
