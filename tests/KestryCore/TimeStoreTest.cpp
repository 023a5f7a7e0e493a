#include <cerrno>

#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "StoreFixture.h"

namespace KestryCore {
namespace {

const std::string savingIsDisabled =
    "Saving is disabled to protect your unreadable ledger. Restore the data file before "
    "continuing.";
const std::string damagedOnDisk =
    "The ledger on disk could not be read. It has been preserved. Restore the last backup in "
    "Settings if available.";

class TimeStoreSaving : public StoreFixture { };

TEST_F(TimeStoreSaving, TheFirstSaveMakesTheDirectoryAndThePrimaryAlone)
{
    open();
    addClient();
    const auto contents = files.contents();
    ASSERT_EQ(contents.size(), 1u);
    EXPECT_EQ(contents.begin()->first, primaryPath);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreSaving, TheFirstSaveMakesMissingParentsToo)
{
    options.directory = "/home/a/b/c";
    open();
    addClient();
    EXPECT_TRUE(files.content("/home/a/b/c/ledger.json").has_value());
}

TEST_F(TimeStoreSaving, TheSecondSaveKeepsTheFirstVersionByteForByte)
{
    open();
    addClient("First");
    const std::string first = primary();
    addClient("Second");
    EXPECT_EQ(backup(), first);
    EXPECT_EQ(files.contents().size(), 2u);
}

TEST_F(TimeStoreSaving, TheBackupIsAlwaysThePreviousPrimaryNeverTheNewContent)
{
    open(sampleLedger());
    for (const char* name : {"One", "Two", "Three"}) {
        const std::string previous = primary();
        addClient(name);
        EXPECT_EQ(backup(), previous);
        EXPECT_NE(primary(), previous);
    }
}

TEST_F(TimeStoreSaving, PublicationComesOnlyAfterTheFileHoldsTheChange)
{
    open(sampleLedger());
    bool published = false;
    const Subscription subscription = store().data().observe([&](const LedgerData& ledger) {
        published = true;
        EXPECT_TRUE(readPrimary() == ledger);
    });
    addClient();
    EXPECT_TRUE(published);
}

TEST_F(TimeStoreSaving, EachChangeIsPublishedOnce)
{
    open(sampleLedger());
    int publications = 0;
    const Subscription subscription =
        store().data().observe([&](const LedgerData&) { ++publications; });
    addClient();
    EXPECT_EQ(publications, 1);
}

TEST_F(TimeStoreSaving, AChangeThatFailsInValidationLeavesBothFilesUntouched)
{
    open(sampleLedger());
    addClient();
    expectRefused([&] { addClient("Beta", -1); }, "Hourly rates cannot be negative.");
}

TEST_F(TimeStoreSaving, AChangeThatCannotBeEncodedLeavesBothFilesUntouched)
{
    open(sampleLedger());
    expectRefused(
        [&] { addClient("\xff"); }, "A text in the data is not valid UTF-8 and can't be saved.");
}

TEST_F(TimeStoreSaving, ATruncatedPrimaryRefusesTheChangeAndStays)
{
    open(sampleLedger());
    addClient();
    const std::string left = truncatePrimary();
    expectRefused([&] { addClient("Late"); }, damagedOnDisk);
    EXPECT_EQ(primary(), left);
    EXPECT_TRUE(store().blocked());
    EXPECT_TRUE(*store().recoveryAvailable());
}

TEST_F(TimeStoreSaving, ADamagedPrimaryWithoutBackupOffersNoRecovery)
{
    open(sampleLedger());
    truncatePrimary();
    expectRefused([&] { addClient(); }, damagedOnDisk);
    EXPECT_FALSE(*store().recoveryAvailable());
}

TEST_F(TimeStoreSaving, ADamagedPrimaryBesideABadBackupOffersNoRecovery)
{
    open(sampleLedger());
    corruptBackup();
    truncatePrimary();
    expectRefused([&] { addClient(); }, damagedOnDisk);
    EXPECT_FALSE(*store().recoveryAvailable());
}

TEST_F(TimeStoreSaving, AVanishedPrimaryRefusesTheChange)
{
    open(sampleLedger());
    files.erase(primaryPath);
    expectRefused([&] { addClient(); }, damagedOnDisk);
}

TEST_F(TimeStoreSaving, APrimaryThatOnlyBreaksARuleIsDamagedToo)
{
    open(sampleLedger());
    LedgerData twice = sampleLedger();
    twice.entries.append(twice.entries.front());
    putPrimary(twice);
    expectRefused([&] { addClient(); }, damagedOnDisk);
    EXPECT_TRUE(store().blocked());
}

TEST_F(TimeStoreSaving, AValidForeignPrimaryBecomesTheBackupWithItsUnknownKeys)
{
    open(sampleLedger());
    std::string foreign = encodeLedger(pausedLedger());
    foreign.insert(1, "\"fromTheFuture\":[1,2],");
    files.put(primaryPath, foreign);
    addClient();
    EXPECT_EQ(backup(), foreign);
    EXPECT_TRUE(readPrimary() == ledger());
}

TEST_F(TimeStoreSaving, OnceBlockedEveryChangeIsRefused)
{
    open(sampleLedger());
    truncatePrimary();
    EXPECT_THROW(addClient(), LedgerError);
    putPrimary(sampleLedger());
    expectRefused([&] { addClient(); }, savingIsDisabled);
    expectRefused([&] { store().deleteEntry(meeting); }, savingIsDisabled);
}

TEST_F(TimeStoreSaving, AnEarlierRefusalWinsOverSavingIsDisabled)
{
    open(sampleLedger());
    truncatePrimary();
    EXPECT_THROW(addClient(), LedgerError);
    expectRefused([&] { store().pause(now); }, "No running session to pause.");
    expectRefused([&] { addClient("Beta", -1); }, "Hourly rates cannot be negative.");
}

TEST_F(TimeStoreSaving, ASuccessNeverClearsTheErrorMessage)
{
    open(sampleLedger());
    EXPECT_THROW(store().pause(now), LedgerError);
    addClient();
    store().deleteEntry(meeting);
    EXPECT_EQ(errorMessage(), "No running session to pause.");
}

TEST_F(TimeStoreSaving, AFullDiskIsReportedInTheSystemsWords)
{
    open(sampleLedger());
    files.failCallsFrom(1, ENOSPC);
    EXPECT_THROW(addClient(), FileError);
    EXPECT_NE(errorMessage().find("No space left on device"), std::string::npos);
    EXPECT_TRUE(ledger() == sampleLedger());
}

TEST_F(TimeStoreSaving, ADirectoryThatCannotBeMadeIsReported)
{
    open();
    files.failCalls(*options.directory + " created", EROFS);
    EXPECT_THROW(addClient(), FileError);
    EXPECT_EQ(errorMessage(), "ledgers could not be created: Read-only file system.");
    EXPECT_FALSE(files.isDirectory(*options.directory));
}

TEST_F(TimeStoreSaving, ALedgerThatAppearedAfterOpeningIsNotWrittenOver)
{
    open();
    putPrimary(sampleLedger());
    const std::string message = "Another program has saved a ledger in this data directory "
                                "meanwhile. Start again to use it.";
    expectRefused([&] { addClient(); }, message);
    expectRefused([&] { addClient(); }, message);
}

TEST_F(TimeStoreSaving, ABackupThatAppearedAfterOpeningIsNotPassedOver)
{
    open();
    putBackup(sampleLedger());
    expectRefused([&] { addClient(); },
        "Another program has saved a ledger in this data directory meanwhile. Start again to use "
        "it.");
}

TEST_F(TimeStoreSaving, WhatACrashLeftUnderATemporaryNameIsCleared)
{
    open(sampleLedger());
    files.put(primaryPath + ".new", "half a led");
    files.put(backupPath + ".new", "half a bac");
    addClient();
    EXPECT_EQ(files.contents().size(), 2u);
}

TEST_F(TimeStoreSaving, ReopeningGivesTheLedgerThatWasPublished)
{
    open(sampleLedger());
    addClient();
    store().start(acme, design, "Sketch", clockTime(11));
    store().pause(clockTime(12));
    const LedgerData published = ledger();
    open();
    EXPECT_TRUE(ledger() == published);
}

TEST_F(TimeStoreSaving, NoHandleIsLeftOpen)
{
    open(sampleLedger());
    addClient();
    truncatePrimary();
    EXPECT_THROW(addClient(), LedgerError);
    store().restoreBackup();
    EXPECT_EQ(files.openHandles(), 0u);
}

class TimeStoreWithLock : public StoreFixture {
protected:
    void openLocked()
    {
        options.lock = std::make_shared<WriterLock>(files, *options.directory);
        open();
        claimed = options.lock->acquire();
    }

