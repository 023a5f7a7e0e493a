#include "StoreCommands.h"

#include "CommandFixture.h"

namespace Kestry {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class StoreCommandsTest : public CommandFixture { };

TEST_F(StoreCommandsTest, ShowsADamagedLedgerAndLeavesItAlone)
{
    addClientAndStart();
    const std::string damaged = damageLedger();
    EXPECT_THAT(
        done({"status"}), HasSubstr("Attention  The ledger could not be read. Your backup"));
    EXPECT_EQ(refused({"client", "add", "Northstar"}),
        "Saving is disabled to protect your unreadable ledger. Restore the data file before "
        "continuing.");
    EXPECT_EQ(fileContent(ledgerPath()), damaged);
}

TEST_F(StoreCommandsTest, TellsAnUnreadableLedgerFromAnEmptyOne)
{
    done({"client", "add", "Aster"});
    damageLedger();
    EXPECT_THAT(
        refused({"client", "list"}), StartsWith("Your ledger and backup could not be read."));
    EXPECT_THAT(refused({"start", "aster"}),
        StartsWith("Saving is disabled to protect your unreadable ledger. Restore the data file "
                   "before continuing. Your ledger and backup could not be read."));
}

TEST_F(StoreCommandsTest, ListsFromTheBackupWithAWarning)
{
    addClientAndStart();
    damageLedger();
    EXPECT_THAT(done({"client", "list", "--json"}), HasSubstr("\"name\":\"Aster Studio\""));
    EXPECT_THAT(console_.errors, StartsWith("The ledger could not be read. Your backup"));
}

TEST_F(StoreCommandsTest, WarnsOfTheBackupBeforeItTellsAFailure)
{
    addClientAndStart();
    damageLedger();
    EXPECT_THAT(refused({"project", "list", "nobody"}),
        testing::MatchesRegex("The ledger could not be read\\. Your backup.*\n"
                              "There is no client \"nobody\"\\. The ledger could not be read.*"));
}

TEST_F(StoreCommandsTest, RestoresTheBackupAndKeepsTheDamagedLedger)
{
    addClientAndStart();
    pass(60);
    done({"checkpoint"});
    const std::string damaged = damageLedger();
    EXPECT_EQ(done({"restore", "--yes"}),
        "Restored the backup. Its running session is paused at its last checkpoint.\n");
    EXPECT_TRUE(ledger().active->isPaused());
    const std::string check = done({"check", "--json"});
    const std::size_t name = check.find("ledger.corrupt-");
    ASSERT_NE(name, std::string::npos);
    EXPECT_EQ(fileContent(directory_ / check.substr(name, check.find('"', name) - name)), damaged);
}

TEST_F(StoreCommandsTest, ShowsAFailedRestoreAsTheApplicationDoes)
{
    done({"client", "add", "Aster"});
    EXPECT_EQ(refused({"restore", "--yes"}),
        "Backup restoration failed. Your existing files were preserved. No valid backup is "
        "available to restore.");
}

} // namespace
} // namespace Kestry
