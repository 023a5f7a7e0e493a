#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

const std::string unreadablePrimary =
    "The ledger could not be read. Your backup is available here in read-only mode. Restore it "
    "in Settings; the original file will be preserved. ";
const std::string unreadableBoth =
    "Your ledger and backup could not be read. Files have been preserved. ";

class TimeStoreOpening : public StoreFixture {
protected:
    void expectReadOnlyOn(const LedgerData& backup)
    {
        EXPECT_TRUE(ledger() == backup);
        EXPECT_TRUE(store().blocked());
        EXPECT_TRUE(*store().recoveryAvailable());
    }
};

TEST_F(TimeStoreOpening, AnEmptyDirectoryGivesAnEmptyLedgerAndNoFlags)
{
    files.putDirectory(*options.directory);
    open();
    EXPECT_TRUE(ledger() == LedgerData{});
    EXPECT_FALSE(store().errorMessage()->has_value());
    EXPECT_FALSE(store().blocked() || store().isDemo());
    EXPECT_FALSE(*store().recoveredSession() || *store().recoveryAvailable());
}

TEST_F(TimeStoreOpening, OpeningMakesNeitherDirectoryNorFiles)
{
    open();
    EXPECT_FALSE(files.isDirectory(*options.directory));
    EXPECT_TRUE(files.contents().empty());
}

TEST_F(TimeStoreOpening, WithNoDirectoryGivenKestryAmongTheUsersDataIsUsed)
{
    options.directory.reset();
    EXPECT_EQ(open().directory(), "/home/data/Kestry");
}

TEST_F(TimeStoreOpening, AGoodLedgerIsPublishedAndNothingIsWritten)
{
    open(sampleLedger());
    EXPECT_TRUE(ledger() == sampleLedger());
    EXPECT_FALSE(store().blocked());
    EXPECT_EQ(files.contents().size(), 1u);
}

TEST_F(TimeStoreOpening, GarbageBesideAGoodBackupOpensReadOnlyWithThePrimarysFailure)
{
    putBackup(sampleLedger());
    corruptPrimary();
    open();
    expectReadOnlyOn(sampleLedger());
    std::string failure;
    try {
        (void)decodeLedger("no ledger");
    } catch (const LedgerError& error) {
        failure = error.what();
    }
    EXPECT_EQ(errorMessage(), unreadablePrimary + failure);
}

TEST_F(TimeStoreOpening, ABrokenRuleIsAsUnreadableAsGarbage)
{
    LedgerData twice = sampleLedger();
    twice.entries.append(twice.entries.front());
    putBackup(sampleLedger());
    open(twice);
    expectReadOnlyOn(sampleLedger());
    EXPECT_EQ(errorMessage(), unreadablePrimary + "Duplicate identifiers in ledger.");
    EXPECT_EQ(primary(), encodeLedger(twice));
}

TEST_F(TimeStoreOpening, AMissingPrimaryBesideABackupIsAReadFailure)
{
    putBackup(sampleLedger());
    open();
    expectReadOnlyOn(sampleLedger());
    EXPECT_EQ(errorMessage(),
        unreadablePrimary + "ledger.json could not be read: No such file or directory.");
}

TEST_F(TimeStoreOpening, ADirectoryInThePlaceOfThePrimaryIsAReadFailure)
{
    putBackup(sampleLedger());
    files.putDirectory(primaryPath);
    open();
    expectReadOnlyOn(sampleLedger());
}

TEST_F(TimeStoreOpening, WithBothFilesBadTheMessageCarriesTheBackupsFailure)
{
    LedgerData nameless = sampleLedger();
    nameless.clients = {Client{acme, " ", 1, "", true, std::nullopt, true}};
    LedgerData twice = sampleLedger();
    twice.entries.append(twice.entries.front());
    putBackup(nameless);
    open(twice);
    EXPECT_EQ(errorMessage(), unreadableBoth + "Enter a name.");
    EXPECT_TRUE(ledger() == LedgerData{});
    EXPECT_TRUE(store().blocked());
    EXPECT_FALSE(*store().recoveryAvailable());
}

TEST_F(TimeStoreOpening, ABadPrimaryWithoutBackupIsBlockedForTheMissingBackup)
{
    corruptPrimary();
    open();
    EXPECT_EQ(errorMessage(),
        unreadableBoth + "ledger.backup.json could not be read: No such file or directory.");
    EXPECT_TRUE(store().blocked());
}

TEST_F(TimeStoreOpening, APrimaryThatCannotBeLookedAtIsNotTakenForAbsent)
{
    putPrimary(sampleLedger());
    files.failCallsFrom(1, EACCES);
    open();
    files.heal();
    EXPECT_TRUE(store().blocked());
    EXPECT_EQ(errorMessage(),
        unreadableBoth + "ledger.backup.json could not be read: Permission denied.");
}

TEST_F(TimeStoreOpening, BadFilesAreNeverWrittenOver)
{
    const std::string bad = corruptPrimary();
    const std::string badBackup = corruptBackup();
    open();
    expectRefused([&] { addClient("Acme"); },
        "Saving is disabled to protect your unreadable ledger. Restore the data file before "
        "continuing.");
    EXPECT_EQ(primary(), bad);
    EXPECT_EQ(backup(), badBackup);
}

