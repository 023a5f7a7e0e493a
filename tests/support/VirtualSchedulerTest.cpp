#include "VirtualScheduler.h"

#include <gtest/gtest.h>

#include <string>

namespace KestryCore {
namespace {

class VirtualSchedulerTest : public ::testing::Test {
protected:
    VirtualScheduler scheduler;
    std::string order;
};

TEST_F(VirtualSchedulerTest, ActionsRunAtTheirMomentsInOrder)
{
    const Timer late =
        scheduler.after(2, [&] { order += "late@" + std::to_string(int(scheduler.now())); });
    const Timer early = scheduler.after(1, [&] { order += "early "; });
    scheduler.post([&] { order += "posted "; });
    EXPECT_EQ(order, "");
    scheduler.advance(5);
    EXPECT_EQ(order, "posted early late@2");
    EXPECT_EQ(scheduler.now(), 5);
}

TEST_F(VirtualSchedulerTest, ATimerThatIsLetGoNeverRuns)
{
    {
        const Timer timer = scheduler.after(1, [&] { order += "x"; });
        EXPECT_FALSE(scheduler.isIdle());
    }
    EXPECT_TRUE(scheduler.isIdle());
    scheduler.advance(5);
    EXPECT_EQ(order, "");
}

TEST_F(VirtualSchedulerTest, ARepetitionKeepsItsBeat)
{
    Timer timer;
    const std::function<void()> beat = [&] {
        order += "b";
        timer = scheduler.after(15, beat);
    };
    timer = scheduler.after(15, beat);
    scheduler.advance(60);
    EXPECT_EQ(order, "bbbb");
}

TEST_F(VirtualSchedulerTest, TheWallClockFollows)
{
    const Clock clock = scheduler.wallClock(Date{1000});
    scheduler.advance(7.5);
    EXPECT_EQ(clock(), Date{1007.5});
}

} // namespace
} // namespace KestryCore
