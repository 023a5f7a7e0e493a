#include "SimulatedCloudFixture.h"

namespace KestryCore {
namespace {

using CloudLineTest = SimulatedCloudFixture;

TEST_F(CloudLineTest, AnAnswerComesAfterBothWays)
{
    weather.next = {.there = 2.0, .back = 3.0};
    ask(first().changes(workspaceZone(), std::nullopt), changes);
    EXPECT_EQ(line.waitingFor(), CloudQuestion::changes);
    pass(4.9);
    EXPECT_FALSE(changes.has_value());
    pass(0.2);
    EXPECT_TRUE(changes.has_value());
    EXPECT_FALSE(line.waitingFor().has_value());
}

TEST_F(CloudLineTest, AnAnswerIsThatOfTheMomentAtWhichTheQuestionArrived)
{
    weather.next = {.there = 1.0, .back = 5.0};
    ask(first().changes(workspaceZone(), std::nullopt), changes);
    pass(2.0);
    store.save(record(1));
    pass(10.0);
    EXPECT_TRUE(changes->modifications.empty());
}

TEST_F(CloudLineTest, AnAnswerWaitsForASleepingMachine)
{
    ask(first().changes(workspaceZone(), std::nullopt), changes);
    program.sleep();
    pass(1000.0);
    EXPECT_FALSE(changes.has_value());
    program.wake();
    pass(0.0);
    EXPECT_TRUE(changes.has_value());
}

TEST_F(CloudLineTest, ALostQuestionFailsAndDoesNothing)
{
    weather.next = {.isHandled = false, .isAnswered = false};
    ask(first().save({record(1)}), saved);
    pass(1.0);
    EXPECT_EQ(failure, "The connection was lost.");
    EXPECT_EQ(line.failures().size(), 1U);
    EXPECT_TRUE(store.records().empty());
}

TEST_F(CloudLineTest, WhenOnlyTheAnswerIsLostTheStoreHasDoneIt)
{
    weather.next = {.isAnswered = false};
    ask(first().save({record(1)}), saved);
    pass(1.0);
    EXPECT_EQ(failure, "The connection was lost.");
    EXPECT_EQ(store.records().size(), 1U);
}

TEST_F(CloudLineTest, ALateDeliveryArrivesAfterItsProgramHasEnded)
{
    weather.next = {.there = 100.0};
    auto container = line.open();
    auto giveUp = std::make_optional<TaskOwner>(program, nullptr);
    giveUp->start([](Task<SimulatedCloud::Results> saving) -> Task<void> {
        co_await saving;
    }(container->privateDatabase().save({record(1)})));
    giveUp.reset();
    container.reset();
    pass(200.0);
    EXPECT_EQ(store.records().size(), 1U);
    EXPECT_TRUE(line.failures().empty());
}

TEST_F(CloudLineTest, AnAnswerThatComesTwiceIsTakenOnce)
{
    weather.next = {.isRepeated = true};
    ask(first().save({record(1)}), saved);
    pass(1.0);
    EXPECT_EQ(saved->size(), 1U);
    EXPECT_EQ(store.lastChange(), 1U);
}

TEST_F(CloudLineTest, AMachineThatIsCutOffReachesNothing)
{
    line.isOnline = false;
    ask(first().save({record(1)}), saved);
    pass(1.0);
    EXPECT_EQ(failure, "The connection was lost.");
    EXPECT_TRUE(store.records().empty());
}

TEST_F(CloudLineTest, AStrangerFindsAnEmptyStoreAndLeavesTheOtherAlone)
{
    store.save(record(1));
    line.account = "stranger";
    ask(first().changes(workspaceZone(), std::nullopt), changes);
    ask(first().save({record(2)}), saved);
    pass(1.0);
    EXPECT_TRUE(changes->modifications.empty());
    EXPECT_EQ(saved->size(), 1U);
    EXPECT_EQ(store.lastChange(), 1U);
}

TEST_F(CloudLineTest, NobodyGetsAnythingWithoutAnAccount)
{
    line.isSignedIn = false;
    ask(first().changes(workspaceZone(), std::nullopt), changes);
    pass(1.0);
    EXPECT_EQ(failure, "Nobody is signed in.");
}

} // namespace
} // namespace KestryCore
