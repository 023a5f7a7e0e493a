#include "SleepProofTimer.h"

#include <gtest/gtest.h>

#include <optional>

#include "VirtualScheduler.h"

namespace KestryCore {
namespace {

/// A timer on a machine that may sleep, which the scheduler does not notice.
class SleepProofTimerTest : public testing::Test {
protected:
    SleepProofTimerTest()
    {
        timer.emplace(scheduler, [this] { return scheduler.now() * rate + slept; });
    }
    void start(double seconds)
    {
        timer->start(seconds, [this] { ++runs; });
    }

    VirtualScheduler scheduler;
    double slept = 0.0;
    double rate = 1.0;
    int runs = 0;
    std::optional<SleepProofTimer> timer;
};

TEST_F(SleepProofTimerTest, RunsOnceAfterItsSeconds)
{
    start(60);
    scheduler.advance(59.9);
    EXPECT_EQ(runs, 0);
    scheduler.advance(0.1);
    EXPECT_EQ(runs, 1);
    scheduler.advance(600);
    EXPECT_EQ(runs, 1);
}

TEST_F(SleepProofTimerTest, NeverRunsInTheCallThatStartsIt)
{
    start(0);
    EXPECT_EQ(runs, 0);
    scheduler.turn();
    EXPECT_EQ(runs, 1);
}

TEST_F(SleepProofTimerTest, SleepCountsOnceItIsTold)
{
    start(60);
    scheduler.advance(10);
    slept = 40;
    timer->machineWoke();
    scheduler.advance(9.9);
    EXPECT_EQ(runs, 0);
    scheduler.advance(0.1);
    EXPECT_EQ(runs, 1);
}

TEST_F(SleepProofTimerTest, WhatFellDueInSleepRunsInTheNextTurnAfterWaking)
{
    start(60);
    slept = 8 * 3600.0;
    timer->machineWoke();
    EXPECT_EQ(runs, 0);
    scheduler.turn();
    EXPECT_EQ(runs, 1);
}

TEST_F(SleepProofTimerTest, WithoutBeingToldItRunsLateButRuns)
{
    start(60);
    slept = 8 * 3600.0;
    scheduler.advance(60);
    EXPECT_EQ(runs, 1);
}

TEST_F(SleepProofTimerTest, WakingWithNothingToWaitForDoesNothing)
{
    timer->machineWoke();
    start(1);
    scheduler.advance(1);
    timer->machineWoke();
    scheduler.advance(10);
    EXPECT_EQ(runs, 1);
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(SleepProofTimerTest, IsNotEarlyWhereTheClocksDiffer)
{
    rate = 0.5;
    start(60);
    scheduler.advance(100);
    EXPECT_EQ(runs, 0);
    scheduler.advance(20);
    EXPECT_EQ(runs, 1);
}

TEST_F(SleepProofTimerTest, AnActionMayStartItAgainOrDestroyIt)
{
    timer->start(1, [this] {
        ++runs;
        timer->start(1, [this] {
            ++runs;
            timer.reset();
        });
    });
    scheduler.advance(2);
    EXPECT_EQ(runs, 2);
    EXPECT_FALSE(timer.has_value());
}

TEST_F(SleepProofTimerTest, IsCancelledWithItsTimer)
{
    start(1);
    timer.reset();
    scheduler.advance(2);
    EXPECT_EQ(runs, 0);
}

} // namespace
} // namespace KestryCore
