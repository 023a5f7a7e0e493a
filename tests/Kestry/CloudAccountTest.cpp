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
        account = std::make_unique<CloudAccount>(
            CloudAccount::World{world.defaults, secrets, world.scheduler,
                [this](const CloudCredentials& credentials, StoreUse use) {
                    return open(credentials, use);
                },
                [this] { return hasSynced; }});
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
    /// What the account's store comes to after some time: "opened", or the failure.
    std::string use(const std::string& identifier = "sqlite:/build", double seconds = 0.0)
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
        world.scheduler.advance(seconds);
        answerAll();
        return result;
    }
    static Task<void> useInto(Task<std::shared_ptr<CloudContainer>> opening, std::string& result)
    {
        const std::shared_ptr<CloudContainer> container = co_await opening;
        result = container ? "opened" : "none";
    }
    /// Begins a sign-in that the store has accepted and the desktop has not kept yet.
    void beginKeeping(const std::string& user, const std::string& password)
    {
        secrets.answersLater = true;
        signIn("https://example.org/hours", user, password);
        EXPECT_FALSE(isOver);
    }
    void letDesktopAnswer()
    {
        while (!secrets.asked.empty()) {
            secrets.answer();
            world.scheduler.turn();
        }
    }
    /// All that the desktop keeps, in the order of the accounts.
    [[nodiscard]] std::vector<std::string> kept() const
    {
        std::vector<std::string> passwords;
        for (const auto& [key, password] : secrets.secrets) {
            passwords.push_back(password);
        }
        return passwords;
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
    bool hasSynced = false;
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

TEST_F(CloudAccountTest, OnlyWhatIsAnAddressCanBeTriedAndNobodyIsAskedForThat)
{
    EXPECT_FALSE(account->canTry({"nonsense", "mia"}));
    EXPECT_TRUE(account->canTry({"https://example.org/hours", "mia"}));
    EXPECT_TRUE(cloud.asked().empty());
    EXPECT_EQ(user(), "nobody");
}

TEST_F(CloudAccountTest, AStoreWithoutAPlaceForTheRecordsGetsOne)
{
    cloud.hasZone = false;
    signIn("https://example.org/hours");
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(cloud.times("create"), 1);
}

TEST_F(CloudAccountTest, ForALedgerThatHasSyncedNoPlaceIsMadeAnew)
{
    cloud.hasZone = false;
    hasSynced = true;
    signIn("https://example.org/hours");
    EXPECT_EQ(failure, std::nullopt);
    EXPECT_EQ(user(), "mia");
    EXPECT_EQ(cloud.times("create"), 0);
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
    EXPECT_EQ(use(), "This desktop keeps no passwords now. Sign in again in Settings.");
    EXPECT_EQ(user(), "mia");
}

TEST_F(CloudAccountTest, APasswordThatIsNotThereAnyMoreIsToldSo)
{
    signIn("https://example.org/hours");
    secrets.secrets.clear();
    restart();
    EXPECT_EQ(use(),
        "The password of the record store is not known any more. Sign in again in Settings.");
}

TEST_F(CloudAccountTest, ALockedKeyringIsAskedAgainOnlyWhenTheUserWantsIt)
{
    signIn("https://example.org/hours");
    restart();
    secrets.isLocked = true;
    for (int poll = 0; poll < 3; ++poll) {
        EXPECT_EQ(use(),
            "The desktop did not hand out the password of the record store. Unlock its keyring, "
            "then press \"Sync now\".");
    }
    EXPECT_EQ(secrets.reads, 1);
    secrets.isLocked = false;
    account->askAgain();
    EXPECT_EQ(use(), "opened");
    EXPECT_EQ(secrets.reads, 2);
}

TEST_F(CloudAccountTest, AServiceThatStartsLateIsFoundWithoutTheUser)
{
    signIn("https://example.org/hours");
    restart();
    secrets.keeps = false;
    EXPECT_EQ(use(), "This desktop keeps no passwords now. Sign in again in Settings.");
    secrets.keeps = true;
    EXPECT_EQ(use(), "opened");
}

TEST_F(CloudAccountTest, AKeyringThatDoesNotAnswerIsNotWaitedForAndItsLateAnswerCounts)
{
    signIn("https://example.org/hours");
    restart();
    secrets.answersLater = true;
    EXPECT_EQ(use("", PasswordKeeper::patienceSeconds),
        "The desktop has not handed out the password of the record store yet. See whether its "
        "keyring asks for something, then press \"Sync now\".");
    secrets.answer();
    EXPECT_EQ(use(), "opened");
    EXPECT_EQ(secrets.reads, 1);
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
    secrets.keeps = false;
    restart();
    EXPECT_EQ(use(), "This desktop keeps no passwords now. Sign in again in Settings.");
    secrets.keeps = true;
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

TEST_F(CloudAccountTest, ASignInThatIsCancelledWhileItsPasswordIsBeingKeptLeavesNone)
{
    beginKeeping("mia", "x");
    account->cancelSignIn();
    letDesktopAnswer();
    EXPECT_EQ(failure, "The sign-in was cancelled.");
    EXPECT_EQ(user(), "nobody");
    EXPECT_EQ(kept(), std::vector<std::string>());
}

TEST_F(CloudAccountTest, ASignInThatIsCancelledThenLeavesThePasswordOfTheAccountThatStays)
{
    signIn("https://example.org/hours", "mia", "old");
    beginKeeping("mia", "new");
    account->cancelSignIn();
    letDesktopAnswer();
    EXPECT_EQ(kept(), std::vector<std::string>{"old"});
    beginKeeping("leo", "other");
    account->cancelSignIn();
    letDesktopAnswer();
    EXPECT_EQ(kept(), std::vector<std::string>{"old"});
    EXPECT_EQ(user(), "mia");
}

TEST_F(CloudAccountTest, SigningOutWhileAPasswordIsBeingKeptLeavesNone)
{
    signIn("https://example.org/hours", "mia", "old");
    beginKeeping("mia", "new");
    account->signOut();
    letDesktopAnswer();
    EXPECT_EQ(kept(), std::vector<std::string>());
}

TEST_F(CloudAccountTest, APasswordThatTheDesktopDoesNotForgetIsTold)
{
    signIn("https://example.org/hours");
    secrets.isLocked = true;
    account->signOut([this](const std::optional<std::string>& words) { failure = words; });
    answerAll();
    EXPECT_EQ(failure,
        "The desktop did not forget the password. Remove \"org.kestry.Kestry\" in its password "
        "manager.");
    EXPECT_EQ(*account->leftBehind(), failure);
    secrets.isLocked = false;
    signIn("https://example.org/hours");
    EXPECT_EQ(*account->leftBehind(), std::nullopt);
}

TEST_F(CloudAccountTest, SigningOutIsToldOnceThePasswordIsForgotten)
{
    signIn("https://example.org/hours");
    secrets.answersLater = true;
    account->signOut([this](const std::optional<std::string>& words) { failure = words; });
    failure = "still there";
    world.scheduler.turn();
    EXPECT_EQ(failure, "still there");
    EXPECT_EQ(user(), "nobody");
    letDesktopAnswer();
    EXPECT_EQ(failure, std::nullopt);
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
