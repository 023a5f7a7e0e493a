#include "CloudAccount.h"

#include <gtest/gtest.h>

#include <vector>

#include "ApplicationWorld.h"
#include "FakeSecrets.h"
#include "ScriptedCloud.h"

namespace Kestry {
namespace {

using KestryCore::CloudContainer;
using KestryCore::CloudError;
using KestryCore::CloudErrorCode;
using KestryCore::Task;

class CloudAccountTest : public ::testing::Test {
protected:
    CloudAccountTest() { restart(); }

    /// The program is started anew.
    void restart()
    {
        account.reset();
        account = std::make_unique<CloudAccount>(CloudAccount::World{world.defaults, secrets,
            world.scheduler, [this](const CloudCredentials& credentials, StoreUse use) {
                return open(credentials, use);
            }});
    }
    std::unique_ptr<CloudContainer> open(const CloudCredentials& credentials, StoreUse use)
    {
        if (credentials.address == "nonsense") {
            throw CloudError("Enter the address of a record store.");
        }
        opened.push_back(credentials);
        uses.push_back(use);
        return cloud.open(credentials.address);
    }
    void signIn(const std::string& address, const std::string& user = "mia",
        const std::string& password = "open sesame")
    {
        isOver = false;
        account->signIn({address, user, password}, [this](std::optional<std::string> words) {
            failure = std::move(words);
            isOver = true;
        });
        answerAll();
    }
    /// Begins a sign-in that waits for the store's answer.
    void begin()
    {
        isOver = false;
        account->signIn({"https://example.org/hours", "mia", "x"},
            [this](const std::optional<std::string>& words) {
                failure = words;
                isOver = true;
            });
        world.scheduler.turn();
    }
    void answerAll()
    {
        world.scheduler.turn();
        while (!cloud.waiting().empty()) {
            cloud.answer();
            world.scheduler.turn();
        }
        world.scheduler.turn();
    }
    /// What the account's store comes to: the address of the opened one, or the failure.
    std::string use(const std::string& identifier = "sqlite:/build")
    {
        std::string result = "never";
        KestryCore::TaskOwner tasks(world.scheduler, [&](const std::exception_ptr& thrown) {
            try {
                std::rethrow_exception(thrown);
            } catch (const std::exception& known) {
                result = known.what();
            }
        });
        tasks.start(useInto(account->container(identifier), result));
        answerAll();
        return result;
    }
    static Task<void> useInto(Task<std::shared_ptr<CloudContainer>> opening, std::string& result)
    {
        const std::shared_ptr<CloudContainer> container = co_await opening;
        result = container ? "opened" : "none";
    }
    [[nodiscard]] std::string user() const
    {
        return *account->name() ? (*account->name())->user : "nobody";
    }

