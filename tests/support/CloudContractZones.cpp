// The account, the zone, and a store that cannot be reached.

#include "CloudContract.h"

namespace KestryCore {
namespace {

TEST_P(CloudContract, TheAccountIsAvailable)
{
    EXPECT_TRUE(run(container().isAccountAvailable()));
}

TEST_P(CloudContract, TheUserRecordNameIsTheSameForAllDevicesAndAfterANewStart)
{
    const std::string name = run(container().userRecordName());
    EXPECT_NE(name, "");
    EXPECT_EQ(run(otherContainer().userRecordName()), name);
    makeZone();
    (void)saved(one(), record("a"));
    restart();
    EXPECT_EQ(run(container().userRecordName()), name);
}

TEST_P(CloudContract, AZoneThatIsNotThereIsNotFound)
{
    expectFailure(one().fetchZone(zone), CloudErrorCode::zoneNotFound);
    makeZone();
    run(one().fetchZone(zone));
    expectFailure(one().fetchZone({"AnotherZone"}), CloudErrorCode::zoneNotFound);
}

TEST_P(CloudContract, WithoutItsZoneNothingIsToldOrSaved)
{
    expectFailure(one().changes(zone, std::nullopt), CloudErrorCode::zoneNotFound);
    expectFailure(one().save({record("a")}), CloudErrorCode::zoneNotFound);
    expectFailure(one().fetchZone(zone), CloudErrorCode::zoneNotFound);
    makeZone();
    EXPECT_TRUE(read(one()).records.empty());
}

TEST_P(CloudContract, AZoneIsThereForAllDevicesAndAfterANewStart)
{
    makeZone();
    run(two().fetchZone(zone));
    restart();
    run(one().fetchZone(zone));
}

TEST_P(CloudContract, AZoneThatIsCreatedAgainKeepsWhatIsInIt)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a"));
    const CloudCursor cursor = read(one()).cursor;
    run(two().createZone(zone));
    EXPECT_EQ(stored("a"), first);
    EXPECT_TRUE(read(one(), cursor).records.empty());
}

TEST_P(CloudContract, TwoDevicesThatCreateTheZoneAtOnceShareIt)
{
    const auto first = begin(one().createZone(zone));
    const auto second = begin(two().createZone(zone));
    (void)finish(first);
    (void)finish(second);
    const CloudRecord a = saved(one(), record("a"));
    const CloudRecord b = saved(two(), record("b"));
    EXPECT_EQ(read(one()).records.at("b"), b);
    EXPECT_EQ(read(two()).records.at("a"), a);
}

TEST_P(CloudContract, AZoneThatWasRemovedIsNotFoundWithACursorEither)
{
    makeZone();
    (void)saved(one(), record("a"));
    const CloudCursor cursor = read(one()).cursor;
    store().removeZone(zone);
    expectFailure(one().fetchZone(zone), CloudErrorCode::zoneNotFound);
    expectFailure(one().changes(zone, cursor), CloudErrorCode::zoneNotFound);
    expectFailure(one().changes(zone, std::nullopt), CloudErrorCode::zoneNotFound);
}

TEST_P(CloudContract, AZoneMadeAnewIsEmpty)
{
    makeZone();
    (void)saved(one(), record("a"));
    store().removeZone(zone);
    run(two().createZone(zone));
    const Reading reading = read(two());
    EXPECT_TRUE(reading.records.empty());
    EXPECT_TRUE(reading.deletions.empty());
}

TEST_P(CloudContract, AStoreOutOfReachIsAFailureInWords)
{
    makeZone();
    const CloudCursor cursor = read(one()).cursor;
    store().setReachable(false);
    expectFailure(one().fetchZone(zone), CloudErrorCode::other);
    expectFailure(one().createZone(zone), CloudErrorCode::other);
    expectFailure(one().changes(zone, cursor), CloudErrorCode::other);
    expectFailure(one().save({record("a")}), CloudErrorCode::other);
    expectFailure(container().userRecordName(), CloudErrorCode::other);
}

TEST_P(CloudContract, TheAccountOfAStoreOutOfReachIsNotAvailableOrCannotBeTold)
{
    makeZone();
    store().setReachable(false);
    try {
        EXPECT_FALSE(run(container().isAccountAvailable()));
    } catch (const CloudError& failure) {
        EXPECT_EQ(failure.code(), CloudErrorCode::other);
        expectSentence(failure);
    }
}

TEST_P(CloudContract, AStoreThatIsReachedAgainHasLostNothing)
{
    makeZone();
    const CloudRecord first = saved(one(), record("a"));
    const CloudCursor cursor = read(one()).cursor;
    store().setReachable(false);
    (void)failureOf(one().changes(zone, cursor));
    store().setReachable(true);
    EXPECT_TRUE(read(one(), cursor).records.empty());
    const CloudRecord second = saved(one(), changed(first, "next"));
    EXPECT_EQ(stored("a"), second);
}

} // namespace
} // namespace KestryCore
