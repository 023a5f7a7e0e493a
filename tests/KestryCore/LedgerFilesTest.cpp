#include "LedgerFiles.h"

#include <gtest/gtest.h>

#include "LedgerCoding.h"
#include "MemoryFileSystem.h"
#include "Refusal.h"
#include "SampleLedger.h"

namespace KestryCore {
namespace {

constexpr const char* primary = "/home/data/ledger.json";
constexpr const char* backup = "/home/data/ledger.backup.json";

class LedgerFilesTest : public testing::Test {
protected:
    LedgerFiles ledgerFiles(std::uint64_t most = maximumFileBytes)
    {
        return {files, "/home/data", std::make_shared<WriterLock>(files, "/home/data"), most};
    }
    static LedgerData ledgerNamed(const std::string& name)
    {
        LedgerData ledger = Sample::ledger();
        ledger.clients.modify(Sample::clientID(), [&](Client& client) { client.name = name; });
        return ledger;
    }
    void expectPrimary(const LedgerData& ledger) const
    {
        EXPECT_EQ(files.content(primary), encodeLedger(ledger));
    }
    void restore(LedgerFiles& ledger, const std::string& name) const
    {
        ledger.restore(ledgerNamed(name), Date{Sample::noon}, [] { return Sample::id(7); });
    }

    MemoryFileSystem files;
};

TEST_F(LedgerFilesTest, AreNotThereAtFirstAndAreAfterASave)
{
    LedgerFiles ledger = ledgerFiles();
    EXPECT_FALSE(ledger.exist());
    ledger.save(ledgerNamed("A"), Soundness::validated);
    EXPECT_TRUE(ledger.exist());
    expectPrimary(ledgerNamed("A"));
}

TEST_F(LedgerFilesTest, ASaveMakesThePreviousPrimaryTheBackup)
{
    LedgerFiles ledger = ledgerFiles();
    ledger.save(ledgerNamed("A"), Soundness::validated);
    EXPECT_FALSE(ledger.hasSoundBackup());
    ledger.save(ledgerNamed("B"), Soundness::validated);
    expectPrimary(ledgerNamed("B"));
    EXPECT_EQ(ledger.readBackup(), ledgerNamed("A"));
}

TEST_F(LedgerFilesTest, OnlyAValidatedLedgerIsKnown)
{
    LedgerFiles ledger = ledgerFiles();
    ledger.save(ledgerNamed("A"), Soundness::unchecked);
    EXPECT_TRUE(ledger.hasSoundPrimary());
    EXPECT_FALSE(ledger.knowsPrimary());
    ledger.save(ledgerNamed("B"), Soundness::validated);
    EXPECT_TRUE(ledger.knowsPrimary());
}

TEST_F(LedgerFilesTest, ADamagedPrimaryIsNotWrittenOverAndBlocksSaving)
{
    LedgerFiles ledger = ledgerFiles();
    ledger.save(ledgerNamed("A"), Soundness::validated);
    files.put(primary, "{");
    EXPECT_THROW(ledger.save(ledgerNamed("B"), Soundness::validated), UnreadablePrimary);
    EXPECT_TRUE(ledger.blocked());
    EXPECT_EQ(refusalOf([&] { ledger.save(ledgerNamed("B"), Soundness::validated); }),
        "Saving is disabled to protect your unreadable ledger. Restore the data file before "
        "continuing.");
    EXPECT_EQ(files.content(primary), "{");
}

TEST_F(LedgerFilesTest, ARestoreKeepsTheDamagedPrimaryAndUnblocksSaving)
{
    LedgerFiles ledger = ledgerFiles();
    ledger.save(ledgerNamed("A"), Soundness::validated);
    files.put(primary, "{");
    ledger.block();
    restore(ledger, "B");
    EXPECT_EQ(files.content("/home/data/ledger.corrupt-2025-11-16T15-33-20Z-" + Sample::id(7).text()
                  + ".json"),
        "{");
    expectPrimary(ledgerNamed("B"));
    ledger.save(ledgerNamed("C"), Soundness::validated);
    EXPECT_EQ(ledger.readBackup(), ledgerNamed("B"));
}

TEST_F(LedgerFilesTest, ALedgerThatCouldNotBeReadAgainIsNotSaved)
{
    LedgerFiles ledger = ledgerFiles(10);
    EXPECT_NE(refusalOf([&] { ledger.save(ledgerNamed("A"), Soundness::validated); }), accepted);
    EXPECT_FALSE(ledger.exist());
}

TEST_F(LedgerFilesTest, ALedgerThatWasNotReadIsNotWrittenOver)
{
    files.putDirectory("/home/data");
    files.put(primary, encodeLedger(ledgerNamed("A")));
    LedgerFiles ledger = ledgerFiles();
    EXPECT_EQ(refusalOf([&] { ledger.save(ledgerNamed("B"), Soundness::validated); }),
        "Another program has saved a ledger in this data directory meanwhile. Start again to use "
        "it.");
    expectPrimary(ledgerNamed("A"));
}

TEST_F(LedgerFilesTest, WhatIsForgottenMustBeReadBeforeTheNextSave)
{
    LedgerFiles ledger = ledgerFiles();
    ledger.save(ledgerNamed("A"), Soundness::validated);
    ledger.block();
    ledger.forget();
    EXPECT_FALSE(ledger.blocked());
    EXPECT_NE(refusalOf([&] { ledger.save(ledgerNamed("B"), Soundness::validated); }), accepted);
    EXPECT_EQ(ledger.readPrimary(), ledgerNamed("A"));
    ledger.save(ledgerNamed("B"), Soundness::validated);
    expectPrimary(ledgerNamed("B"));
}

TEST_F(LedgerFilesTest, AHandoffIsReadAsItWasWrittenUntilItIsRemoved)
{
    LedgerFiles ledger = ledgerFiles();
    ledger.claimDirectory();
    const UpdateHandoff handoff{Sample::id(3), Sample::runningSession()};
    ledger.writeHandoff(handoff);
    EXPECT_TRUE(ledger.hasHandoff());
    EXPECT_EQ(ledger.readHandoff(), handoff);
    ledger.removeHandoff();
    EXPECT_FALSE(ledger.hasHandoff());
}

} // namespace
} // namespace KestryCore