    bool claimed = false;
    const std::string refusal = "kestryctl (process 7) is using this data directory, and only one "
                                "program can write to it at a time.";
};

TEST_F(TimeStoreWithLock, TheFirstSaveClaimsTheDirectoryThatItMade)
{
    openLocked();
    EXPECT_TRUE(claimed);
    EXPECT_FALSE(files.isLocked(*options.directory));
    addClient("Acme");
    EXPECT_TRUE(files.isLocked(*options.directory));
}

TEST_F(TimeStoreWithLock, AFirstSaveIsRefusedWhenAnotherProcessGotThereFirst)
{
    openLocked();
    files.putDirectory(*options.directory);
    files.holdLock(*options.directory, "kestryctl (process 7)");
    expectRefused([&] { addClient("Acme"); }, refusal);
}

TEST_F(TimeStoreWithLock, AFirstSaveLooksAgainAndNeverWritesOverWhatItFinds)
{
    openLocked();
    putPrimary(sampleLedger());
    const std::string message = "Another program has saved a ledger in this data directory "
                                "meanwhile. Start again to use it.";
    expectRefused([&] { addClient("Acme"); }, message);
    expectRefused([&] { addClient("Acme"); }, message);
}

TEST_F(TimeStoreWithLock, ALedgerReadWithoutTheClaimIsNotSavedOnceItIsFree)
{
    putPrimary(sampleLedger());
    files.holdLock(*options.directory, "kestryctl (process 7)");
    openLocked();
    EXPECT_FALSE(claimed);
    expectRefused([&] { store().deleteEntry(meeting); }, refusal);
    files.holdLock(*options.directory, "");
    const std::string message = "Another program has saved a ledger in this data directory "
                                "meanwhile. Start again to use it.";
    expectRefused([&] { store().deleteEntry(meeting); }, message);
    expectRefused([&] { store().deleteEntry(meeting); }, message);
}

TEST_F(TimeStoreWithLock, ARestoreNeedsTheClaimToo)
{
    putBackup(sampleLedger());
    const std::string bad = corruptPrimary();
    files.holdLock(*options.directory, "kestryctl (process 7)");
    openLocked();
    EXPECT_THROW(store().restoreBackup(), LedgerError);
    EXPECT_EQ(errorMessage(),
        "Backup restoration failed. Your existing files were preserved. " + refusal);
    EXPECT_EQ(primary(), bad);
    EXPECT_TRUE(corruptCopies().empty());
    files.holdLock(*options.directory, "");
    store().restoreBackup();
    EXPECT_TRUE(readPrimary() == sampleLedger());
}

TEST_F(TimeStoreWithLock, TheClaimStaysWithTheStoreAndGoesWithIt)
{
    putPrimary(sampleLedger());
    openLocked();
    store().deleteEntry(meeting);
    EXPECT_TRUE(files.isLocked(*options.directory));
    close();
    options.lock.reset();
    EXPECT_FALSE(files.isLocked(*options.directory));
}

/// A store whose data directory is exchanged for another while it is open.
class TimeStoreInAnExchangedDirectory : public TimeStoreWithLock {
protected:
    TimeStoreInAnExchangedDirectory()
    {
        putPrimary(sampleLedger());
        putBackup(sampleLedger());
        openLocked();
        addClient("Before");
    }

