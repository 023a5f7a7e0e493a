#include "SimulatedCloud.h"

#include "SimulatedCloudFixture.h"

namespace KestryCore {
namespace {

using SimulatedCloudTest = SimulatedCloudFixture;

Task<bool> discarding(CloudDatabase& database, std::vector<CloudRecord> versions)
{
    Task<void> task = database.discard(std::move(versions));
    co_await task;
    co_return true;
}

const CloudError* failureOf(const CloudRecordResult& result)
{
    return std::get_if<CloudError>(&result.result);
}

TEST_F(SimulatedCloudTest, ASaveGivesTheNewVersionAndARefusalTheServersRecord)
{
    ask(first().save({record(1)}), saved);
    pass(1.0);
    EXPECT_EQ(std::get<CloudRecord>(saved->front().result).serverVersion, "version 1");
    ask(second().save({record(2)}), saved);
    pass(1.0);
    const CloudError* const refusal = failureOf(saved->front());
    ASSERT_NE(refusal, nullptr);
    EXPECT_EQ(refusal->code(), CloudErrorCode::serverRecordChanged);
    EXPECT_EQ(refusal->serverRecord()->fields, record(1).fields);
}

TEST_F(SimulatedCloudTest, OfTwoWritersOnOneVersionTheLaterMayWinAndTheOtherIsTold)
{
    weather.letsWin = true;
    weather.next = {.there = 1.0, .back = 5.0};
    ask(first().save({record(1)}), saved);
    pass(0.5);
    std::optional<SimulatedCloud::Results> savedToo;
    ask(second().save({record(2)}), savedToo);
    pass(10.0);
    EXPECT_EQ(failureOf(saved->front())->serverRecord()->fields, record(2).fields);
    EXPECT_EQ(failureOf(savedToo->front()), nullptr);
}

TEST_F(SimulatedCloudTest, AWriterWhoWasAnsweredHasWon)
{
    weather.letsWin = true;
    ask(first().save({record(1)}), saved);
    pass(1.0);
    std::optional<SimulatedCloud::Results> savedToo;
    ask(second().save({record(2)}), savedToo);
    pass(1.0);
    EXPECT_EQ(failureOf(savedToo->front())->code(), CloudErrorCode::serverRecordChanged);
}

TEST_F(SimulatedCloudTest, AnAnsweredWriterMayBeOverruledAndIsToldSoUntilItTakesItBack)
{
    weather.letsOverrule = true;
    ask(first().save({record(1)}), saved);
    pass(1.0);
    ask(second().save({record(2)}), saved);
    pass(1.0);
    ASSERT_EQ(failureOf(saved->front()), nullptr);
    ask(first().changes(workspaceZone(), std::nullopt), changes);
    pass(1.0);
    ASSERT_EQ(changes->overruled.size(), 1U);
    EXPECT_EQ(changes->overruled.front().fields, record(1).fields);
    EXPECT_EQ(
        std::get<CloudRecord>(changes->modifications.front().result).fields, record(2).fields);
    std::optional<bool> done;
    ask(discarding(first(), changes->overruled), done);
    pass(1.0);
    EXPECT_TRUE(store.overruled().empty());
}

TEST_F(SimulatedCloudTest, ARecordMayFailAloneOrNotBeAnswered)
{
    weather.fate.failure = CloudError("Busy.").retryingAfter(2.1);
    ask(first().save({record(1)}), saved);
    pass(1.0);
    EXPECT_EQ(failureOf(saved->front())->retryAfterSeconds(), 2.1);
    weather.fate = {.isAnswered = false};
    ask(first().save({record(1)}), saved);
    pass(1.0);
    EXPECT_TRUE(saved->empty());
    EXPECT_EQ(store.lastChange(), 1U);
}

TEST_F(SimulatedCloudTest, AStoreInTroubleSaysSoAndDoesNothing)
{
    weather.words = "Restored.";
    ask(first().save({record(1)}), saved);
    pass(1.0);
    EXPECT_EQ(failure, "Restored.");
    EXPECT_EQ(store.lastChange(), 0U);
}

TEST_F(SimulatedCloudTest, AMissingZoneAndAnExpiredCursorAreToldAsSuch)
{
    ask(first().changes(workspaceZone(), CloudCursor{"odd"}), changes);
    pass(1.0);
    EXPECT_EQ(code, CloudErrorCode::changeTokenExpired);
    store.hideZone();
    ask(first().changes(workspaceZone(), std::nullopt), changes);
    pass(1.0);
    EXPECT_EQ(code, CloudErrorCode::zoneNotFound);
}

} // namespace
} // namespace KestryCore
