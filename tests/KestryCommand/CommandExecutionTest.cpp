#include "CommandFixture.h"

#include <sys/prctl.h>

namespace Kestry {
namespace {

using KestryCore::Date;
using testing::HasSubstr;
using testing::StartsWith;

class CommandExecution : public CommandFixture { };

TEST_F(CommandExecution, LeavesARunningSessionRunning)
{
    addClientAndStart();
    const std::string before = fileContent(ledgerPath());
    pass(3600);
    done({"status"});
    done({"check"});
    EXPECT_EQ(fileContent(ledgerPath()), before);
    EXPECT_TRUE(ledger().active->runningSince);
}

TEST_F(CommandExecution, MakesNoDirectoryForARefusedFirstCommand)
{
    EXPECT_EQ(refused({"start", "aster"}), "There is no client \"aster\".");
    EXPECT_FALSE(std::filesystem::exists(directory_));
}

TEST_F(CommandExecution, RefusesToDeleteWhereNobodyCanBeAsked)
{
    addClientAndStart();
    pass(60);
    done({"stop"});
    EXPECT_EQ(refused({"delete", "sketches"}),
        "Nothing was deleted. Nobody can be asked here; add --yes to do it all the same.");
    EXPECT_EQ(ledger().entries.size(), 1U);
}

TEST_F(CommandExecution, AsksBeforeItDeletes)
{
    addClientAndStart();
    pass(5400);
    done({"stop"});
    console_.isTerminal = true;
    console_.answers = {"n", "y"};
    EXPECT_EQ(
        refused({"delete", "sketches"}), "Delete \"Sketches\", 1h 30m? [y/N] Nothing was deleted.");
    EXPECT_EQ(ledger().entries.size(), 1U);
    done({"delete", "sketches"});
    EXPECT_TRUE(ledger().entries.empty());
}

TEST_F(CommandExecution, TakesTheEndOfTheInputForANo)
{
    addClientAndStart();
    pass(60);
    done({"stop"});
    console_.isTerminal = true;
    refused({"delete", "sketches"});
    EXPECT_EQ(ledger().entries.size(), 1U);
}

TEST_F(CommandExecution, ShowsADamagedLedgerAndLeavesItAlone)
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

TEST_F(CommandExecution, TellsAnUnreadableLedgerFromAnEmptyOne)
{
    done({"client", "add", "Aster"});
    damageLedger();
    EXPECT_THAT(
        refused({"client", "list"}), StartsWith("Your ledger and backup could not be read."));
    EXPECT_THAT(refused({"start", "aster"}),
        StartsWith("Saving is disabled to protect your unreadable ledger. Restore the data file "
                   "before continuing. Your ledger and backup could not be read."));
}

TEST_F(CommandExecution, ListsFromTheBackupWithAWarning)
{
    addClientAndStart();
    damageLedger();
    EXPECT_THAT(done({"client", "list", "--json"}), HasSubstr("\"name\":\"Aster Studio\""));
    EXPECT_THAT(console_.errors, StartsWith("The ledger could not be read. Your backup"));
}

TEST_F(CommandExecution, RestoresTheBackupAndKeepsTheDamagedLedger)
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

TEST_F(CommandExecution, ShowsAFailedRestoreAsTheApplicationDoes)
{
    done({"client", "add", "Aster"});
    EXPECT_EQ(refused({"restore", "--yes"}),
        "Backup restoration failed. Your existing files were preserved. No valid backup is "
        "available to restore.");
}

TEST_F(CommandExecution, RefusesAtOnceWhileAnotherProgramHoldsTheDirectory)
{
    done({"client", "add", "Aster"});
    const auto held = files_.lockDirectory(directory_.string());
    const Date before = now_;
    EXPECT_THAT(refused({"start", "aster"}),
        testing::EndsWith(
            " is using this data directory, and only one program can write to it at a time."));
    EXPECT_EQ(now_, before);
    done({"status"});
}

TEST_F(CommandExecution, WaitsForAnotherOfItsKind)
{
    done({"client", "add", "Aster"});
    auto held = files_.lockDirectory(directory_.string());
    prctl(PR_SET_NAME, "kestryctl");
    int sleeps = 0;
    onSleep_ = [&] {
        if (++sleeps == 5) {
            held.lock.reset();
        }
    };
    done({"start", "aster"});
    EXPECT_TRUE(ledger().active);
}

TEST_F(CommandExecution, WaitsForFiveSecondsAndNoLonger)
{
    done({"client", "add", "Aster"});
    const auto held = files_.lockDirectory(directory_.string());
    prctl(PR_SET_NAME, "kestryctl");
    const Date before = now_;
    EXPECT_THAT(refused({"start", "aster"}), StartsWith("kestryctl (process "));
    EXPECT_GE(now_ - before, 5.0);
    EXPECT_LT(now_ - before, 5.2);
}

} // namespace
} // namespace Kestry
