#include "TaskOwner.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>

#include "FrameWitness.h"
#include "Reply.h"
#include "VirtualScheduler.h"

namespace KestryCore {
namespace {

class TaskOwnerTest : public testing::Test {
protected:
    TaskOwnerTest()
    {
        owner.emplace(scheduler, [this](const std::exception_ptr& failure) {
            try {
                std::rethrow_exception(failure);
            } catch (const std::exception& known) {
                failures += known.what();
            } catch (int number) {
                failures += std::to_string(number);
            }
        });
    }

    Task<void> wait(double seconds)
    {
        const FrameWitness witness(frames);
        co_await Delay(scheduler, seconds);
        ++ended;
    }
    template <class Failure>
    Task<void> failAfter(double seconds, Failure failure)
    {
        co_await wait(seconds);
        throw failure;
    }
    /// Starts another task when it ends.
    Task<void> startAnother()
    {
        co_await wait(1);
        owner->start(wait(1));
    }

    VirtualScheduler scheduler;
    std::string failures;
    int frames = 0;
    int ended = 0;
    std::optional<TaskOwner> owner;
};

TEST_F(TaskOwnerTest, StartsATaskInTheCallAndLetsItsFrameGoAtItsEnd)
{
    owner->start(wait(1));
    EXPECT_EQ(frames, 1);
    EXPECT_EQ(owner->size(), 1U);
    scheduler.advance(1);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(frames, 0);
    EXPECT_EQ(owner->size(), 0U);
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(TaskOwnerTest, TasksRunSideBySide)
{
    owner->start(wait(2));
    owner->start(wait(1));
    scheduler.advance(1);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(owner->size(), 1U);
    scheduler.advance(1);
    EXPECT_EQ(ended, 2);
}

TEST_F(TaskOwnerTest, NoExceptionLeavesIntoTheLoop)
{
    owner->start(failAfter(0, std::runtime_error("broken")));
    owner->start(failAfter(1, 17));
    EXPECT_NO_THROW(scheduler.advance(1));
    EXPECT_EQ(failures, "broken17");
    EXPECT_EQ(owner->size(), 0U);
}

TEST_F(TaskOwnerTest, AFailureBeforeTheFirstWaitLeavesNotIntoTheCallEither)
{
    const auto failAtOnce = []() -> Task<void> {
        throw std::runtime_error("at once");
        co_return;
    };
    EXPECT_NO_THROW(owner->start(failAtOnce()));
    EXPECT_EQ(failures, "at once");
}

TEST_F(TaskOwnerTest, AHandlerThatFailsItselfBreaksNothing)
{
    owner.emplace(scheduler, [](const std::exception_ptr&) { throw 1; });
    owner->start(failAfter(1, 2));
    EXPECT_NO_THROW(scheduler.advance(1));
    EXPECT_EQ(owner->size(), 0U);
}

TEST_F(TaskOwnerTest, ATaskMayStartAnother)
{
    owner->start(startAnother());
    scheduler.advance(1);
    EXPECT_EQ(owner->size(), 1U);
    scheduler.advance(1);
    EXPECT_EQ(ended, 2);
    EXPECT_EQ(owner->size(), 0U);
}

TEST_F(TaskOwnerTest, AnOwnerThatGoesTakesItsFramesWithIt)
{
    owner->start(wait(1));
    owner->start(failAfter(5, 1));
    owner->start(startAnother());
    EXPECT_EQ(frames, 3);
    owner.reset();
    EXPECT_EQ(frames, 0);
    EXPECT_TRUE(scheduler.isIdle());
    scheduler.advance(10);
    EXPECT_EQ(ended, 0);
    EXPECT_EQ(failures, "");
}

} // namespace
} // namespace KestryCore
