#include "AccountCheck.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include "CouchErrors.h"
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

TEST_F(AccountCheckTest, WhoSignsInIsNotSentWhereHeIs)
{
    const std::pair<const char*, const char*> wordings[] = {
        {"The password is wrong. Sign in again under Connections in Settings.",
            "The password is wrong. Check both, then sign in again."},
        {"Locked. Wait five minutes, then sign in again under Connections in Settings.",
            "Locked. Wait five minutes, then sign in again."},
        {"Not yours. Choose your own under Connections in Settings, or ask for access.",
            "Not yours. Enter the address of your own, or ask for access."},
        {"Nothing is there. Check the address under Connections in Settings. Perhaps a slash.",
            "Nothing is there. Check the address. Perhaps a slash."},
        {"Ask for a database, then sync again.", "Ask for a database, then sign in again."}};
    for (const auto& [ofStore, here] : wordings) {
        cloud.failures.emplace("status", CloudError(ofStore));
        EXPECT_EQ(check(), here);
    }
}

TEST_F(AccountCheckTest, NothingThatAServerSaysSendsThereWhoSignsIn)
{
    const auto check = [this](const auto& refusal) {
        try {
            refusal();
        } catch (const CloudError& failure) {
            cloud.failures.emplace("status", CloudError(failure.what()));
        }
        return this->check();
    };
    for (const int status : {302, 400, 401, 403, 404, 413, 429, 500, 503, 507}) {
        for (const CouchRequestKind kind :
            {CouchRequestKind::server, CouchRequestKind::database, CouchRequestKind::creation}) {
            const std::string words = check([&] { refuse(kind, HttpAnswer{status, {}, {}}, {}); });
            EXPECT_EQ(words.find("Settings"), std::string::npos) << words;
            EXPECT_EQ(words.find("will retry"), std::string::npos) << words;
            EXPECT_NE(words, "accepted");
        }
    }
}

} // namespace
} // namespace Kestry
