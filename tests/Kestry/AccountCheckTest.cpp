#include "AccountCheck.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "ScriptedCloud.h"
#include "TaskOwner.h"
#include "VirtualScheduler.h"

namespace Kestry {
namespace {

using KestryCore::CloudError;

class AccountCheckTest : public ::testing::Test {
protected:
    /// "accepted", or the words of the failure.
    std::string check(bool mayMakeZone = true)
    {
        std::string verdict = "accepted";
        KestryCore::TaskOwner tasks(scheduler, [&](const std::exception_ptr& thrown) {
            try {
                std::rethrow_exception(thrown);
            } catch (const std::exception& known) {
                verdict = known.what();
            }
        });
        tasks.start(requireAccount(cloud.open("store"), mayMakeZone));
        while (!cloud.waiting().empty()) {
            cloud.answer();
            scheduler.turn();
        }
        return verdict;
    }

    KestryCore::VirtualScheduler scheduler;
    KestryCore::ScriptedCloud cloud{scheduler};
};

TEST_F(AccountCheckTest, AStoreThatKnowsTheAccountAndHasItsRecordsIsLeftAsItIs)
{
    EXPECT_EQ(check(), "accepted");
    EXPECT_EQ(cloud.times("create"), 0);
}

TEST_F(AccountCheckTest, AnAccountThatTheStoreDoesNotKnowIsRefused)
{
    cloud.isAvailable = false;
    EXPECT_EQ(check(), "The record store does not know this account.");
    EXPECT_EQ(cloud.times("zone"), 0);
}

TEST_F(AccountCheckTest, APlaceForTheRecordsIsMadeOnlyWhereItMayBe)
{
    cloud.hasZone = false;
    EXPECT_EQ(check(false), "accepted");
    EXPECT_EQ(cloud.times("create"), 0);
    EXPECT_EQ(check(true), "accepted");
    EXPECT_EQ(cloud.times("create"), 1);
}

TEST_F(AccountCheckTest, AnyOtherFailureIsARefusalInTheWordsOfTheStore)
{
    cloud.failures.emplace("zone", CloudError("This is not your database."));
    EXPECT_EQ(check(), "This is not your database.");
    EXPECT_EQ(cloud.times("create"), 0);
}

TEST_F(AccountCheckTest, AStoreOutOfReachIsForWhoSignsInToTryAgain)
{
    cloud.failures.emplace("status",
        CloudError("The record store cannot be reached. Your local changes are saved and will "
                   "retry."));
    EXPECT_EQ(check(),
        "The record store cannot be reached. Check the address and the network, or sign in again "
        "later.");
}

TEST_F(AccountCheckTest, WhoHasAStepToTakeSignsInAfterIt)
{
    cloud.failures.emplace("zone",
        CloudError("The disk is full. Ask its administrator to make room; your local changes are "
                   "saved and will retry."));
    EXPECT_EQ(check(), "The disk is full. Ask its administrator to make room, then sign in again.");
}

} // namespace
} // namespace Kestry
