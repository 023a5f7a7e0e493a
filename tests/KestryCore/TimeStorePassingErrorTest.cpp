// Errors of the moment say nothing about the files: too few descriptors or too little memory, a
// server that does not answer. They refuse one save, or put the opening off, and nothing more.

#include <cerrno>
#include <new>

#include "LedgerCoding.h"
#include "StoreFixture.h"
#include "StoreOperations.h"

namespace KestryCore {
namespace {

const std::vector<int> passing{EMFILE, ENFILE, ENOMEM, EINTR, EAGAIN, ESTALE, ETIMEDOUT, ENOBUFS};
const std::vector<std::string> readingCalls{"read", "measured", "identified", "read from"};
const std::string notReadNow =
    "The ledger could not be read just now, and nothing was changed. Try again in a moment. ";
const std::string tooManyFiles = "ledger.json could not be read: Too many open files.";

class TimeStorePassingError : public StoreFixture {
protected:
    void failReading(const std::string& call, int code)
    {
        files.failCalls(primaryPath + " " + call, code);
    }
    /// Opens while the ledger cannot be read for the moment.
    void openTooEarly()
    {
        failReading("read", EMFILE);
        open();
        files.heal();
    }
};

TEST_F(TimeStorePassingError, WhileTheLedgerIsVerifiedRefusesThatSaveAndNothingMore)
{
    for (const int code : passing) {
        for (const char* call : {"read", "identified", "read from"}) {
            open(sampleLedger());
            addClient("Own");
            failReading(call, code);
            const LedgerData before = ledger();
            EXPECT_THROW(addClient("Refused"), FileError);
            EXPECT_TRUE(files.faultHappened()) << call;
            EXPECT_TRUE(errorMessage().starts_with("ledger.json could not be "));
            EXPECT_FALSE(blocked() || recoveryAvailable()) << call << code;
            EXPECT_TRUE(ledger() == before);
            files.heal();
            expectNextChangeSucceeds(*this);
        }
    }
}

TEST_F(TimeStorePassingError, WhileALedgerOfAnotherFormIsReadRefusesThatSaveAndNothingMore)
{
    for (const int code : passing) {
        for (const char* call : {"read", "measured", "read from"}) {
            files.put(primaryPath, encodeLedger(sampleLedger()) + "\n");
            open();
            failReading(call, code);
            EXPECT_THROW(addClient("Refused"), FileError);
            EXPECT_FALSE(blocked()) << call << code;
            files.heal();
            expectNextChangeSucceeds(*this);
        }
    }
}

TEST_F(TimeStorePassingError, OfTheDiskItselfIsNoneAndBlocksSaving)
{
    for (const int code : {EIO, EACCES, ENOENT}) {
        open(sampleLedger());
        failReading("read", code);
        EXPECT_THROW(addClient("Refused"), LedgerError);
        EXPECT_TRUE(blocked()) << code;
        files.heal();
    }
}

TEST_F(TimeStorePassingError, AtTheStartShowsNoOlderBackupAndOffersNoRestore)
{
    putBackup(sampleLedger());
    putPrimary(pausedLedger());
    const auto before = files.contents();
    openTooEarly();
    EXPECT_EQ(errorMessage(), notReadNow + tooManyFiles);
    EXPECT_TRUE(blocked() && store().canOpenAgain());
    EXPECT_FALSE(recoveryAvailable());
    EXPECT_TRUE(ledger() == LedgerData{});
    EXPECT_TRUE(files.contents() == before);
}

TEST_F(TimeStorePassingError, WhileTheFilesOfAFirstStartAreLookedForIsForgotten)
{
    for (int number = 1; number <= 4; ++number) {
        files.put(primaryPath, "");
        files.remove(primaryPath);
        files.failCall(number, ENFILE);
        open();
        files.heal();
        EXPECT_FALSE(blocked());
        EXPECT_EQ(errorMessage(), "");
        addClient("First");
        EXPECT_EQ(ledger().clients.size(), 1U);
    }
}

TEST_F(TimeStorePassingError, AtTheStartRefusesEveryChangeInItsWords)
{
    putPrimary(pausedLedger());
    openTooEarly();
    expectRefused([&] { addClient(); }, notReadNow + tooManyFiles);
    EXPECT_TRUE(readPrimary() == pausedLedger());
}

TEST_F(TimeStorePassingError, AtTheStartIsOverOnceTheLedgerIsOpenedAgain)
{
    for (const int code : passing) {
        for (const std::string& call : readingCalls) {
            putPrimary(pausedLedger());
            failReading(call, code);
            open();
            EXPECT_TRUE(store().canOpenAgain()) << call << code;
            files.heal();
            store().openAgain();
            EXPECT_FALSE(blocked() || store().canOpenAgain());
            EXPECT_TRUE(ledger() == pausedLedger());
            EXPECT_EQ(errorMessage(), "");
            expectNextChangeSucceeds(*this);
        }
    }
}

TEST_F(TimeStorePassingError, ThatStaysIsToldOnce)
{
    putPrimary(pausedLedger());
    failReading("read", EMFILE);
    open();
    store().dismissFailure();
    store().openAgain();
    EXPECT_EQ(errorMessage(), "");
    EXPECT_TRUE(blocked() && store().canOpenAgain());
    failReading("read", ESTALE);
    store().openAgain();
    EXPECT_EQ(errorMessage(), notReadNow + "ledger.json could not be read: Stale file handle.");
}

TEST_F(TimeStorePassingError, AtTheStartLosesNoRunningSession)
{
    putPrimary(runningLedger());
    openTooEarly();
    std::vector<bool> shownPaused;
    const Subscription subscription = store().data().observe(
        [&](const LedgerData& data) { shownPaused.push_back(data.active->isPaused()); });
    store().openAgain();
    EXPECT_EQ(shownPaused, std::vector{true});
    EXPECT_TRUE(*store().recoveredSession());
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStorePassingError, WhileARecoveredSessionIsSavedLeavesThatToTheNextOpening)
{
    putBackup(sampleLedger());
    putPrimary(runningLedger());
    files.failCalls(primaryPath + ".new written", EMFILE);
    open();
    EXPECT_EQ(errorMessage(),
        "Recovered session paused, but could not save: ledger.json.new could not be written: Too "
        "many open files.");
    EXPECT_TRUE(active().isPaused());
    EXPECT_FALSE(recoveryAvailable()) << "the ledger is sound";
    files.heal();
    store().openAgain();
    EXPECT_TRUE(active().isPaused() && readPrimary() == ledger());
    EXPECT_FALSE(blocked());
    EXPECT_EQ(errorMessage(), "");
}

TEST_F(TimeStorePassingError, OpeningAgainDoesNothingWhereItCannotHelp)
{
    const std::string bad = corruptPrimary();
    corruptBackup();
    open();
    EXPECT_FALSE(store().canOpenAgain());
    putPrimary(sampleLedger());
    store().openAgain();
    EXPECT_TRUE(blocked());
    putBackup(sampleLedger());
    files.put(primaryPath, bad);
    open();
    EXPECT_FALSE(store().canOpenAgain());
    EXPECT_TRUE(recoveryAvailable());
}

TEST_F(TimeStorePassingError, ADiskThatComesBackIsOpenedAgain)
{
    putPrimary(pausedLedger());
    putBackup(sampleLedger());
    files.failCallsFrom(1, EIO);
    open();
    EXPECT_TRUE(blocked() && store().canOpenAgain());
    files.heal();
    store().openAgain();
    EXPECT_TRUE(ledger() == pausedLedger());
    expectNextChangeSucceeds(*this);
}

TEST_F(TimeStorePassingError, ABackupThatCanBeReadAgainIsRestoredWithoutANewStart)
{
    putBackup(connected(sampleLedger()));
    corruptPrimary();
    files.failCalls(backupPath + " read", EMFILE);
    open();
    files.heal();
    EXPECT_THROW(addClient(), LedgerError);
    store().restoreBackup();
    EXPECT_TRUE(ledger().replication) << "nothing of it is left out";
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStorePassingError, ARestoreOfALedgerThatCanBeReadAgainIsRefused)
{
    putBackup(sampleLedger());
    putPrimary(pausedLedger());
    openTooEarly();
    EXPECT_THROW(store().restoreBackup(), LedgerError);
    EXPECT_EQ(errorMessage(),
        "Backup restoration failed. Your existing files were preserved. The ledger can be read "
        "again, and there is nothing to restore.");
    EXPECT_TRUE(ledger() == pausedLedger());
    EXPECT_TRUE(corruptCopies().empty());
}

TEST_F(TimeStorePassingError, ARestoreOfALedgerThatStillCannotBeReadIsRefusedForThat)
{
    putBackup(sampleLedger());
    putPrimary(pausedLedger());
    failReading("read", EMFILE);
    open();
    EXPECT_THROW(store().restoreBackup(), LedgerError);
    EXPECT_EQ(errorMessage(),
        "Backup restoration failed. Your existing files were preserved. " + notReadNow
            + tooManyFiles);
    EXPECT_TRUE(readPrimary() == pausedLedger());
}

TEST_F(TimeStorePassingError, TheBackupIsLookedForAgainWheneverARestoreIsAskedFor)
{
    open(sampleLedger());
    addClient("Own");
    truncatePrimary();
    files.failCalls(backupPath + " read", EIO);
    EXPECT_THROW(addClient("Refused"), LedgerError);
    EXPECT_TRUE(blocked());
    EXPECT_FALSE(recoveryAvailable());
    files.heal();
    EXPECT_TRUE(recoveryAvailable());
    store().restoreBackup();
    EXPECT_TRUE(ledger() == sampleLedger());
}

TEST_F(TimeStorePassingError, TooLittleMemoryIsToldInWords)
{
    putPrimary(pausedLedger());
    TimeStore store(
        {files, [this] { return now; }, []() -> Uuid { throw std::bad_alloc(); }}, options);
    const std::string words =
        "There isn't enough memory for that. Close other programs and try again.";
    try {
        store.stop(now);
        store.start(acme, website, "New", now);
        ADD_FAILURE() << "was not refused";
    } catch (const LedgerError& refusal) {
        EXPECT_EQ(refusal.what(), words);
    }
    EXPECT_EQ(*store.errorMessage(), words);
    EXPECT_FALSE(store.blocked());
}

TEST_F(TimeStorePassingError, ALedgerThatCouldNotBeReadAgainIsNotSaved)
{
    options.mostLedgerBytes = encodeLedger(sampleLedger()).size() + 300;
    open(sampleLedger());
    addClient("Small");
    expectRefused([&] { addClient(std::string(300, 'x')); },
        "The ledger would grow beyond 1 GB, more than can be read again, and was not saved. Remove "
        "logos or sessions that you no longer need.");
    EXPECT_FALSE(blocked());
    store().deleteEntry(meeting);
    EXPECT_TRUE(readPrimary() == ledger());
}

} // namespace
} // namespace KestryCore
