#include <cmath>

#include "LedgerCoding.h"
#include "StoreFixture.h"
#include "UpdateHandoff.h"

namespace KestryCore {
namespace {

class TimeStoreUpdates : public StoreFixture {
protected:
    /// A store whose session runs since 11:00.
    void openRunning() { open(pausedLedger()).resume(clockTime(11)); }

    void handOver()
    {
        openRunning();
        store().prepareForUpdate(token, clockTime(11, 45));
        close();
    }

    void relaunch(const std::optional<Uuid>& withToken)
    {
        options.updateToken = withToken;
        open();
    }

    void expectCarriedOn()
    {
        EXPECT_EQ(active().runningSince, clockTime(11));
        EXPECT_FALSE(*store().recoveredSession());
        EXPECT_FALSE(files.content(handoffPath).has_value());
    }

    void expectPausedAtCheckpoint(Date checkpoint)
    {
        EXPECT_EQ(active().spans.back(), (TimeSpan{clockTime(11), checkpoint}));
        EXPECT_TRUE(active().isPaused());
        EXPECT_TRUE(*store().recoveredSession());
        EXPECT_FALSE(files.content(handoffPath).has_value());
    }

    const Uuid token = uuid(7);
};

TEST_F(TimeStoreUpdates, PreparingLeavesTheSessionRunningAndSaysExactlyWhichOne)
{
    handOver();
    const UpdateHandoff handoff = decodeUpdateHandoff(files.content(handoffPath).value());
    EXPECT_EQ(handoff.token, token);
    EXPECT_EQ(handoff.active, readPrimary().active);
    EXPECT_EQ(handoff.active->runningSince, clockTime(11));
    EXPECT_EQ(handoff.active->checkpointAt, clockTime(11, 45));
}

TEST_F(TimeStoreUpdates, TheSuccessorWithTheTokenCarriesTheSessionOn)
{
    handOver();
    const std::string before = primary();
    relaunch(token);
    expectCarriedOn();
    EXPECT_EQ(primary(), before);
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(TimeStoreUpdates, AHandoffWorksOnce)
{
    handOver();
    relaunch(token);
    relaunch(token);
    expectPausedAtCheckpoint(clockTime(11, 45));
}

TEST_F(TimeStoreUpdates, WithoutTheTokenOrWithAnotherTheSessionIsPausedAndTheHandoffGone)
{
    for (const std::optional<Uuid>& other : {std::optional<Uuid>(), std::optional(uuid(8))}) {
        handOver();
        relaunch(other);
        expectPausedAtCheckpoint(clockTime(11, 45));
    }
}

TEST_F(TimeStoreUpdates, ASessionChangedInTheFileByHandIsPaused)
{
    handOver();
    LedgerData changed = readPrimary();
    changed.active->title += "!";
    putPrimary(changed);
    relaunch(token);
    expectPausedAtCheckpoint(clockTime(11, 45));
}

TEST_F(TimeStoreUpdates, ASessionMissingOnEitherSideIsNotCarriedOn)
{
    openRunning();
    files.put(handoffPath, encodeUpdateHandoff({token, std::nullopt}));
    relaunch(token);
    expectPausedAtCheckpoint(clockTime(11));
    files.put(handoffPath, encodeUpdateHandoff({token, active()}));
    open(sampleLedger());
    EXPECT_FALSE(ledger().active.has_value());
    EXPECT_FALSE(files.content(handoffPath).has_value());
}

TEST_F(TimeStoreUpdates, APausedSessionStaysPausedWithoutANotice)
{
    open(pausedLedger()).prepareForUpdate(token, now);
    relaunch(token);
    EXPECT_EQ(active(), *pausedLedger().active);
    EXPECT_FALSE(*store().recoveredSession());
}

TEST_F(TimeStoreUpdates, WithNoSessionTheHandoffHoldsOnlyTheToken)
{
    open(sampleLedger()).prepareForUpdate(token, now);
    EXPECT_EQ(files.content(handoffPath), "{\"token\":\"" + token.text() + "\"}");
    relaunch(token);
    EXPECT_FALSE(*store().recoveredSession());
    EXPECT_FALSE(files.content(handoffPath).has_value());
}

TEST_F(TimeStoreUpdates, ADamagedHandoffIsRemovedWithoutAWordAndTheSessionPaused)
{
    handOver();
    files.put(handoffPath, "{\"token\":");
    relaunch(token);
    expectPausedAtCheckpoint(clockTime(11, 45));
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(TimeStoreUpdates, WhatACrashLeftOfAHandoffIsRemovedByTheNextOpening)
{
    putPrimary(sampleLedger());
    files.put(handoffPath + ".new", "torn");
    relaunch(token);
    EXPECT_FALSE(files.content(handoffPath + ".new").has_value());
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(TimeStoreUpdates, AHandoffThatCannotBeRemovedIsToldAndTheSessionPaused)
{
    openRunning();
    files.putDirectory(handoffPath);
    relaunch(token);
    EXPECT_TRUE(active().isPaused());
    EXPECT_TRUE(*store().recoveredSession());
    EXPECT_EQ(errorMessage(),
        "The update handoff could not be consumed. The timer was paused to protect your time. "
        "update-handoff.json could not be removed: Is a directory.");
}

TEST_F(TimeStoreUpdates, OnTheBackupAHandoffIsRemovedButNotTakenUp)
{
    handOver();
    putBackup(readPrimary());
    corruptPrimary();
    relaunch(token);
    expectPausedAtCheckpoint(clockTime(11, 45));
}

TEST_F(TimeStoreUpdates, WithBothFilesBadTheHandoffIsNotLookedAt)
{
    handOver();
    const auto before = files.content(handoffPath);
    corruptPrimary();
    corruptBackup();
    relaunch(token);
    EXPECT_EQ(files.content(handoffPath), before);
}

TEST_F(TimeStoreUpdates, PreparingTwiceKeepsTheLatestHandoff)
{
    openRunning();
    store().prepareForUpdate(uuid(8), clockTime(11, 30));
    store().prepareForUpdate(token, clockTime(11, 45));
    relaunch(token);
    expectCarriedOn();
}

TEST_F(TimeStoreUpdates, PreparingSavesEvenWithNothingRunning)
{
    open(sampleLedger());
    const std::string before = primary();
    store().prepareForUpdate(token, now);
    EXPECT_EQ(backup(), before);
}

TEST_F(TimeStoreUpdates, OnlyTheCurrentTimeOrAPastOneWillDo)
{
    openRunning();
    files.put(handoffPath, "left over");
    const std::string message = "Prepare the update using the current time.";
    for (const Date date : {now + 0.001, Date{std::nan("")}, Date{-INFINITY}, Date{INFINITY}}) {
        expectRefused([&] { store().prepareForUpdate(token, date); }, message);
    }
}

TEST_F(TimeStoreUpdates, APreparationThatFailsLeavesNoOldHandoffBehind)
{
    openRunning();
    files.put(handoffPath, "left over");
    EXPECT_THROW(store().prepareForUpdate(token, clockTime(10)), LedgerError);
    EXPECT_EQ(errorMessage(), "Checkpoint cannot move backwards.");
    EXPECT_FALSE(files.content(handoffPath).has_value());
    EXPECT_EQ(active().checkpointAt, clockTime(11));
}

TEST_F(TimeStoreUpdates, ABlockedStoreHandsNothingOver)
{
    putBackup(pausedLedger());
    corruptPrimary();
    open();
    expectRefused([&] { store().prepareForUpdate(token, now); },
        "Saving is disabled to protect your unreadable ledger. Restore the data file before "
        "continuing.");
}

TEST_F(TimeStoreUpdates, ADemoHandsNothingOverAndRefusesNothing)
{
    options.demoLedger = runningLedger();
    open().prepareForUpdate(token, now + 100.0);
    EXPECT_TRUE(files.contents().empty());
    EXPECT_EQ(errorMessage(), "");
}

} // namespace
} // namespace KestryCore
