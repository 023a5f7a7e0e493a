// The power fails before every file-system call of every operation in turn, and the disk loses
// none, some or all of what was not synced. Whatever it loses:
//
// - the store reopens on the state before or after, whole and not blocked;
// - a change that had been acknowledged is there;
// - the backup can be read whenever it could before, and preserved ledgers are still there;
// - the next change succeeds and leaves no temporary file behind.

#include "LedgerCoding.h"
#include "StoreOperations.h"

namespace KestryCore {
namespace {

enum class Outcome { cutOff, acknowledged };

using Check = std::function<void(StoreWorld&, Outcome)>;

/// Performs the operation in a fresh world with the power failing before the given call, starts
/// the machine again, and checks. Tells whether the operation got to its end.
Outcome cutPowerOnce(
    const StoreOperation& operation, int number, Unsynced unsynced, const Check& check)
{
    StoreWorld world;
    operation.prepare(world);
    world.files.cutPowerBefore(number);
    Outcome outcome = Outcome::acknowledged;
    try {
        operation.perform(world);
    } catch (const PowerCut&) {
        outcome = Outcome::cutOff;
    }
    const testing::ScopedTrace trace(__FILE__, __LINE__,
        "power cut before call " + std::to_string(number) + ": " + world.files.faultyCall()
            + ", unsynced data case " + std::to_string(static_cast<int>(unsynced)));
    world.close();
    world.files.restart(unsynced);
    check(world, outcome);
    return outcome;
}

void cutPowerEverywhere(const StoreOperation& operation, const Check& check)
{
    for (const Unsynced unsynced : {Unsynced::lost, Unsynced::namesKept, Unsynced::kept}) {
        int number = 1;
        while (cutPowerOnce(operation, number, unsynced, check) == Outcome::cutOff) {
            ++number;
        }
        EXPECT_GT(number, 5);
    }
}

/// The ledger before and after the operation when nothing goes wrong.
struct Course {
    LedgerData before;
    LedgerData after;
};

Course undisturbed(const StoreOperation& operation)
{
    StoreWorld world;
    operation.prepare(world);
    const LedgerData before = world.ledger();
    operation.perform(world);
    return {before, world.ledger()};
}

class TimeStorePowerCut : public testing::TestWithParam<StoreOperation> { };

TEST_P(TimeStorePowerCut, TheStoreReopensOnTheStateBeforeOrAfter)
{
    const Course course = undisturbed(GetParam());
    cutPowerEverywhere(GetParam(), [&](StoreWorld& world, Outcome outcome) {
        world.options.runningSession = RunningSessionPolicy::keep;
        world.open();
        EXPECT_EQ(world.errorMessage(), "");
        EXPECT_FALSE(world.store().blocked());
        const bool isAfter = world.ledger() == course.after;
        EXPECT_TRUE(isAfter || world.ledger() == course.before);
        EXPECT_TRUE(isAfter || outcome == Outcome::cutOff);
        if (GetParam().name != "FirstSave") {
            EXPECT_NO_THROW((void)world.readBackup());
        }
        expectNextChangeSucceeds(world);
    });
}

INSTANTIATE_TEST_SUITE_P(
    EverySave, TimeStorePowerCut, testing::ValuesIn(savingOperations()), operationName);
INSTANTIATE_TEST_SUITE_P(FirstSave, TimeStorePowerCut, testing::Values(firstSave()), operationName);

TEST(TimeStoreRestorePowerCut, TheDamagedLedgerIsNeverLostAndTheRestoreCanBeRepeated)
{
    cutPowerEverywhere(restoring(), [](StoreWorld& world, Outcome outcome) {
        EXPECT_EQ(world.backup(), encodeLedger(StoreWorld::connected(StoreWorld::pausedLedger())));
        const bool isReplaced = world.primary() != damagedPrimary;
        EXPECT_TRUE(isReplaced || outcome == Outcome::cutOff);
        EXPECT_TRUE(!isReplaced || !world.corruptCopies().empty());
        for (const auto& [path, copy] : world.corruptCopies()) {
            EXPECT_EQ(copy, damagedPrimary) << path;
        }
        world.open();
        EXPECT_EQ(world.store().blocked(), !isReplaced);
        if (!isReplaced) {
            world.store().restoreBackup();
        }
        EXPECT_EQ(world.active().id, StoreWorld::writing);
        expectNextChangeSucceeds(world);
    });
}

TEST(TimeStoreRecoveryPowerCut, TheTimeUpToTheCheckpointIsRecoveredExactlyOnce)
{
    cutPowerEverywhere(recovering(), [](StoreWorld& world, Outcome) {
        world.open();
        EXPECT_EQ(world.active().spans,
            (std::vector{TimeSpan{StoreWorld::clockTime(11), StoreWorld::clockTime(11, 30)}}));
        EXPECT_TRUE(world.active().isPaused());
        EXPECT_EQ(world.errorMessage(), "");
        expectNextChangeSucceeds(world);
    });
}

TEST(TimeStoreUpdatePowerCut, TheSuccessorCarriesOnOrPausesAtACheckpoint)
{
    const Date started = StoreWorld::clockTime(11);
    cutPowerEverywhere(preparingForUpdate(), [&](StoreWorld& world, Outcome outcome) {
        world.options.updateToken = StoreWorld::uuid(7);
        world.open();
        EXPECT_FALSE(world.files.content(StoreWorld::handoffPath).has_value());
        EXPECT_EQ(world.errorMessage(), "");
        if (outcome == Outcome::acknowledged) {
            EXPECT_EQ(world.active().runningSince, started);
        } else if (world.active().isPaused()) {
            EXPECT_EQ(
                world.active().spans.back(), (TimeSpan{started, world.active().checkpointAt}));
        }
    });
}

} // namespace
} // namespace KestryCore
