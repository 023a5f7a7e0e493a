#include "StoreFixture.h"

namespace KestryCore {
namespace {

constexpr double minute = 60.0;
constexpr double hour = 3600.0;

/// A store that has a clock beside the one that people set.
class TimeStoreClock : public StoreFixture {
protected:
    TimeStoreClock() { steadySeconds = 5000.0; }

    /// Writing runs since 12:00.
    void startAtNoon()
    {
        open(sampleLedger());
        store().start(acme, website, "Writing", now);
    }
    void pass(double seconds)
    {
        now = now + seconds;
        *steadySeconds += seconds;
    }
    void setClockForward(double seconds) { now = now + seconds; }
    [[nodiscard]] const std::optional<ClockJump>& jump() { return *store().clockJump(); }
};

TEST_F(TimeStoreClock, ACheckpointAfterAJumpPausesWhereBothClocksAgree)
{
    startAtNoon();
    pass(15);
    store().checkpoint(now);
    pass(10);
    setClockForward(744 * hour);
    store().checkpoint(now);
    EXPECT_TRUE(active().isPaused());
    EXPECT_EQ(active().checkpointAt, clockTime(12, 0, 25));
    EXPECT_EQ(active().spans, (std::vector{TimeSpan{clockTime(12), clockTime(12, 0, 25)}}));
    EXPECT_EQ(jump(), (ClockJump{744 * hour, clockTime(12, 0, 25)}));
    EXPECT_TRUE(readPrimary() == ledger());
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(TimeStoreClock, TheNoticeStaysUntilItIsDismissed)
{
    startAtNoon();
    setClockForward(hour);
    store().checkpoint(now);
    store().resume(now);
    EXPECT_TRUE(jump());
    store().dismissClockJump();
    EXPECT_FALSE(jump());
}

TEST_F(TimeStoreClock, EveryWayToEndAnIntervalEndsItWhereBothClocksAgree)
{
    startAtNoon();
    pass(30);
    setClockForward(2 * hour);
    store().pause(now);
    EXPECT_EQ(active().checkpointAt, clockTime(12, 0, 30));
    store().resume(now);
    pass(20);
    setClockForward(2 * hour);
    const Uuid id = store().stop(now);
    EXPECT_EQ(entry(id).duration(), 50.0);
    EXPECT_EQ(jump()->hasEndedIt, true);
}

TEST_F(TimeStoreClock, AnEarlierMomentOfTheCallersIsTakenAsItIs)
{
    startAtNoon();
    pass(10 * minute);
    setClockForward(2 * hour);
    store().pause(clockTime(12, 5));
    EXPECT_EQ(active().checkpointAt, clockTime(12, 5));
    EXPECT_FALSE(jump());
}

TEST_F(TimeStoreClock, WhatIsShownNeverCountsTheJump)
{
    startAtNoon();
    pass(40);
    setClockForward(2 * hour);
    EXPECT_EQ(store().elapsed(now), 40.0);
    EXPECT_EQ(store().countedUntil(now), clockTime(12, 0, 40));
    EXPECT_EQ(store().countedUntil(clockTime(12)), clockTime(12));
}

TEST_F(TimeStoreClock, RenamingInBetweenHidesNoJump)
{
    startAtNoon();
    setClockForward(2 * hour);
    store().renameActiveSession(active().id, "Reading");
    addClient();
    pass(15);
    store().checkpoint(now);
    EXPECT_EQ(active().checkpointAt, clockTime(12, 0, 15));
}

TEST_F(TimeStoreClock, AMinuteAheadIsTakenForAClockThatWasPutRight)
{
    startAtNoon();
    pass(15);
    setClockForward(59);
    store().checkpoint(now);
    EXPECT_EQ(active().checkpointAt, clockTime(12, 1, 14));
    EXPECT_FALSE(active().isPaused());
}

TEST_F(TimeStoreClock, SleepThatNobodyToldOfIsNoJump)
{
    startAtNoon();
    pass(9 * hour);
    store().checkpoint(now);
    EXPECT_EQ(active().checkpointAt, clockTime(21));
    EXPECT_FALSE(jump());
}

TEST_F(TimeStoreClock, AClockPutRightAgainFindsASessionThatGoesOn)
{
    startAtNoon();
    setClockForward(48 * hour);
    pass(15);
    store().checkpoint(now);
    setClockForward(-48 * hour);
    pass(minute);
    store().resume(now);
    pass(minute);
    store().pause(now);
    EXPECT_EQ(store().elapsed(now), 15 + minute);
}

TEST_F(TimeStoreClock, AClockSetWhileNothingRunsIsTakenAsItIs)
{
    open(pausedLedger());
    setClockForward(48 * hour);
    store().resume(now);
    pass(15);
    store().checkpoint(now);
    EXPECT_FALSE(active().isPaused());
    EXPECT_FALSE(jump());
}

TEST_F(TimeStoreClock, AClockThatWentBackFirstEndsNothingBeforeTheCheckpoint)
{
    startAtNoon();
    pass(30 * minute);
    store().checkpoint(now);
    setClockForward(-10 * minute);
    EXPECT_THROW(store().checkpoint(now), LedgerError);
    setClockForward(3 * hour);
    store().checkpoint(now);
    EXPECT_EQ(active().checkpointAt, clockTime(12, 30));
    EXPECT_EQ(store().elapsed(now), 30 * minute);
}

TEST_F(TimeStoreClock, APauseThatCannotBeSavedIsTriedAgainAtItsTime)
{
    startAtNoon();
    setClockForward(2 * hour);
    files.failCall(1, 5);
    EXPECT_THROW(store().checkpoint(now), LedgerError);
    EXPECT_FALSE(jump());
    EXPECT_FALSE(active().isPaused());
    files.heal();
    pass(15);
    store().checkpoint(now);
    EXPECT_EQ(active().checkpointAt, clockTime(12, 0, 15));
    EXPECT_TRUE(jump());
}

TEST_F(TimeStoreClock, AnUpdateAfterAJumpHandsAPausedSessionOver)
{
    startAtNoon();
    setClockForward(2 * hour);
    store().prepareForUpdate(uuid(7), now);
    EXPECT_TRUE(active().isPaused());
    EXPECT_EQ(active().checkpointAt, clockTime(12));
}

TEST_F(TimeStoreClock, AStoreWithoutASteadyClockTakesEveryDateForRight)
{
    steadySeconds.reset();
    startAtNoon();
    setClockForward(2 * hour);
    store().checkpoint(now);
    EXPECT_EQ(active().checkpointAt, clockTime(14));
}

} // namespace
} // namespace KestryCore
