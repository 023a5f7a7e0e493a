#include "AccountContainer.h"

#include <gtest/gtest.h>

#include <map>

#include "ApplicationWorld.h"
#include "FakeSecrets.h"
#include "ScriptedCloud.h"
#include "SyncCloudRecord.h"

namespace Kestry {
namespace {

using KestryCore::CloudRecord;
using KestryCore::ScriptedCloud;
using KestryCore::Task;

/// Two stores, and whoever is signed in to one of them.
class AccountContainerTest : public ::testing::Test {
protected:
    void signIn(const std::string& address)
    {
        account.signIn({address, "mia", "x"}, [](const std::optional<std::string>&) {});
        answerAll();
    }
    void answerAll()
    {
        for (int turn = 0; turn < 20; ++turn) {
            world.scheduler.turn();
            for (ScriptedCloud* cloud : {&first, &second}) {
                if (!cloud->waiting().empty()) {
                    cloud->answer();
                }
            }
        }
    }
    void run(Task<void> task)
    {
        tasks.start(std::move(task));
        answerAll();
    }
    static Task<void> look(AccountContainer& container, std::optional<bool>& result)
    {
        Task<bool> asking = container.isAccountAvailable();
        const bool isAvailable = co_await asking;
        result = isAvailable;
    }
    static Task<void> save(AccountContainer& container)
    {
        Task<std::vector<KestryCore::CloudRecordResult>> saving =
            container.privateDatabase().save({CloudRecord{}});
        (void)co_await saving;
    }

    ApplicationWorld world;
    FakeSecrets secrets;
    ScriptedCloud first{world.scheduler};
    ScriptedCloud second{world.scheduler};
    CloudAccount account{{world.defaults, secrets, world.scheduler,
        [this](const CloudCredentials& credentials, StoreUse /*use*/) {
            return (credentials.address == "first" ? first : second).open(credentials.address);
        }}};
    AccountContainer container{account, "second"};
    std::string failure;
    std::optional<bool> isAvailable;
    KestryCore::TaskOwner tasks{world.scheduler, [this](const std::exception_ptr& thrown) {
                                    try {
                                        std::rethrow_exception(thrown);
                                    } catch (const std::exception& known) {
                                        failure = known.what();
                                    }
                                }};
};

TEST_F(AccountContainerTest, TheAccountGoesBeforeTheStoreOfTheBuild)
{
    signIn("first");
    run(look(container, isAvailable));
    EXPECT_EQ(isAvailable, true);
    EXPECT_EQ(second.opened, 0);
}

TEST_F(AccountContainerTest, WithoutAnAccountItIsTheStoreOfTheBuild)
{
    run(look(container, isAvailable));
    EXPECT_EQ(isAvailable, true);
    EXPECT_EQ(second.container, "second");
}

TEST_F(AccountContainerTest, AnExchangeStaysWithTheAccountThatItBeganWith)
{
    signIn("first");
    run(look(container, isAvailable));
    signIn("second");
    run(save(container));
    EXPECT_EQ(first.deliveries.size(), 1U);
    EXPECT_TRUE(second.deliveries.empty());
}

TEST_F(AccountContainerTest, TheNextExchangeIsWithTheNewAccount)
{
    signIn("first");
    run(look(container, isAvailable));
    signIn("second");
    run(look(container, isAvailable));
    run(save(container));
    EXPECT_TRUE(first.deliveries.empty());
    EXPECT_EQ(second.deliveries.size(), 1U);
}

TEST_F(AccountContainerTest, BeforeTheAccountWasAskedForNothingIsSent)
{
    signIn("first");
    run(save(container));
    EXPECT_EQ(failure, "Nobody is signed in to a record store.");
    EXPECT_TRUE(first.deliveries.empty());
}

TEST_F(AccountContainerTest, AStoreInUseStaysUntilItHasAnswered)
{
    signIn("first");
    run(look(container, isAvailable));
    tasks.start(save(container));
    world.scheduler.turn();
    account.signOut();
    answerAll();
    EXPECT_EQ(first.deliveries.size(), 1U);
    EXPECT_EQ(first.frames, 0);
}

} // namespace
} // namespace Kestry
