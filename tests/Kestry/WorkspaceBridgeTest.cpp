#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "SyncState.h"
#include "WorkspaceBridge.h"

namespace Kestry {
namespace {

class WorkspaceBridgeTest : public ::testing::Test {
protected:
    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    Commander commander{store, state, [this] { return world.now(); }, [] {}};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar{
        KestryCore::ZoneCalendar("Europe/Berlin", "en_US")};
    ClientLogos logos;
    WorkspaceBridge bridge{commander, store, state, calendar, logos};
};

TEST_F(WorkspaceBridgeTest, GoesToAPageByItsValue)
{
    EXPECT_EQ("Overview", bridge.destination());
    bridge.go("Sessions");
    EXPECT_EQ("Sessions", bridge.destination());
    bridge.go("Nowhere");
    EXPECT_EQ("Sessions", bridge.destination());
}

TEST_F(WorkspaceBridgeTest, ChoosingAClientGoesToItsPage)
{
    const QAbstractItemModelTester tester(bridge.clients());
    const auto birch = addClient(store, "Birch");

    bridge.chooseClient(QString::fromStdString(birch.text()));

    EXPECT_EQ("Client", bridge.destination());
    EXPECT_EQ(birch, *state.selectedClient);
    EXPECT_TRUE(
        bridge.clients()->data(bridge.clients()->index(0), ClientsModel::IsChosenRole).toBool());
}

TEST_F(WorkspaceBridgeTest, ASelectedClientThatAnotherDeviceDeletesIsNoLongerThere)
{
    const auto birch = addClient(store, "Birch");
    store.beginSync("account", "Desk", KestryCore::CloudSyncEnvironment::development);
    for (const KestryCore::SyncRecord& record : store.pendingSyncRecords(10)) {
        store.acknowledgeDelivery(record, "");
    }
    bridge.chooseClient(QString::fromStdString(birch.text()));
    EXPECT_TRUE(bridge.hasSelectedClient());

    store.applyRemoteSync({{"Client:" + birch.text(), KestryCore::Uuid::random().text(), "Laptop",
                              std::nullopt, true}},
        {}, "cursor");

    EXPECT_FALSE(bridge.hasSelectedClient());
    EXPECT_EQ("Client", bridge.destination());
    EXPECT_EQ(0, bridge.clients()->rowCount());
    EXPECT_EQ(birch, *state.selectedClient);
}

TEST_F(WorkspaceBridgeTest, TheSessionsPageStaysOnTheSelectedClient)
{
    const auto birch = addClient(store, "Birch");
    bridge.chooseClient(QString::fromStdString(birch.text()));
    bridge.go("Sessions");
    EXPECT_EQ(birch, *state.selectedClient);
}

TEST_F(WorkspaceBridgeTest, ShowsAFailureUntilItIsDismissed)
{
    EXPECT_EQ("", bridge.alertTitle());
    store.reportFailure("The disk is full.");
    EXPECT_EQ("Your time needs attention", bridge.alertTitle());
    EXPECT_EQ("The disk is full.", bridge.alertMessage());
    bridge.dismissAlert();
    EXPECT_EQ("", bridge.alertTitle());
    EXPECT_FALSE(store.errorMessage()->has_value());
}

TEST_F(WorkspaceBridgeTest, ShowsWhatBecameOfAnExportUntilItIsDismissed)
{
    state.exportMessage.assign("12 sessions were exported.");
    EXPECT_EQ("Export complete", bridge.alertTitle());
    EXPECT_EQ("12 sessions were exported.", bridge.alertMessage());
    bridge.dismissAlert();
    EXPECT_FALSE(state.exportMessage->has_value());
}

TEST_F(WorkspaceBridgeTest, AFailureIsToldBeforeAnExportWhichWaitsForItsTurn)
{
    state.exportMessage.assign("12 sessions were exported.");
    store.reportFailure("The disk is full.");
    EXPECT_EQ("The disk is full.", bridge.alertMessage());
    bridge.dismissAlert();
    EXPECT_EQ("12 sessions were exported.", bridge.alertMessage());
}

TEST_F(WorkspaceBridgeTest, ShowsWhyAnUpdateWasPostponedUntilItIsDismissed)
{
    state.updateMessage.assign("Finish the current session.");
    EXPECT_EQ("Update postponed", bridge.alertTitle());
    EXPECT_EQ("Finish the current session.", bridge.alertMessage());
    bridge.dismissAlert();
    EXPECT_EQ("", bridge.alertTitle());
    EXPECT_FALSE(state.updateMessage->has_value());
}

TEST_F(WorkspaceBridgeTest, APostponedUpdateIsToldAfterAFailureAndBeforeAnExport)
{
    state.exportMessage.assign("12 sessions were exported.");
    state.updateMessage.assign("Finish the current session.");
    store.reportFailure("The disk is full.");
    EXPECT_EQ("The disk is full.", bridge.alertMessage());
    bridge.dismissAlert();
    EXPECT_EQ("Finish the current session.", bridge.alertMessage());
    bridge.dismissAlert();
    EXPECT_EQ("12 sessions were exported.", bridge.alertMessage());
}

TEST_F(WorkspaceBridgeTest, ShowsARecoveryUntilItIsDismissed)
{
    addClient(store, "Birch");
    store.start(store.data()->clients.front().id, std::nullopt, "", world.now());
    KestryCore::TimeStore reopened(world.storePlatform(), world.onDisk());
    Commander again(
        reopened, state, [this] { return world.now(); }, [] {});
    WorkspaceBridge shown(again, reopened, state, calendar, logos);

    EXPECT_TRUE(shown.isRecovered());
    shown.dismissRecovery();
    EXPECT_FALSE(shown.isRecovered());
}

TEST_F(WorkspaceBridgeTest, TellsOfAClockThatJumpedUntilThatIsDismissed)
{
    addClient(store, "Birch");
    store.start(store.data()->clients.front().id, std::nullopt, "", world.now());
    EXPECT_EQ("", bridge.clockJump());
    world.scheduler.advance(15);
    world.clockAhead = 2 * 3600 + 13 * 60;
    store.checkpoint(world.now());
    EXPECT_EQ("The clock jumped ahead by 2 hours, 13 minutes. Your session was paused at 20:40.",
        bridge.clockJump());
    bridge.dismissClockJump();
    EXPECT_EQ("", bridge.clockJump());
}

TEST_F(WorkspaceBridgeTest, OpensAndClosesTheFormOfTheState)
{
    commander.newClient();
    EXPECT_EQ("client-new", bridge.editorID());
    bridge.closeEditor();
    EXPECT_EQ("", bridge.editorID());
}

TEST_F(WorkspaceBridgeTest, OffersAProjectOnceAClientHasProjects)
{
    EXPECT_FALSE(bridge.canAddProject());
    addClient(store, "Birch");
    EXPECT_TRUE(bridge.canAddProject());
}

} // namespace
} // namespace Kestry
