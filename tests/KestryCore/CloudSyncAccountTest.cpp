// The user's switch, and the account behind it.

#include "ControllerFixture.h"
#include "LedgerGenerator.h"

namespace KestryCore {
namespace {

const char* const accountChanged =
    "iCloud account changed. Enable sync to verify your original account.";

class CloudSyncAccountTest : public ControllerFixture { };

// The user's switch

TEST_F(CloudSyncAccountTest, EnablingConnectsALedgerAndBeginsACycleAndThePolling)
{
    disconnect();
    bool isDone = false;
    controller->enable([&] { isDone = true; });
    EXPECT_TRUE(isSyncing());
    answerAll();
    EXPECT_TRUE(isDone);
    EXPECT_EQ(state().accountID, "account");
    EXPECT_EQ(state().deviceName, "Desk");
    EXPECT_EQ(state().environment, development);
    EXPECT_TRUE(state().outbox.empty());
    expectSuccess();
    pass(60);
    EXPECT_EQ(cycles(), 2);
}

TEST_F(CloudSyncAccountTest, EnablingWithoutAnAccountAsksToSignIn)
{
    disconnect();
    cloud.isAvailable = false;
    enableWhole();
    expectFailure("Sign in to iCloud in Settings, then enable sync again.");
    EXPECT_FALSE(ledger().replication);
}

TEST_F(CloudSyncAccountTest, ABuildThatMayUseNoStoreCannotBeEnabled)
{
    disconnect();
    configure(false, development);
    enableWhole();
    expectFailure("This build needs iCloud signing and provisioning before sync can be enabled.");
    EXPECT_EQ(cloud.opened, 0);
}

TEST_F(CloudSyncAccountTest, EnablingRefusesAnotherAccountAndStaysOff)
{
    controller->disable();
    cloud.userName = "stranger";
    enableWhole();
    expectFailure("This ledger belongs to another iCloud account. Switch back before syncing; your "
                  "local data has been preserved.");
    EXPECT_FALSE(controller->isEnabled());
    pass(120);
    EXPECT_EQ(cycles(), 0);
}

TEST_F(CloudSyncAccountTest, EnablingNeedsANameForThisMachine)
{
    disconnect();
    hostName = " ";
    enableWhole();
    expectFailure("Sync needs an account and device name.");
}

TEST_F(CloudSyncAccountTest, EnablingShowsTheStoresFailure)
{
    disconnect();
    cloud.failures.emplace("name", CloudError("The server is busy.").retryingAfter(4.5));
    enableWhole();
    expectFailure("The server is busy. Retry in 5 seconds.");
}

TEST_F(CloudSyncAccountTest, EnablingDuringACycleDoesNothing)
{
    sync();
    bool isDone = false;
    controller->enable([&] { isDone = true; });
    EXPECT_TRUE(isDone);
    answerAll();
    EXPECT_EQ(cycles(), 1);
}

TEST_F(CloudSyncAccountTest, TurningOffWhileItIsEnabledStopsItSilently)
{
    disconnect();
    for (const char* const question : {"status", "name"}) {
        enable();
        answerUntil(question);
        controller->disable();
        answerAll();
        EXPECT_FALSE(ledger().replication);
        EXPECT_FALSE(isSyncing());
        EXPECT_EQ(failure(), "");
        EXPECT_EQ(status(), "iCloud sync is off");
    }
}

TEST_F(CloudSyncAccountTest, WhatChangesWhileALargeLedgerIsConnectedIsDelivered)
{
    control(generateLedger({.sessions = 2'500}));
    enable();
    answerUntil("name");
    const Client client = ledger().clients.front();
    cloud.answer();
    scheduler.post([&] {
        EXPECT_FALSE(ledger().replication); // after the first part
        store().updateClient(client.id, {.name = "Renamed", .rateCents = 1, .rateIsKnown = true});
    });
    scheduler.turn();
    EXPECT_NE(state().outbox.at(clientKey(client.id)).payload->find("Renamed"), std::string::npos);
}

TEST_F(CloudSyncAccountTest, TurningOffWhileALargeLedgerIsConnectedLeavesItAsItWas)
{
    control(generateLedger({.sessions = 2'500}));
    enable();
    answerUntil("name");
    cloud.answer();
    scheduler.post([&] { controller->disable(); });
    answerAll();
    scheduler.turn();
    EXPECT_FALSE(ledger().replication);
    EXPECT_FALSE(isSyncing());
    EXPECT_EQ(failure(), "");
}

TEST_F(CloudSyncAccountTest, EnablingClearsTheFailureBeforeItsCycle)
{
    cloud.failures.emplace("zone", CloudError("Busy."));
    syncWhole();
    controller->disable();
    enable();
    answer();
    EXPECT_EQ(failure(), "Busy.");
    answer();
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(status(), "Syncing");
    answerAll();
    expectSuccess();
}

TEST_F(CloudSyncAccountTest, TurningOffKeepsTheLedgerAndGoesOnTracking)
{
    rename("Ours");
    controller->disable();
    EXPECT_EQ(status(), "iCloud sync is off");
    rename("Ours again");
    EXPECT_EQ(state().outbox.size(), 1U);
    startWhole();
    pass(120);
    EXPECT_TRUE(cloud.asked().empty());
    enableWhole();
    EXPECT_TRUE(state().outbox.empty());
}

TEST_F(CloudSyncAccountTest, WhatCannotBeSavedAsOffStaysOffUntilItIsEnabled)
{
    startWhole();
    files.failCallsFrom(1, EIO);
    controller->disable();
    files.heal();
    EXPECT_TRUE(state().enabled);
    EXPECT_EQ(status(), "iCloud sync is off");
    EXPECT_NE(errorMessage(), "");
    pass(120);
    EXPECT_EQ(cycles(), 1);
    enableWhole();
    EXPECT_EQ(cycles(), 2);
}

// The account

TEST_F(CloudSyncAccountTest, AnAccountThatChangesSuspendsUntilItIsVerified)
{
    startWhole();
    changeAccount();
    scheduler.turn();
    EXPECT_EQ(status(), accountChanged);
    EXPECT_FALSE(controller->isEnabled());
    EXPECT_FALSE(state().enabled);
    pass(120);
    EXPECT_EQ(cycles(), 1);
    EXPECT_EQ(status(), accountChanged);
    enableWhole();
    EXPECT_TRUE(controller->isEnabled());
    expectSuccess();
}

TEST_F(CloudSyncAccountTest, TheDifferentAccountIsRefusedThen)
{
    startWhole();
    cloud.userName = "stranger";
    changeAccount();
    scheduler.turn();
    EXPECT_EQ(status(), accountChanged);
    enableWhole();
    expectFailure("This ledger belongs to another iCloud account. Switch back before syncing; your "
                  "local data has been preserved.");
    EXPECT_FALSE(controller->isEnabled());
}

TEST_F(CloudSyncAccountTest, AnAccountThatChangesDuringACycleEndsItSilently)
{
    bring({stored(remote(renamedAcme("Theirs")))}, "c1");
    controller->start();
    scheduler.turn();
    answerUntil("changes");
    cloud.isAvailable = false;
    changeAccount();
    scheduler.turn();
    answerAll();
    EXPECT_EQ(status(), accountChanged);
    EXPECT_EQ(failure(), "");
    EXPECT_EQ(ledger().clients.front().name, "Acme");
}

TEST_F(CloudSyncAccountTest, ALedgerThatWasNeverConnectedIsSuspendedToo)
{
    disconnect();
    controller->start();
    changeAccount();
    scheduler.turn();
    EXPECT_EQ(status(), accountChanged);
    EXPECT_FALSE(ledger().replication);
}

TEST_F(CloudSyncAccountTest, AnAccountThatChangesBackAtOnceHasChangedAllTheSame)
{
    disconnect();
    controller->start();
    controller->enable();
    scheduler.turn();
    answerUntil("name");
    changeAccount();
    cloud.userName = "stranger";
    cloud.answer();
    changeAccount();
    scheduler.turn();
    EXPECT_FALSE(ledger().replication) << "the ledger belongs to a stranger";
    EXPECT_EQ(status(), accountChanged);
}

TEST_F(CloudSyncAccountTest, WhatWentWrongWithAnAccountGoesWithIt)
{
    const std::function<void()> ends[] = {
        [this] { changeAccount(); }, [this] { controller->leaveAccount(); }};
    for (const auto& end : ends) {
        startWhole();
        cloud.failures.emplace("zone", CloudError("This is not your database."));
        syncWhole();
        expectFailure("This is not your database.");
        end();
        scheduler.turn();
        EXPECT_EQ(failure(), "");
        EXPECT_FALSE(controller->isEnabled());
        EXPECT_NE(status(), "Sync needs attention");
        enableWhole();
    }
}

TEST_F(CloudSyncAccountTest, ABuildThatMayUseNoStoreSaysSoWhateverAccountGoes)
{
    configure(false, std::nullopt);
    const std::string before = status();
    controller->leaveAccount();
    EXPECT_EQ(status(), before);
    EXPECT_TRUE(state().enabled);
}

TEST_F(CloudSyncAccountTest, AnAccountThatChangesAfterANewStartSuspends)
{
    startWhole();
    changeAccount();
    controller->stop();
    controller->start();
    scheduler.turn();
    answerAll();
    changeAccount();
    scheduler.turn();
    EXPECT_EQ(status(), accountChanged);
}

} // namespace
} // namespace KestryCore
