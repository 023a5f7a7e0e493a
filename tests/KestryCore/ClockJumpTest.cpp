#include "ClockJump.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

class ClockJumpWatchTest : public testing::Test {
protected:
    ClockJumpWatchTest() { watch_.begin(watch_.read()); }

    /// So many seconds pass, and the clock goes on by so many.
    void pass(double seconds, double shown)
    {
        steady_ += seconds;
        date_ = date_ + shown;
    }
    [[nodiscard]] std::optional<ClockJump> found() const { return watch_.jump(watch_.read()); }

    Date date_{1000.0};
    double steady_ = 50.0;
    ClockJumpWatch watch_{[this] { return date_; }, [this] { return steady_; }};
};

TEST_F(ClockJumpWatchTest, TimeThatPassesIsNoJumpHoweverLong)
{
    pass(1e7, 1e7);
    EXPECT_EQ(found(), std::nullopt);
}

TEST_F(ClockJumpWatchTest, MoreThanAMinuteAheadIsAJump)
{
    pass(15.0, 15.0 + 60.0);
    EXPECT_EQ(found(), std::nullopt);
    pass(0.0, 0.5);
    EXPECT_EQ(found(), (ClockJump{60.5, Date{1015.0}}));
}

TEST_F(ClockJumpWatchTest, AClockThatWasSetBackIsLeftToOthers)
{
    pass(15.0, -7200.0);
    EXPECT_EQ(found(), std::nullopt);
}

TEST_F(ClockJumpWatchTest, SlowDriftIsNoJumpWhereReadingsFollowOneAnother)
{
    for (int tick = 0; tick < 100; ++tick) {
        pass(15.0, 16.0);
        ASSERT_EQ(found(), std::nullopt);
        watch_.begin(watch_.read());
    }
}

TEST_F(ClockJumpWatchTest, NothingIsFoundBeforeItBeginsOrWithoutASteadyClock)
{
    watch_.end();
    pass(0.0, 7200.0);
    EXPECT_EQ(found(), std::nullopt);
    ClockJumpWatch without([this] { return date_; }, {});
    without.begin(without.read());
    pass(0.0, 7200.0);
    EXPECT_EQ(without.jump(without.read()), std::nullopt);
}

} // namespace
} // namespace KestryCore
