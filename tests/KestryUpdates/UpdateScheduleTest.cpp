#include "UpdateSchedule.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "VirtualScheduler.h"

namespace Kestry {
namespace {

using namespace KestryCore;

constexpr double hour = 3600.0;
constexpr double day = 86'400.0;

class UpdateScheduleTest : public testing::Test {
protected:
    /// A program that runs from now on.
    void startProgram(bool isOn = true)
    {
        schedule.emplace(
            UpdateSchedule::Platform{scheduler, [this] { return now(); }, [this] { return random; },
                {[this] { return kept; }, [this](Date date) { kept = date; }}},
            [this] {
                moments.push_back(now().seconds);
                return mayCheck;
            });
        schedule->setOn(isOn);
    }
    void endProgram() { schedule.reset(); }
    Date now() { return Date{800'000'000.0 + clockOffset} + scheduler.now(); }

    VirtualScheduler scheduler;
    double clockOffset = 0.0;
    double random = 0.5;
    bool mayCheck = true;
    std::optional<Date> kept;
    std::vector<double> moments;
    std::optional<UpdateSchedule> schedule;
};

TEST_F(UpdateScheduleTest, SwitchedOffItNeverChecks)
{
    startProgram(false);
    scheduler.advance(100 * day);
    EXPECT_TRUE(moments.empty());
    EXPECT_TRUE(scheduler.isIdle());
    EXPECT_FALSE(kept);
}

TEST_F(UpdateScheduleTest, SwitchedOnItChecksOnceADay)
{
    startProgram();
    scheduler.advance(100 * day);
    EXPECT_GE(moments.size(), 98u);
    EXPECT_LE(moments.size(), 100u);
}

TEST_F(UpdateScheduleTest, NoTwoChecksComeOnOneDayWhateverChanceSays)
{
    startProgram();
    for (int turn = 0; turn < 100; ++turn) {
        random = turn % 2 == 0 ? 0.0 : 0.999;
        scheduler.advance(day);
    }
    for (std::size_t next = 1; next < moments.size(); ++next) {
        EXPECT_NE(std::floor(moments[next] / day), std::floor(moments[next - 1] / day));
    }
    EXPECT_GT(moments.size(), 40u);
}

TEST_F(UpdateScheduleTest, TheMomentIsARandomOneOfTheDay)
{
    for (const double chance : {0.1, 0.5, 0.9}) {
        random = chance;
        kept.reset();
        startProgram();
        EXPECT_NEAR(std::fmod(kept->seconds, day), chance * day, 1.0);
    }
}

TEST_F(UpdateScheduleTest, SwitchingOffEndsIt)
{
    startProgram();
    scheduler.advance(3 * day);
    const std::size_t before = moments.size();
    schedule->setOn(false);
    scheduler.advance(10 * day);
    EXPECT_EQ(moments.size(), before);
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(UpdateScheduleTest, AMissedMomentIsMadeUpForSomeMinutesAfterTheStart)
{
    kept = now() + -3 * day;
    startProgram();
    scheduler.advance(59);
    EXPECT_TRUE(moments.empty());
    scheduler.advance(600);
    EXPECT_EQ(moments.size(), 1u);
}

TEST_F(UpdateScheduleTest, StartingOftenDoesNotCheckOften)
{
    for (int start = 0; start < 48; ++start) {
        startProgram();
        scheduler.advance(hour);
        endProgram();
    }
    EXPECT_LE(moments.size(), 2u);
    EXPECT_GE(moments.size(), 1u);
}

TEST_F(UpdateScheduleTest, ACheckOfTheUsersMovesTheNextToAnotherDay)
{
    startProgram();
    const Date planned = *kept;
    scheduler.advance(planned - now() - 1.0);
    schedule->plan();
    scheduler.advance(hour);
    EXPECT_TRUE(moments.empty());
    EXPECT_GT(*kept, planned);
}

TEST_F(UpdateScheduleTest, ACheckThatIsRefusedIsTriedAgainEachHour)
{
    kept = now();
    mayCheck = false;
    startProgram();
    scheduler.advance(3 * hour + 700);
    EXPECT_EQ(moments.size(), 4u);
    mayCheck = true;
    scheduler.advance(hour);
    EXPECT_EQ(moments.size(), 5u);
    scheduler.advance(hour);
    EXPECT_EQ(moments.size(), 5u);
}

TEST_F(UpdateScheduleTest, AClockThatIsSetBackDoesNotStopItForYears)
{
    startProgram();
    clockOffset = -3650 * day;
    scheduler.advance(3 * day);
    EXPECT_GE(moments.size(), 1u);
}

TEST_F(UpdateScheduleTest, AKeptMomentThatIsNoDateIsReplaced)
{
    kept = Date{std::nan("")};
    startProgram();
    EXPECT_TRUE(kept->isFinite());
    scheduler.advance(3 * day);
    EXPECT_GE(moments.size(), 1u);
}

} // namespace
} // namespace Kestry
