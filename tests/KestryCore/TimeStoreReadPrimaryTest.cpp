// A ledger that was read in the form in which it is written is known byte for byte, as if the
// store had written it. What its first change does must come out as if it were read again.

#include "LedgerCoding.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

class TimeStoreReadPrimary : public StoreFixture {
protected:
    void SetUp() override { open(sampleLedger()); }
};

TEST_F(TimeStoreReadPrimary, BecomesTheBackupByteForByte)
{
    const std::string before = primary();
    addClient();
    EXPECT_EQ(backup(), before);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreReadPrimary, ReachesTheDiskBeforeItBecomesTheBackup)
{
    const LedgerData before = ledger();
    files.failCalls(primaryPath + " synced", EIO);
    EXPECT_THROW(addClient(), LedgerError);
    EXPECT_TRUE(files.faultHappened());
    EXPECT_TRUE(readPrimary() == before);
    EXPECT_FALSE(files.content(backupPath).has_value());
    files.heal();
    addClient();
    EXPECT_TRUE(readBackup() == before);
}

TEST_F(TimeStoreReadPrimary, InAnotherFormBecomesTheBackupAsItIs)
{
    const std::string foreign = encodeLedger(pausedLedger()) + "\n";
    files.put(primaryPath, foreign);
    open();
    addClient();
    EXPECT_EQ(backup(), foreign);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreReadPrimary, WhenDamagedSinceBlocksSavingAndIsPreserved)
{
    const std::string damaged = truncatePrimary();
    EXPECT_THROW(addClient(), LedgerError);
    EXPECT_EQ(errorMessage(),
        "The ledger on disk could not be read. It has been preserved. Restore the last backup in "
        "Settings if available.");
    EXPECT_TRUE(store().blocked());
    EXPECT_EQ(primary(), damaged);
}

TEST_F(TimeStoreReadPrimary, WhenReplacedSinceMakesTheReplacementTheBackup)
{
    putPrimary(pausedLedger());
    const std::string foreign = primary();
    addClient();
    EXPECT_EQ(backup(), foreign);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreReadPrimary, WithARunningSessionBecomesTheBackupOfItsRecovery)
{
    putPrimary(runningLedger());
    const std::string before = primary();
    open();
    EXPECT_TRUE(*store().recoveredSession());
    EXPECT_EQ(backup(), before);
    EXPECT_TRUE(readPrimary() == ledger());
}

} // namespace
} // namespace KestryCore
