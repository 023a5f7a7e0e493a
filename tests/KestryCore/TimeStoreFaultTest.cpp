// Every file-system call of every operation fails in turn, once, or from then on for as long as
// the operation lasts. Whatever fails:
//
// - the published ledger is the old one when the operation was refused, the new one otherwise;
// - the primary holds what is published, whole, and the backup can be read;
// - the next change succeeds, unless the primary could not be verified: then saving is blocked
//   and a restore leads on.

#include "LedgerCoding.h"
#include "StoreOperations.h"
#include "UpdateHandoff.h"

namespace KestryCore {
namespace {

enum class Fault { once, lasting };

/// Performs the operation with its N-th call failing. True when it was not refused.
bool performWithFault(StoreWorld& world, const StoreOperation& operation, int number, Fault fault)
{
    if (fault == Fault::once) {
        world.files.failCall(number, ENOSPC);
    } else {
        world.files.failCallsFrom(number, EIO);
    }
    try {
        operation.perform(world);
        return true;
    } catch (const LedgerError& refusal) {
        EXPECT_TRUE(world.errorMessage().ends_with(refusal.what()));
        return false;
    }
}

/// Runs a check for each call of an operation, with that call failing, until none is left.
/// The check is told whether the operation was not refused.
void failEachCall(const StoreOperation& operation, Fault fault,
    const std::function<void(StoreWorld&, const LedgerData& before, bool succeeded)>& check)
{
    for (int number = 1;; ++number) {
        StoreWorld world;
        operation.prepare(world);
        const LedgerData before = operation.name == "Recover" ? LedgerData{} : world.ledger();
        const bool succeeded = performWithFault(world, operation, number, fault);
        const bool faultHappened = world.files.faultHappened();
        const std::string call = world.files.faultyCall();
        world.files.heal();
        const testing::ScopedTrace trace(
            __FILE__, __LINE__, "call " + std::to_string(number) + ": " + call);
        EXPECT_EQ(world.files.openHandles(), 0u);
        check(world, before, succeeded);
        if (!faultHappened) {
            EXPECT_TRUE(succeeded);
            EXPECT_GT(number, 5);
            return;
        }
    }
}

class TimeStoreFault : public testing::TestWithParam<StoreOperation> {
protected:
    static void expectBeforeOrAfter(StoreWorld& world, const LedgerData& before, bool succeeded)
    {
        EXPECT_EQ(world.ledger() == before, !succeeded);
        if (world.files.content(StoreWorld::primaryPath)) {
            EXPECT_TRUE(world.readPrimary() == world.ledger());
        } else {
            EXPECT_TRUE(world.ledger() == LedgerData{});
        }
        if (world.files.content(StoreWorld::backupPath)) {
            EXPECT_NO_THROW((void)world.readBackup());
        }
        if (*world.store().recoveryAvailable()) {
            world.store().restoreBackup();
        }
        if (!world.store().blocked()) {
            expectNextChangeSucceeds(world);
        }
    }
};

TEST_P(TimeStoreFault, AFailingCallLeavesTheStateBeforeOrAfter)
{
    failEachCall(GetParam(), Fault::once, expectBeforeOrAfter);
}

TEST_P(TimeStoreFault, ADiskThatStaysBrokenLeavesTheStateBeforeOrAfter)
{
    failEachCall(GetParam(), Fault::lasting, expectBeforeOrAfter);
}

TEST_P(TimeStoreFault, OnlyAPrimaryThatCouldNotBeVerifiedBlocks)
{
    for (int number = 1;; ++number) {
        StoreWorld world;
        GetParam().prepare(world);
        performWithFault(world, GetParam(), number, Fault::once);
        if (!world.files.faultHappened()) {
            break;
        }
        const std::string& call = world.files.faultyCall();
        const bool isRead = call == StoreWorld::primaryPath + " read"
            || call == StoreWorld::primaryPath + " measured"
            || call == StoreWorld::primaryPath + " identified"
            || call == StoreWorld::primaryPath + " read from";
        EXPECT_EQ(world.store().blocked(), isRead) << call;
        EXPECT_EQ(*world.store().recoveryAvailable(), isRead) << call;
    }
}

TEST_P(TimeStoreFault, OnceThePrimaryHasItsNewNameTheChangeHasHappened)
{
    bool renamed = false;
    for (int number = 1;; ++number) {
        StoreWorld world;
        GetParam().prepare(world);
        const bool succeeded = performWithFault(world, GetParam(), number, Fault::lasting);
        if (!world.files.faultHappened()) {
            break;
        }
        EXPECT_EQ(succeeded, renamed) << world.files.faultyCall();
        renamed = renamed || world.files.faultyCall() == StoreWorld::primaryPath + " replaced";
    }
    EXPECT_TRUE(renamed);
}

INSTANTIATE_TEST_SUITE_P(
    EverySave, TimeStoreFault, testing::ValuesIn(savingOperations()), operationName);
INSTANTIATE_TEST_SUITE_P(FirstSave, TimeStoreFault, testing::Values(firstSave()), operationName);

void expectRestoreRepeatable(StoreWorld& world, const LedgerData& before, bool succeeded)
{
    EXPECT_EQ(world.backup(), encodeLedger(StoreWorld::connected(StoreWorld::pausedLedger())));
    for (const auto& [path, copy] : world.corruptCopies()) {
        EXPECT_EQ(copy, damagedPrimary) << path;
    }
    if (succeeded) {
        EXPECT_TRUE(world.readPrimary() == world.ledger());
        EXPECT_FALSE(world.corruptCopies().empty());
        EXPECT_EQ(world.errorMessage(), "");
    } else {
        EXPECT_TRUE(world.errorMessage().starts_with(
            "Backup restoration failed. Your existing files were preserved. "));
        EXPECT_TRUE(world.ledger() == before);
        EXPECT_EQ(world.primary(), damagedPrimary);
        EXPECT_TRUE(world.store().blocked() && *world.store().recoveryAvailable());
        world.store().restoreBackup();
    }
    expectNextChangeSucceeds(world);
}

TEST(TimeStoreRestoreFault, AFailedRestoreChangesNothingAndCanBeRepeated)
{
    failEachCall(restoring(), Fault::once, expectRestoreRepeatable);
    failEachCall(restoring(), Fault::lasting, expectRestoreRepeatable);
}

void expectSessionRunsOn(StoreWorld& world, const LedgerData&, bool succeeded)
{
    EXPECT_EQ(world.active().runningSince, StoreWorld::clockTime(11));
    EXPECT_TRUE(world.readPrimary() == world.ledger());
    const auto handoff = world.files.content(StoreWorld::handoffPath);
    if (succeeded) {
        EXPECT_EQ(decodeUpdateHandoff(handoff.value()).active, world.readPrimary().active);
    } else {
        EXPECT_TRUE(!handoff || *handoff == "left over");
    }
    if (*world.store().recoveryAvailable()) {
        world.store().restoreBackup();
        EXPECT_TRUE(world.active().isPaused());
    } else if (!world.store().blocked()) {
        EXPECT_NO_THROW(world.store().checkpoint(StoreWorld::clockTime(12)));
        EXPECT_NO_THROW(world.store().prepareForUpdate(StoreWorld::uuid(7), world.now));
        expectNoTemporaryFiles(world);
    }
}

TEST(TimeStoreUpdateFault, AFailedPreparationLeavesTheSessionRunningAndPromisesNothing)
{
    failEachCall(preparingForUpdate(), Fault::once, expectSessionRunsOn);
    failEachCall(preparingForUpdate(), Fault::lasting, expectSessionRunsOn);
}

void expectRecoveredAtTheNextOpening(StoreWorld& world, const LedgerData&, bool)
{
    const LedgerData running = StoreWorld::runningLedger();
    const bool untouched = world.primary() == encodeLedger(running);
    EXPECT_TRUE(untouched || world.readPrimary().active->isPaused());
    EXPECT_TRUE(!world.ledger().active || world.active().isPaused());
    EXPECT_TRUE(!untouched || world.store().blocked());
    EXPECT_EQ(world.store().blocked(), untouched);
    world.open();
    EXPECT_FALSE(world.store().blocked());
    EXPECT_EQ(world.active().spans,
        (std::vector{TimeSpan{StoreWorld::clockTime(11), StoreWorld::clockTime(11, 30)}}));
    expectNextChangeSucceeds(world);
}

TEST(TimeStoreRecoveryFault, AFailedRecoveryIsDoneAgainAtTheNextOpening)
{
    failEachCall(recovering(), Fault::once, expectRecoveredAtTheNextOpening);
    failEachCall(recovering(), Fault::lasting, expectRecoveredAtTheNextOpening);
}

} // namespace
} // namespace KestryCore
