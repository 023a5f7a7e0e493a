#include "MachineLoop.h"

#include <gtest/gtest.h>

#include <string>

namespace KestryCore {
namespace {

/// A loop that writes down what it runs.
class MachineLoopFixture : public testing::Test {
protected:
    Scheduler::Action say(const std::string& word)
    {
        return [this, word] { said += word; };
    }
    /// Lets time pass to the next action, and runs it.
    void runNext()
    {
        seconds = loop.nextDue().value();
        loop.runNext();
    }

    double seconds = 100.0;
    MachineLoop loop{seconds};
    std::string said;
};

TEST_F(MachineLoopFixture, RunsWhatIsDueInTheOrderOfTimeAndThenOfAsking)
{
    loop.later(2.0, say("c"));
    loop.later(1.0, say("a"));
    loop.later(1.0, say("b"));
    runNext();
    runNext();
    EXPECT_EQ(said, "ab");
    EXPECT_EQ(seconds, 101.0);
    runNext();
    EXPECT_EQ(said, "abc");
    EXPECT_FALSE(loop.nextDue().has_value());
}

TEST_F(MachineLoopFixture, TimersStandStillWhileTheMachineSleeps)
{
    const Timer timer = loop.after(60.0, say("a"));
    seconds += 10.0;
    loop.sleep();
    seconds += 1000.0;
    EXPECT_EQ(loop.now(), 110.0);
    EXPECT_FALSE(loop.nextDue().has_value());
    loop.wake();
    EXPECT_EQ(loop.nextDue(), 1160.0);
}

TEST_F(MachineLoopFixture, WhatIsPostedDuringSleepRunsAtWaking)
{
    loop.sleep();
    seconds += 1000.0;
    loop.post(say("a"));
    loop.wake();
    EXPECT_EQ(loop.nextDue(), seconds);
}

TEST_F(MachineLoopFixture, ACancelledTimerIsNeverDue)
{
    Timer timer = loop.after(1.0, say("a"));
    timer.cancel();
    EXPECT_FALSE(loop.nextDue().has_value());
}

TEST_F(MachineLoopFixture, NothingHappensAfterTheProgramHasEnded)
{
    const Timer timer = loop.after(1.0, say("a"));
    loop.post(say("b"));
    loop.clear();
    EXPECT_FALSE(loop.nextDue().has_value());
}

} // namespace
} // namespace KestryCore