    void moveAway() { files.moveDirectory(*options.directory, elsewhere); }
    void moveBack() { files.moveDirectory(elsewhere, *options.directory); }
    /// Another ledger takes the place, as one that `kestryctl` has changed there.
    void exchange()
    {
        moveAway();
        putPrimary(runningLedger());
    }
    [[nodiscard]] std::string contentElsewhere(const std::string& name) const
    {
        return files.content(elsewhere + "/" + name).value();
    }

    const std::string elsewhere = "/home/old";
    const std::string astray =
        "The data directory has been moved, replaced or removed since it was opened, so nothing "
        "was saved. Put it back, or start Kestry again to use what is there now.";
};

TEST_F(TimeStoreInAnExchangedDirectory, EveryChangeIsRefusedAndNeitherLedgerIsTouched)
{
    exchange();
    EXPECT_TRUE(store().isAstray());
    expectRefused([&] { addClient("Beta"); }, astray);
    expectRefused([&] { store().deleteEntry(meeting); }, astray);
    expectRefused([&] { store().prepareForUpdate(uuid(1), now); }, astray);
    expectRefused([&] { store().start(solo, std::nullopt, "Call", now); }, astray);
    EXPECT_TRUE(readPrimary() == runningLedger());
}

TEST_F(TimeStoreInAnExchangedDirectory, ARunningSessionsCheckpointsAndPauseAreRefused)
{
    store().start(solo, std::nullopt, "Call", now);
    const std::string saved = primary();
    exchange();
    expectRefused([&] { store().checkpoint(now); }, astray);
    expectRefused([&] { store().pause(now); }, astray);
    EXPECT_EQ(contentElsewhere("ledger.json"), saved);
}

TEST_F(TimeStoreInAnExchangedDirectory, SavingIsNotBlockedAndGoesOnWhenTheDirectoryIsBack)
{
    moveAway();
    expectRefused([&] { addClient("Beta"); }, astray);
    EXPECT_FALSE(blocked());
    moveBack();
    EXPECT_FALSE(store().isAstray());
    addClient("Beta");
    EXPECT_EQ(readPrimary().clients.back().name, "Beta");
}

TEST_F(TimeStoreInAnExchangedDirectory, NoNewDirectoryIsMadeWhereItWas)
{
    moveAway();
    expectRefused([&] { addClient("Beta"); }, astray);
    EXPECT_FALSE(files.isDirectory(*options.directory));
}

TEST_F(TimeStoreInAnExchangedDirectory, ARemovedOneThatWasMadeAnewIsAnother)
{
    files.removeDirectory(*options.directory);
    expectRefused([&] { addClient("Beta"); }, astray);
    EXPECT_FALSE(files.isDirectory(*options.directory));
    files.putDirectory(*options.directory);
    expectRefused([&] { addClient("Beta"); }, astray);
    EXPECT_TRUE(files.contents().empty());
}

TEST_F(TimeStoreInAnExchangedDirectory, ARestoreIsRefusedAndKeepsBothLedgers)
{
    const std::string damaged = truncatePrimary();
    EXPECT_THROW(addClient("Beta"), LedgerError);
    exchange();
    const auto before = files.contents();
    EXPECT_THROW(store().restoreBackup(), LedgerError);
    EXPECT_EQ(
        errorMessage(), "Backup restoration failed. Your existing files were preserved. " + astray);
    EXPECT_TRUE(files.contents() == before);
    EXPECT_EQ(contentElsewhere("ledger.json"), damaged);
}

TEST_F(TimeStoreInAnExchangedDirectory, AnExchangeInTheMiddleOfASaveLetsItEndWhereItBegan)
{
    files.interfereAt(3, [&] { exchange(); });
    addClient("Beta");
    EXPECT_TRUE(files.faultHappened());
    EXPECT_TRUE(decodeLedger(contentElsewhere("ledger.json")) == ledger());
    EXPECT_TRUE(readPrimary() == runningLedger());
    files.heal();
    expectRefused([&] { addClient("Gamma"); }, astray);
}

TEST_F(TimeStoreInAnExchangedDirectory, APlaceThatCannotBeLookedAtRefusesThatSaveAlone)
{
    files.failCalls(*options.directory + " looked at", EIO);
    expectRefused(
        [&] { addClient("Beta"); }, "ledgers could not be looked at: Input/output error.");
    EXPECT_FALSE(blocked());
    files.heal();
    addClient("Beta");
}

} // namespace
} // namespace KestryCore
