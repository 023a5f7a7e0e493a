// Once the store has written the ledger itself, it recognises its own file by comparing bytes and
// lets that very file become the backup. What others do to the files in between must come out as
// if it had read and decoded them each time.

#include "LedgerCoding.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

class TimeStoreOwnPrimary : public StoreFixture {
protected:
    void SetUp() override
    {
        open(sampleLedger());
        addClient("First");
    }
};

TEST_F(TimeStoreOwnPrimary, BecomesTheBackupByteForByte)
{
    const std::string before = primary();
    addClient("Second");
    EXPECT_EQ(backup(), before);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreOwnPrimary, BecomesTheBackupAsACopyWhereFilesCannotHaveTwoNames)
{
    for (const int code : {EPERM, EOPNOTSUPP, EXDEV, EMLINK, ENOSYS}) {
        files.refuseLinks(code);
        const std::string before = primary();
        addClient("Another");
        EXPECT_EQ(backup(), before) << code;
        EXPECT_TRUE(readPrimary() == ledger()) << code;
    }
}

TEST_F(TimeStoreOwnPrimary, ALaterDamageToThePrimaryLeavesTheBackupWhole)
{
    addClient("Second");
    const std::string goodBackup = backup();
    truncatePrimary();
    EXPECT_EQ(backup(), goodBackup);
}

TEST_F(TimeStoreOwnPrimary, WhenDamagedBlocksSavingAndIsPreserved)
{
    const std::string damaged = truncatePrimary();
    const LedgerData shown = ledger();
    EXPECT_THROW(addClient("Second"), LedgerError);
    EXPECT_EQ(errorMessage(),
        "The ledger on disk could not be read. It has been preserved. Restore the last backup in "
        "Settings if available.");
    EXPECT_TRUE(store().blocked());
    EXPECT_TRUE(*store().recoveryAvailable());
    EXPECT_EQ(primary(), damaged);
    EXPECT_TRUE(ledger() == shown);
}

TEST_F(TimeStoreOwnPrimary, WhenGoneBlocksSaving)
{
    files.erase(primaryPath);
    EXPECT_THROW(addClient("Second"), LedgerError);
    EXPECT_TRUE(store().blocked());
    EXPECT_FALSE(files.content(primaryPath).has_value());
}

TEST_F(TimeStoreOwnPrimary, WhenReplacedByAnUnsoundLedgerBlocksSaving)
{
    LedgerData unsound = ledger();
    unsound.clients.modify(acme, [](Client& client) { client.name = " "; });
    putPrimary(unsound);
    const std::string foreign = primary();
    EXPECT_THROW(addClient("Second"), LedgerError);
    EXPECT_TRUE(store().blocked());
    EXPECT_EQ(primary(), foreign);
}

TEST_F(TimeStoreOwnPrimary, WhenReplacedByASoundLedgerMakesThatTheBackup)
{
    std::string foreign = encodeLedger(pausedLedger());
    foreign.insert(1, "\"fromTheFuture\":[1,2],");
    files.put(primaryPath, foreign);
    addClient("Second");
    EXPECT_EQ(backup(), foreign);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreOwnPrimary, WhenReplacedByTheSameBytesMakesACopyTheBackup)
{
    const std::string same = primary();
    files.put(primaryPath, same);
    addClient("Second");
    EXPECT_EQ(backup(), same);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreOwnPrimary, AFailedChangeLeavesItRecognised)
{
    EXPECT_THROW(store().updateClient(uuid(77), {.name = "Nobody"}), LedgerError);
    const std::string before = primary();
    addClient("Second");
    EXPECT_EQ(backup(), before);
}

TEST_F(TimeStoreOwnPrimary, IsTheRestoredLedgerAfterARestore)
{
    truncatePrimary();
    EXPECT_THROW(addClient("Second"), LedgerError);
    store().restoreBackup();
    const std::string restored = primary();
    addClient("Third");
    EXPECT_EQ(backup(), restored);
    EXPECT_EQ(errorMessage(), "");
}

} // namespace
} // namespace KestryCore
