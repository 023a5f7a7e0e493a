#include "Task.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "FrameWitness.h"
#include "Reply.h"
#include "TaskOwner.h"
#include "VirtualScheduler.h"

namespace KestryCore {
namespace {

/// Tasks in virtual time, and what they have done in the order of doing.
class TaskTest : public testing::Test {
protected:
    void start(Task<void> task) { owner.start(std::move(task)); }

    Task<int> number(int value)
    {
        order += "n";
        co_return value;
    }
    Task<int> numberAfter(double seconds, int value)
    {
        const FrameWitness witness(frames);
        co_await Delay(scheduler, seconds);
        co_return value;
    }
    Task<int> failure(double seconds)
    {
        const FrameWitness witness(frames);
        co_await Delay(scheduler, seconds);
        throw std::runtime_error("broken");
    }
    Task<void> note(Task<int> task)
    {
        const FrameWitness witness(frames);
        const int value = co_await task;
        order += std::to_string(value);
    }
    Task<void> noteFailure(Task<int> task)
    {
        try {
            co_await task;
        } catch (const std::runtime_error& failure) {
            order += failure.what();
        }
    }

    VirtualScheduler scheduler;
    std::string order;
    int frames = 0;
    TaskOwner owner{scheduler, [this](std::exception_ptr) { order += "!"; }};
};

TEST_F(TaskTest, NothingRunsBeforeItIsAwaited)
{
    Task<int> task = number(7);
    EXPECT_EQ(order, "");
    start(note(std::move(task)));
    EXPECT_EQ(order, "n7");
}

TEST_F(TaskTest, ATaskThatNobodyTakesDoesNothing)
{
    {
        const Task<int> task = number(7);
    }
    scheduler.advance(1);
    EXPECT_EQ(order, "");
}

TEST_F(TaskTest, AwaitingGivesTheResultWhenItIsThere)
{
    start(note(numberAfter(5, 42)));
    scheduler.advance(4);
    EXPECT_EQ(order, "");
    scheduler.advance(1);
    EXPECT_EQ(order, "42");
    EXPECT_EQ(frames, 0);
}

TEST_F(TaskTest, AwaitingThrowsWhatTheTaskThrew)
{
    start(noteFailure(failure(1)));
    scheduler.advance(1);
    EXPECT_EQ(order, "broken");
    EXPECT_EQ(frames, 0);
}

Task<std::unique_ptr<int>> boxed(int value)
{
    co_return std::make_unique<int>(value);
}

TEST_F(TaskTest, AResultIsMovedOut)
{
    const auto unbox = [](std::string& into) -> Task<void> {
        const std::unique_ptr<int> box = co_await boxed(3);
        into += std::to_string(*box);
    };
    start(unbox(order));
    EXPECT_EQ(order, "3");
}

TEST_F(TaskTest, DestroyingATaskThatWaitsCancelsItAndAllThatItAwaits)
{
    {
        TaskOwner shortLived(scheduler, [](std::exception_ptr) { FAIL(); });
        shortLived.start(note(numberAfter(5, 1)));
        shortLived.start(note(failure(5)));
        EXPECT_EQ(frames, 4);
    }
    EXPECT_EQ(frames, 0);
    EXPECT_TRUE(scheduler.isIdle());
    scheduler.advance(10);
    EXPECT_EQ(order, "");
}

TEST_F(TaskTest, ATaskMovesWithItsFrame)
{
    Task<int> task = numberAfter(1, 5);
    Task<int> other;
    other = std::move(task);
    start(note(std::move(other)));
    scheduler.advance(1);
    EXPECT_EQ(order, "5");
}

/// Remembers how deep the stack was at the first and the last of many calls.
Task<int> depthHere(std::uintptr_t& place)
{
    const int here = 0;
    place = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    co_return here;
}

Task<void> awaitOften(int times, std::uintptr_t& first, std::uintptr_t& last)
{
    co_await depthHere(first);
    for (int time = 0; time < times; ++time) {
        co_await depthHere(last);
    }
}

TEST_F(TaskTest, ALoopOverTasksThatNeedNoWaitNeedsNoDeeperStack)
{
    std::uintptr_t first = 0;
    std::uintptr_t last = 0;
    start(awaitOften(100'000, first, last));
    EXPECT_EQ(first, last);
}

Task<void> waitOften(Scheduler& scheduler, int times, std::uintptr_t& first, std::uintptr_t& last)
{
    const auto wait = [](Scheduler& on, std::uintptr_t& place) -> Task<void> {
        co_await Delay(on, 1);
        co_await depthHere(place);
    };
    co_await wait(scheduler, first);
    for (int time = 0; time < times; ++time) {
        co_await wait(scheduler, last);
    }
}

TEST_F(TaskTest, NorDoesALoopOverTasksThatWait)
{
    std::uintptr_t first = 0;
    std::uintptr_t last = 0;
    start(waitOften(scheduler, 1000, first, last));
    scheduler.advance(2000);
    EXPECT_NE(last, 0U);
    EXPECT_EQ(first, last);
}

} // namespace
} // namespace KestryCore
