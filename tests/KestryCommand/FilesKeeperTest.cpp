#include "FilesKeeper.h"

#include <sys/prctl.h>

#include "CommandFixture.h"

namespace Kestry {
namespace {

using KestryCore::Date;
using testing::StartsWith;

class FilesKeeperTest : public CommandFixture { };

TEST_F(FilesKeeperTest, LeavesARunningSessionRunning)
{
    addClientAndStart();
    const std::string before = fileContent(ledgerPath());
    pass(3600);
    done({"status"});
    done({"check"});
    EXPECT_EQ(fileContent(ledgerPath()), before);
    EXPECT_TRUE(ledger().active->runningSince);
}

TEST_F(FilesKeeperTest, MakesNoDirectoryForARefusedFirstCommand)
{
    EXPECT_EQ(refused({"start", "aster"}), "There is no client \"aster\".");
    EXPECT_FALSE(std::filesystem::exists(directory_));
}

TEST_F(FilesKeeperTest, RefusesAtOnceWhileAnotherProgramHoldsTheDirectory)
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

TEST_F(FilesKeeperTest, WaitsForAnotherOfItsKind)
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

TEST_F(FilesKeeperTest, WaitsForFiveSecondsAndNoLonger)
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
