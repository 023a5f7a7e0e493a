#include "LedgerCoding.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

const std::string prefix = "Backup restoration failed. Your existing files were preserved. ";

class TimeStoreRestore : public StoreFixture {
protected:
    void openOnBackup(const LedgerData& ledger)
    {
        putBackup(ledger);
        bad = corruptPrimary();
        open();
    }

    /// A restore's refusal: thrown bare, shown with the prefix.
    void expectRestoreRefused(const std::string& message)
    {
        const LedgerData ledgerBefore = ledger();
        const auto filesBefore = files.contents();
        try {
            store().restoreBackup();
            ADD_FAILURE() << "was not refused";
        } catch (const LedgerError& refusal) {
            EXPECT_EQ(refusal.what(), message);
        }
        EXPECT_EQ(errorMessage(), prefix + message);
        EXPECT_TRUE(ledger() == ledgerBefore);
        EXPECT_TRUE(files.contents() == filesBefore);
    }

    std::string bad;
};

TEST_F(TimeStoreRestore, PutsTheBackupInThePlaceOfTheLedgerAndEndsTheBlock)
{
    openOnBackup(sampleLedger());
    store().restoreBackup();
    EXPECT_TRUE(readPrimary() == sampleLedger());
    EXPECT_TRUE(ledger() == sampleLedger());
    EXPECT_FALSE(store().blocked());
    EXPECT_FALSE(*store().recoveryAvailable());
    EXPECT_FALSE(store().errorMessage()->has_value());
    EXPECT_FALSE(*store().recoveredSession());
}

TEST_F(TimeStoreRestore, PreservesTheOldPrimaryByteForByteUnderItsMomentAndAnIdentifier)
{
    now = Date{816'462'333.9}; // 2026-11-15T19:05:33.9Z
    openOnBackup(sampleLedger());
    store().restoreBackup();
    const auto copies = corruptCopies();
    ASSERT_EQ(copies.size(), 1u);
    EXPECT_EQ(copies.begin()->first,
        "/home/ledgers/ledger.corrupt-2026-11-15T19-05-33Z-" + uuid(1001).text() + ".json");
    EXPECT_EQ(copies.begin()->second, bad);
}

TEST_F(TimeStoreRestore, LeavesTheBackupAsItIs)
{
    openOnBackup(sampleLedger());
    const std::string before = backup();
    store().restoreBackup();
    EXPECT_EQ(backup(), before);
}

TEST_F(TimeStoreRestore, WithoutAPrimaryNothingIsPreserved)
{
    putBackup(sampleLedger());
    open().restoreBackup();
    EXPECT_TRUE(readPrimary() == sampleLedger());
    EXPECT_TRUE(corruptCopies().empty());
    EXPECT_EQ(files.contents().size(), 2u);
}

TEST_F(TimeStoreRestore, AChangeAfterARestoreBacksUpTheRestoredLedger)
{
    openOnBackup(sampleLedger());
    store().restoreBackup();
    const std::string restored = primary();
    store().deleteEntry(meeting);
    EXPECT_EQ(backup(), restored);
}

TEST_F(TimeStoreRestore, ASecondRestoreHasNothingToOfferUntilANewFailure)
{
    openOnBackup(sampleLedger());
    store().restoreBackup();
    expectRestoreRefused("No valid backup is available to restore.");
    truncatePrimary();
    EXPECT_THROW(store().deleteEntry(meeting), LedgerError);
    store().restoreBackup();
    EXPECT_EQ(corruptCopies().size(), 2u);
}

TEST_F(TimeStoreRestore, IsRefusedWhileNothingHasFailed)
{
    putBackup(pausedLedger());
    open(sampleLedger());
    expectRestoreRefused("No valid backup is available to restore.");
}

TEST_F(TimeStoreRestore, IsRefusedWithBothFilesBad)
{
    corruptPrimary();
    corruptBackup();
    open();
    expectRestoreRefused("No valid backup is available to restore.");
    EXPECT_TRUE(store().blocked());
}