    ApplicationWorld world;
    FakeSecrets secrets;
    KestryCore::ScriptedCloud cloud{world.scheduler};
    std::vector<CloudCredentials> opened;
    std::vector<StoreUse> uses;
    std::optional<std::string> failure;
    bool isOver = false;
    std::unique_ptr<CloudAccount> account;
};

TEST_F(CloudAccountTest, AnAccountThatTheStoreTakesIsKeptAndItsPasswordIsInNoFile)
{
    signIn("https://example.org/hours");
    EXPECT_TRUE(isOver);
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(user(), "mia");
    for (const auto& [key, value] : world.defaults.strings) {
        EXPECT_EQ(value.find("sesame"), std::string::npos) << key;
    }
    EXPECT_EQ(secrets.secrets.begin()->second, "open sesame");
    EXPECT_FALSE(*account->isForgotten());
    EXPECT_EQ(uses.front(), StoreUse::signIn);
}

TEST_F(CloudAccountTest, AStoreThatWasThereIsNotMadeAnew)
{
    signIn("https://example.org/hours");
    EXPECT_EQ(use(), "opened");
    EXPECT_EQ(uses.back(), StoreUse::work);
    EXPECT_EQ(use(), "opened");
    EXPECT_EQ(uses.size(), 2U);
}

TEST_F(CloudAccountTest, ARefusedAccountChangesNothing)
{
    signIn("https://example.org/hours");
    cloud.failures.emplace("status", CloudError("The password is wrong."));
    signIn("https://example.org/hours", "eve");
    EXPECT_EQ(failure, "The password is wrong.");
    EXPECT_EQ(user(), "mia");
    EXPECT_EQ(secrets.secrets.size(), 1U);
}

TEST_F(CloudAccountTest, WhatIsNoAddressIsToldBeforeAnythingIsAsked)
{
    signIn("nonsense");
    EXPECT_EQ(failure, "Enter the address of a record store.");
    EXPECT_TRUE(cloud.asked().empty());
}

TEST_F(CloudAccountTest, AStoreWithoutAPlaceForTheRecordsGetsOne)
{
    cloud.hasZone = false;
    signIn("https://example.org/hours");
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(cloud.times("create"), 1);
}

TEST_F(CloudAccountTest, AStoreThatMayNotBeMadeIsARefusal)
{
    cloud.hasZone = false;
    cloud.failures.emplace("create", CloudError("Ask the administrator for a database."));
    signIn("https://example.org/hours");
    EXPECT_EQ(failure, "Ask the administrator for a database.");
    EXPECT_EQ(user(), "nobody");
}

TEST_F(CloudAccountTest, AfterARestartThePasswordComesFromTheDesktopOnce)
{
    signIn("https://example.org/hours");
    restart();
    EXPECT_EQ(user(), "mia");
    EXPECT_EQ(use(), "opened");
    EXPECT_EQ(use(), "opened");
    EXPECT_EQ(opened.back().password, "open sesame");
    EXPECT_EQ(uses.back(), StoreUse::work);
    EXPECT_EQ(secrets.reads, 1);
    EXPECT_EQ(opened.size(), 2U); // once to sign in
}

TEST_F(CloudAccountTest, WhereTheDesktopKeepsNoPasswordItLastsAsLongAsTheProgram)
{
    secrets.keeps = false;
    signIn("https://example.org/hours");
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_TRUE(*account->isForgotten());
    EXPECT_EQ(use(), "opened");
    restart();
    EXPECT_EQ(use(),
        "The password of the record store is not known any more. Sign in again in Settings.");
    EXPECT_EQ(user(), "mia");
}

TEST_F(CloudAccountTest, ADesktopThatWithholdsThePasswordIsNotAskedForItEachMinute)
{
    signIn("https://example.org/hours");
    secrets.secrets.clear();
    restart();
    const std::string words = use();
    EXPECT_EQ(use(), words);
    EXPECT_EQ(secrets.reads, 1);
    signIn("https://example.org/hours");
    EXPECT_EQ(use(), "opened");
}

TEST_F(CloudAccountTest, ADesktopThatCannotBeAskedYetIsAskedAgain)
{
    signIn("https://example.org/hours");
    secrets.isSilent = true;
    restart();
    EXPECT_EQ(use(),
        "The password of the record store is not known any more. Sign in again in Settings.");
    secrets.isSilent = false;
    EXPECT_EQ(use(), "opened");
}

TEST_F(CloudAccountTest, SigningOutForgetsTheAccountAndThePassword)
{
    signIn("https://example.org/hours");
    account->signOut();
    EXPECT_EQ(user(), "nobody");
    EXPECT_TRUE(secrets.secrets.empty());
    restart();
    EXPECT_EQ(user(), "nobody");
    EXPECT_EQ(use("sqlite:/build"), "opened");
    EXPECT_EQ(opened.back().address, "sqlite:/build");
}

TEST_F(CloudAccountTest, AnotherAccountTakesThePlaceOfTheFirstAndOfItsPassword)
{
    signIn("https://example.org/hours", "mia", "first");
    signIn("https://example.org/hours", "leo", "second");
    EXPECT_EQ(user(), "leo");
    ASSERT_EQ(secrets.secrets.size(), 1U);
    EXPECT_EQ(secrets.secrets.begin()->second, "second");
}

TEST_F(CloudAccountTest, AFileNeedsNoPassword)
{
    signIn("sqlite:/shared/store", "", "");
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_TRUE(secrets.secrets.empty());
    EXPECT_FALSE(*account->isForgotten());
    restart();
    EXPECT_EQ(use(), "opened");
    EXPECT_EQ(secrets.reads, 0);
}

TEST_F(CloudAccountTest, TheSameAccountWithANewPasswordIsNoChangeOfTheAccount)
{
    signIn("https://example.org/hours", "mia", "old");
    int changes = 0;
    const auto subscription = account->name().observe([&](const auto&) { ++changes; });
    signIn("https://example.org/hours", "mia", "new");
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(use(), "opened");
    EXPECT_EQ(opened.back().password, "new");
}

TEST_F(CloudAccountTest, AnotherUserIsToldAndThatNobodyIsLeftIsNot)
{
    int changes = 0;
    const auto subscription = account->observeSignIn([&] { ++changes; });
    signIn("https://example.org/hours", "mia");
    EXPECT_EQ(changes, 1);
    account->signOut();
    EXPECT_EQ(changes, 1);
    signIn("https://example.org/hours", "leo");
    signIn("https://example.org/hours", "leo");
    EXPECT_EQ(changes, 2);
}

TEST_F(CloudAccountTest, ASignInThatIsCancelledIsToldSoAndKeepsNothing)
{
    begin();
    account->cancelSignIn();
    EXPECT_FALSE(isOver);
    answerAll();
    EXPECT_EQ(failure, "The sign-in was cancelled.");
    EXPECT_EQ(user(), "nobody");
    EXPECT_EQ(cloud.frames, 0);
    begin();
    account->signOut();
    answerAll();
    EXPECT_TRUE(isOver);
}

TEST_F(CloudAccountTest, ASignInThatAnotherReplacesIsToldSo)
{
    std::optional<std::string> first;
    account->signIn({"https://example.org/hours", "leo", "x"},
        [&](const std::optional<std::string>& words) { first = words; });
    world.scheduler.turn();
    signIn("https://example.org/hours");
    EXPECT_EQ(first, "Another sign-in has taken the place of this one.");
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(user(), "mia");
}

TEST_F(CloudAccountTest, AnAccountThatGoesTakesItsSignInWithIt)
{
    begin();
    account.reset();
    answerAll();
    EXPECT_FALSE(isOver);
    EXPECT_EQ(cloud.frames, 0);
    restart();
    begin();
    account->cancelSignIn();
    account.reset();
    answerAll();
    EXPECT_FALSE(isOver);
}

} // namespace
} // namespace Kestry
