#include "ApplicationSync.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "AccountContainer.h"
#include "AccountWorld.h"
#include "Refusal.h"

namespace Kestry {
namespace {

using KestryCore::CloudError;
using KestryCore::CloudSyncEnvironment;

class ApplicationSyncTest : public ::testing::Test, public AccountWorld {
protected:
    /// What became of a command: "waits", "done", or the words of the failure.
    struct Outcome {
        std::string words = "waits";
        int times = 0;
    };

    LiveSync::Done into(Outcome& outcome)
    {
        outcome = {};
        return [&outcome](const std::optional<std::string>& failure) {
            outcome.words = failure.value_or("done");
            ++outcome.times;
        };
    }
    std::string signIn(const std::string& user = "mia")
    {
        Outcome outcome;
        sync->signIn({"https://example.org/hours", user, false, "open sesame"}, into(outcome));
        answerAll();
        return outcome.words;
    }
    std::string turnOn()
    {
        Outcome outcome;
        sync->turnOn(into(outcome));
        answerAll();
        return outcome.words;
    }
    std::string exchange()
    {
        Outcome outcome;
        sync->exchange(into(outcome));
        answerAll();
        return outcome.words;
    }
    /// Signed in and turned on.
    void connect()
    {
        ASSERT_EQ(signIn(), "done");
        ASSERT_EQ(turnOn(), "done");
    }

    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    KestryCore::CloudSyncController controller{store,
        {"sqlite:/build", true, CloudSyncEnvironment::development},
        {.scheduler = world.scheduler,
            .open =
                [this](const std::string& identifier) {
                    return std::make_unique<AccountContainer>(account, identifier);
                },
            .hostName = [] { return "Desk"; },
            .observeAccount =
                [this](std::function<void()> observer) {
                    return account.observeSignIn(std::move(observer));
                },
            .now = [this] { return world.now(); },
            .steady = [this] { return world.scheduler.now(); }}};
    std::unique_ptr<ApplicationSync> sync = std::make_unique<ApplicationSync>(
        ApplicationSync::World{store, controller, account, world.scheduler});
};

TEST_F(ApplicationSyncTest, ItSignsInTurnsOnExchangesAndSignsOut)
{
    EXPECT_EQ(signIn(), "done");
    EXPECT_EQ(opened.password, "open sesame");
    EXPECT_EQ(turnOn(), "done");
    addClient(store, "Aster");
    EXPECT_EQ(exchange(), "done");
    EXPECT_TRUE(store.data()->replication->outbox.empty());
    Outcome outcome;
    sync->signOut(into(outcome));
    answerAll();
    EXPECT_EQ(outcome.words, "done");
    EXPECT_FALSE(controller.isEnabled());
    EXPECT_EQ(*account.name(), std::nullopt);
    EXPECT_TRUE(secrets.secrets.empty());
}

TEST_F(ApplicationSyncTest, TheConditionIsThatOfTheControllerAndTheAccount)
{
    connect();
    const SyncCondition condition = sync->condition();
    EXPECT_TRUE(condition.isConfigured);
    EXPECT_TRUE(condition.isEnabled);
    EXPECT_FALSE(condition.isSyncing);
    EXPECT_EQ(condition.status, "Up to date");
    EXPECT_EQ(condition.lastSync, world.now());
    EXPECT_EQ(condition.errorMessage, std::nullopt);
    EXPECT_EQ(condition.account->address, "https://example.org/hours");
    EXPECT_EQ(condition.account->user, "mia");
}

TEST_F(ApplicationSyncTest, ARefusedAccountIsToldInTheWordsOfTheStore)
{
    cloud.failures.emplace("status", CloudError("The password is wrong."));
    EXPECT_EQ(signIn(), "The password is wrong.");
    EXPECT_EQ(sync->condition().account.has_value(), false);
}

TEST_F(ApplicationSyncTest, OfTwoSignInsTheSecondCounts)
{
    Outcome first;
    sync->signIn({"https://example.org/hours", "leo", false, "x"}, into(first));
    EXPECT_EQ(signIn("mia"), "done");
    EXPECT_EQ(first.words, "Another sign-in has taken the place of this one.");
    EXPECT_EQ(sync->condition().account->user, "mia");
}

TEST_F(ApplicationSyncTest, WhoSignsOutIsToldThatItIsOff)
{
    connect();
    sync->signOut([](const auto&...) {});
    world.scheduler.turn();
    EXPECT_EQ(sync->condition().status, "iCloud sync is off");
}

TEST_F(ApplicationSyncTest, WhatWentWrongWithAnAccountGoesWithIt)
{
    connect();
    cloud.failures.emplace("status", CloudError("The keyring is locked. Press \"Sync now\"."));
    EXPECT_EQ(exchange(), "The keyring is locked. Press \"Sync now\".");
    EXPECT_TRUE(sync->condition().errorMessage.has_value());
    sync->signOut([](const auto&...) {});
    answerAll();
    EXPECT_EQ(sync->condition().errorMessage, std::nullopt);
    EXPECT_EQ(sync->condition().status, "iCloud sync is off");
}

TEST_F(ApplicationSyncTest, SigningOutEndsWhatIsBeingTurnedOn)
{
    EXPECT_EQ(signIn(), "done");
    Outcome turningOn;
    sync->turnOn(into(turningOn));
    world.scheduler.turn();
    sync->signOut([](const auto&...) {});
    answerAll();
    EXPECT_EQ(turningOn.words, "Sync was turned off before the exchange was over.");
    EXPECT_FALSE(store.data()->replication);
}

TEST_F(ApplicationSyncTest, NobodyCannotSignOut)
{
    EXPECT_EQ(KestryCore::refusalOf([&] { sync->signOut({}); }),
        "Nobody is signed in to a record store.");
}

TEST_F(ApplicationSyncTest, APasswordThatTheDesktopDoesNotForgetIsTold)
{
    connect();
    secrets.isLocked = true;
    Outcome outcome;
    sync->signOut(into(outcome));
    answerAll();
    EXPECT_EQ(outcome.words,
        "Signed out, and sync is off. The desktop did not forget the password. Remove "
        "\"org.kestry.Kestry\" in its password manager.");
    EXPECT_FALSE(sync->condition().account.has_value());
}

TEST_F(ApplicationSyncTest, AFailureIsToldInItsOwnWords)
{
    connect();
    cloud.failures.emplace("changes", CloudError("The record store is full."));
    std::string words = exchange();
    EXPECT_EQ(words, *controller.fields().errorMessage);
    EXPECT_EQ(sync->condition().status, "Sync needs attention");
    EXPECT_EQ(exchange(), "done");
    controller.disable();
    cloud.failures.emplace("changes", CloudError("The record store is full."));
    words = turnOn();
    EXPECT_EQ(words, *controller.fields().errorMessage);
}

TEST_F(ApplicationSyncTest, TurningOnWithoutAnAccountIsToldInWords)
{
    cloud.isAvailable = false;
    EXPECT_EQ(turnOn(), "Sign in to iCloud in Settings, then enable sync again.");
    EXPECT_FALSE(controller.isEnabled());
}

TEST_F(ApplicationSyncTest, WhileItIsOffNothingIsExchanged)
{
    EXPECT_EQ(KestryCore::refusalOf([&] { sync->exchange([](const auto&) {}); }),
        "Sync is off. Turn it on with \"kestryctl sync on\".");
    connect();
    sync->turnOff();
    EXPECT_FALSE(store.data()->replication->enabled);
    EXPECT_EQ(KestryCore::refusalOf([&] { sync->exchange([](const auto&) {}); }),
        "Sync is off. Turn it on with \"kestryctl sync on\".");
}

TEST_F(ApplicationSyncTest, AllRecordsGoOutAgainAfterAnExchangeUnderWay)
{
    addClient(store, "Aster");
    connect();
    controller.syncNow();
    world.scheduler.turn();
    const std::size_t before = cloud.deliveries.size();
    Outcome upload;
    sync->uploadAgain(into(upload));
    answerAll();
    EXPECT_EQ(upload.words, "done");
    EXPECT_GT(cloud.deliveries.size(), before);
    sync->turnOff();
    EXPECT_EQ(KestryCore::refusalOf([&] { sync->uploadAgain([](const auto&) {}); }),
        "Sync is off. Turn it on with \"kestryctl sync on\".");
}

TEST_F(ApplicationSyncTest, AnExchangeUnderWayIsWaitedForAndAnotherFollows)
{
    connect();
    controller.syncNow();
    world.scheduler.turn();
    addClient(store, "Aster");
    const int before = cloud.times("changes");
    Outcome now;
    sync->exchange(into(now));
    world.scheduler.turn();
    EXPECT_EQ(now.words, "waits");
    answerAll();
    EXPECT_EQ(now.words, "done");
    EXPECT_EQ(now.times, 1);
    EXPECT_GT(cloud.times("changes"), before);
    EXPECT_TRUE(store.data()->replication->outbox.empty());
}

TEST_F(ApplicationSyncTest, TurningOnWhatIsOnExchangesRecords)
{
    connect();
    controller.syncNow();
    world.scheduler.turn();
    Outcome on;
    sync->turnOn(into(on));
    answerAll();
    EXPECT_EQ(on.words, "done");
    EXPECT_TRUE(controller.isEnabled());
}

TEST_F(ApplicationSyncTest, WhoeverTurnsItOffEndsTheWaitInWords)
{
    connect();
    Outcome now;
    sync->exchange(into(now));
    world.scheduler.turn();
    sync->turnOff();
    answerAll();
    EXPECT_EQ(now.words, "Sync was turned off before the exchange was over.");
}

TEST_F(ApplicationSyncTest, TurnedOffAndOnAgainItIsExchangedAllTheSame)
{
    connect();
    Outcome now;
    sync->exchange(into(now));
    world.scheduler.turn();
    sync->turnOff();
    Outcome on;
    sync->turnOn(into(on));
    answerAll();
    EXPECT_EQ(on.words, "done");
    EXPECT_EQ(now.words, "done");
}

TEST_F(ApplicationSyncTest, WhatCannotBeSavedAsOffIsToldAndIsOff)
{
    connect();
    world.damageLedger();
    EXPECT_TRUE(KestryCore::refusalOf([&] { sync->turnOff(); })
                    .starts_with("Sync is off until Kestry ends, and could not be turned off for "
                                 "good: "));
    EXPECT_FALSE(sync->condition().isEnabled);
}

TEST_F(ApplicationSyncTest, MoreThanItTakesAreRefused)
{
    connect();
    std::vector<Outcome> waiting(ApplicationSync::mostWaiting);
    for (Outcome& each : waiting) {
        sync->exchange(into(each));
    }
    EXPECT_EQ(KestryCore::refusalOf([&] { sync->exchange([](const auto&) {}); }),
        "Too many commands are waiting for the record store. Nothing was changed; try again "
        "later.");
    answerAll();
    for (const Outcome& each : waiting) {
        EXPECT_EQ(each.words, "done");
    }
    EXPECT_EQ(exchange(), "done");
}

TEST_F(ApplicationSyncTest, TheEndIsToldToAllWhoWaitAndToNobodyTwice)
{
    connect();
    Outcome now;
    Outcome signingIn;
    sync->exchange(into(now));
    sync->signIn({"https://example.org/hours", "leo", false, "x"}, into(signingIn));
    sync->end();
    EXPECT_EQ(now.words, "Kestry was quit before this was over.");
    EXPECT_EQ(signingIn.words, "Kestry was quit before this was over.");
    answerAll();
    EXPECT_EQ(now.times + signingIn.times, 2);
}

TEST_F(ApplicationSyncTest, WhoeverWaitsForWhatHasGoneIsNotTold)
{
    connect();
    Outcome now;
    sync->exchange(into(now));
    sync.reset();
    answerAll();
    EXPECT_EQ(now.words, "waits");
}

} // namespace
} // namespace Kestry