TEST_F(TimeStoreRestore, IsRefusedInADemo)
{
    options.demoLedger = sampleLedger();
    open();
    expectRestoreRefused("No valid backup is available to restore.");
}

TEST_F(TimeStoreRestore, ABackupThatWentBadMeanwhileIsRefusedWithItsFailure)
{
    openOnBackup(sampleLedger());
    LedgerData twice = sampleLedger();
    twice.entries.append(twice.entries.front());
    putBackup(twice);
    expectRestoreRefused("Duplicate identifiers in ledger.");
    EXPECT_TRUE(store().blocked());
    EXPECT_TRUE(*store().recoveryAvailable());
}

TEST_F(TimeStoreRestore, APrimaryThatCannotBePreservedStopsTheRestore)
{
    putBackup(sampleLedger());
    files.putDirectory(primaryPath);
    open();
    expectRestoreRefused("ledger.json could not be read: Is a directory.");
}

TEST_F(TimeStoreRestore, PausesASessionThatRunsInTheBackup)
{
    openOnBackup(runningLedger());
    store().dismissRecovery();
    store().restoreBackup();
    EXPECT_EQ(active().spans, (std::vector{TimeSpan{clockTime(11), clockTime(11, 30)}}));
    EXPECT_TRUE(active().isPaused());
    EXPECT_TRUE(*store().recoveredSession());
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreRestore, ClearsTheNoticeOfARecoveryThatTheBackupKnowsNothingOf)
{
    putBackup(sampleLedger());
    open(runningLedger());
    putBackup(sampleLedger());
    truncatePrimary();
    EXPECT_THROW(store().resume(now), LedgerError);
    store().restoreBackup();
    EXPECT_FALSE(*store().recoveredSession());
    EXPECT_FALSE(ledger().active.has_value());
}

TEST_F(TimeStoreRestore, PublishesOnlyOnceThePrimaryHoldsIt)
{
    openOnBackup(sampleLedger());
    bool published = false;
    const Subscription subscription = store().data().observe([&](const LedgerData& ledger) {
        published = true;
        EXPECT_TRUE(readPrimary() == ledger);
    });
    store().restoreBackup();
    EXPECT_TRUE(published);
}

TEST_F(TimeStoreRestore, KeepsTheReplicationStateOfNow)
{
    open(connected(sampleLedger()));
    store().deleteEntry(meeting);
    ASSERT_EQ(ledger().replication->tombstones.size(), 1u);
    putBackup(sampleLedger());
    truncatePrimary();
    EXPECT_THROW(store().deleteEntry(meeting), LedgerError);
    store().restoreBackup();
    ASSERT_TRUE(ledger().replication);
    EXPECT_EQ(ledger().replication->deviceName, "Desk");
}

TEST_F(TimeStoreRestore, DropsAReplicationStateThatOnlyTheBackupHas)
{
    open(sampleLedger());
    putBackup(connected(sampleLedger()));
    truncatePrimary();
    EXPECT_THROW(store().deleteEntry(meeting), LedgerError);
    store().restoreBackup();
    EXPECT_FALSE(ledger().replication);
}

TEST_F(TimeStoreRestore, GivesEveryRecordAFreshRevisionAndDeletesNone)
{
    open(connected(sampleLedger()));
    store().renameActiveSession(store().start(acme, website, "New", clockTime(11)), "Newer");
    putBackup(sampleLedger());
    truncatePrimary();
    EXPECT_THROW(store().deleteEntry(meeting), LedgerError);
    store().restoreBackup();
    const auto& outbox = ledger().replication->outbox;
    EXPECT_EQ(outbox.size(), 6u); // Two clients, two projects, the meeting, the new session.
    for (const auto& [key, record] : outbox) {
        EXPECT_FALSE(record.isDeleted) << key;
    }
}

} // namespace
} // namespace KestryCore