TEST_F(TimeStoreOpening, ARunningSessionIsPausedAtItsLastCheckpointAndSaved)
{
    open(runningLedger());
    LedgerData paused = runningLedger();
    paused.active->spans = {{clockTime(11), clockTime(11, 30)}};
    paused.active->runningSince.reset();
    EXPECT_TRUE(ledger() == paused);
    EXPECT_TRUE(readPrimary() == paused);
    EXPECT_TRUE(*store().recoveredSession());
    EXPECT_EQ(backup(), encodeLedger(runningLedger()));
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(TimeStoreOpening, ASessionCheckpointedAtItsStartKeepsAZeroLengthSpan)
{
    LedgerData running = runningLedger();
    running.active->checkpointAt = clockTime(11);
    open(running);
    EXPECT_EQ(active().spans, (std::vector{TimeSpan{clockTime(11), clockTime(11)}}));
    EXPECT_TRUE(active().isPaused());
    EXPECT_TRUE(*store().recoveredSession());
}

TEST_F(TimeStoreOpening, RecoveryAddsToTheSpansThatAreThere)
{
    LedgerData running = pausedLedger();
    running.active->runningSince = clockTime(11);
    running.active->checkpointAt = clockTime(11, 15);
    open(running);
    EXPECT_EQ(active().spans,
        (std::vector{TimeSpan{clockTime(10), clockTime(10, 30)},
            TimeSpan{clockTime(11), clockTime(11, 15)}}));
}

TEST_F(TimeStoreOpening, APausedSessionIsTakenAsItStands)
{
    open(pausedLedger());
    EXPECT_TRUE(ledger() == pausedLedger());
    EXPECT_FALSE(*store().recoveredSession());
    EXPECT_EQ(files.contents().size(), 1u);
}

TEST_F(TimeStoreOpening, DismissingTheRecoveryClearsOnlyItsFlag)
{
    open(runningLedger());
    const LedgerData recovered = ledger();
    store().dismissRecovery();
    EXPECT_FALSE(*store().recoveredSession());
    EXPECT_TRUE(ledger() == recovered);
}

TEST_F(TimeStoreOpening, ResumingDoesNotDismissTheRecovery)
{
    open(runningLedger()).resume(clockTime(12));
    EXPECT_TRUE(*store().recoveredSession());
}

TEST_F(TimeStoreOpening, ARunningSessionInTheBackupIsPausedInMemoryOnly)
{
    putBackup(runningLedger());
    const std::string bad = corruptPrimary();
    const auto before = files.contents();
    open();
    EXPECT_TRUE(active().isPaused());
    EXPECT_TRUE(*store().recoveredSession());
    EXPECT_TRUE(files.contents() == before);
    EXPECT_TRUE(store().blocked());
}

TEST_F(TimeStoreOpening, RecoveryIsEnteredForReplicationAgainstTheRunningSession)
{
    open(connected(runningLedger()));
    const auto& outbox = ledger().replication->outbox;
    ASSERT_EQ(outbox.size(), 1u);
    EXPECT_EQ(outbox.begin()->first, "Session:" + writing.text());
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreOpening, ARecoveryThatCannotBeSavedBlocksAndKeepsThePausedSession)
{
    putBackup(sampleLedger());
    putPrimary(runningLedger());
    files.failCalls(primaryPath + " replaced", ENOSPC);
    open();
    EXPECT_EQ(errorMessage(),
        "Recovered session paused, but could not save: ledger.json could not be replaced: No "
        "space left on device.");
    EXPECT_TRUE(active().isPaused());
    EXPECT_TRUE(*store().recoveredSession());
    EXPECT_TRUE(store().blocked());
    EXPECT_TRUE(*store().recoveryAvailable());
    EXPECT_EQ(primary(), encodeLedger(runningLedger()));
}

TEST_F(TimeStoreOpening, ACommandOfItsOwnLeavesTheSessionRunningAndTheHandoffInPlace)
{
    files.putDirectory(*options.directory);
    files.put(handoffPath, "left for another");
    options.runningSession = RunningSessionPolicy::keep;
    open(runningLedger());
    EXPECT_TRUE(ledger() == runningLedger());
    EXPECT_FALSE(*store().recoveredSession());
    EXPECT_EQ(files.content(handoffPath), "left for another");
}

TEST_F(TimeStoreOpening, ADemoReadsNoFile)
{
    putPrimary(runningLedger());
    options.demoLedger = sampleLedger();
    files.heal();
    open();
    EXPECT_TRUE(ledger() == sampleLedger());
    EXPECT_TRUE(store().isDemo());
    EXPECT_EQ(files.callCount(), 0);
}

TEST_F(TimeStoreOpening, ADemoTakesEveryChangeAndTouchesNoFile)
{
    putPrimary(runningLedger());
    options.demoLedger = sampleLedger();
    open();
    files.heal();
    addClient("Beta");
    store().start(acme, website, "Trying", clockTime(11));
    store().checkpoint(clockTime(11, 30));
    store().stop(clockTime(12));
    store().prepareForUpdate(uuid(7), clockTime(12));
    EXPECT_EQ(ledger().entries.size(), 2u);
    EXPECT_EQ(files.callCount(), 0);
    EXPECT_EQ(primary(), encodeLedger(runningLedger()));
}

} // namespace
} // namespace KestryCore
