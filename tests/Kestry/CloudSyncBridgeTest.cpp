#include "CloudSyncBridge.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <memory>

#include "ApplicationWorld.h"
#include "CloudFixture.h"
#include "FakeSecrets.h"

namespace Kestry {
namespace {

using namespace KestryCore;

class CloudSyncBridgeTest : public CloudFixture {
protected:
    /// The bridge over the fixture's store and controller.
    CloudSyncBridge& bridge()
    {
        if (!bridge_) {
            bridge_ = std::make_unique<CloudSyncBridge>(
                CloudSyncBridge::World{store(), *controller, cloudAccount, calendar});
        }
        return *bridge_;
    }
    /// Another ledger, or another build, from here on.
    void controlAnew(const LedgerData& ledger)
    {
        bridge_.reset();
        control(ledger);
    }
    static LedgerData with(const SyncedSession& session)
    {
        LedgerData ledger = connected(sampleLedger());
        LedgerSyncState state = *ledger.replication;
        state.remoteSessions[recordID(SyncRecordKind::session, session.active->id)] = session;
        ledger.replication = state;
        return ledger;
    }
    static SyncedSession elsewhere(ActiveSession session)
    {
        SyncedSession synced = Sample::synced(session);
        synced.ownerDeviceID = "device-b";
        synced.ownerName = "Studio";
        return synced;
    }
    LedgerData withConflict(const SyncRecord& local, const SyncRecord& remoteVersion)
    {
        LedgerData ledger = connected(sampleLedger());
        LedgerSyncState state = *ledger.replication;
        state.outbox[local.recordID] = local;
        state.conflicts.append({local.recordID, local, remoteVersion});
        ledger.replication = state;
        return ledger;
    }
    [[nodiscard]] QVariantMap conflict() { return bridge().conflicts().value(0).toMap(); }

    void signIn(const std::string& address, const std::string& user)
    {
        cloudAccount.signIn({address, user, "x"}, [](const auto&) {});
        for (int turn = 0; turn < 5; ++turn) {
            scheduler.turn();
            answerAll();
        }
    }

    Observable<ZoneCalendar> calendar{ZoneCalendar("UTC", "en_US")};
    MapDefaults defaults;
    FakeSecrets secrets;
    CloudAccount cloudAccount{{defaults, secrets, scheduler,
        [this](const CloudCredentials& credentials, StoreUse /*use*/) {
            return cloud.open(credentials.address);
        }}};

private:
    std::unique_ptr<CloudSyncBridge> bridge_;
};

TEST_F(CloudSyncBridgeTest, ALedgerThatWasNeverConnectedIsOffAndHasNoDetails)
{
    controlAnew(sampleLedger());
    EXPECT_FALSE(bridge().isOn());
    EXPECT_EQ(bridge().status(), "iCloud sync is off");
    EXPECT_FALSE(bridge().hasDetails());
    EXPECT_TRUE(bridge().sessions().isEmpty());
    EXPECT_TRUE(bridge().conflicts().isEmpty());
    EXPECT_TRUE(bridge().canSwitch());
}

TEST_F(CloudSyncBridgeTest, TheSwitchRestsWhileRecordsAreExchanged)
{
    QSignalSpy changes(&bridge(), &CloudSyncBridge::changed);
    sync();
    EXPECT_TRUE(bridge().isSyncing());
    EXPECT_FALSE(bridge().canSwitch());
    EXPECT_GT(changes.count(), 0);
    bridge().toggle();
    EXPECT_TRUE(bridge().isOn());
    answerAll();
    EXPECT_FALSE(bridge().isSyncing());
    EXPECT_TRUE(bridge().canSwitch());
}

TEST_F(CloudSyncBridgeTest, ADemoCannotBeSwitchedOn)
{
    controller.reset();
    options.demoLedger = sampleLedger();
    open();
    control();
    EXPECT_FALSE(bridge().canSwitch());
    bridge().toggle();
    EXPECT_FALSE(bridge().isOn());
}

TEST_F(CloudSyncBridgeTest, ABuildWithoutAStoreSaysSoAndCanOnlyBeSwitchedOff)
{
    configuration.isConfigured = false;
    controlAnew(connected(sampleLedger()));
    EXPECT_EQ(bridge().status(), "Unavailable in this build");
    EXPECT_TRUE(bridge().note().startsWith("This build needs iCloud signing"));
    EXPECT_TRUE(bridge().canSwitch());
    bridge().toggle();
    EXPECT_FALSE(bridge().isOn());
    EXPECT_FALSE(bridge().canSwitch());
}

TEST_F(CloudSyncBridgeTest, TheSwitchTurnsReplicationOffAndOn)
{
    bridge().toggle();
    EXPECT_FALSE(bridge().isOn());
    EXPECT_FALSE(store().data()->replication->enabled);
    bridge().toggle();
    scheduler.turn();
    answerAll();
    EXPECT_TRUE(bridge().isOn());
}

TEST_F(CloudSyncBridgeTest, TheStatusEndsWithTheTimeOfTheLastExchange)
{
    syncWhole();
    const QString time =
        QString::fromStdString(DateTimeText(ZoneCalendar("UTC", "en_US")).timeOfDay(now));
    EXPECT_EQ(bridge().status(), QString::fromStdString(status()) + " · Last synced " + time);
}

TEST_F(CloudSyncBridgeTest, AFailureIsToldInFullAndAfterTheStatus)
{
    cloud.failures.emplace("status", CloudError("The cloud is closed on Sundays."));
    bridge().syncNow();
    scheduler.turn();
    answerAll();
    EXPECT_EQ(bridge().failure(), "The cloud is closed on Sundays.");
    EXPECT_EQ(bridge().status(), "Sync needs attention");
}

TEST_F(CloudSyncBridgeTest, ASessionWithoutATitleIsNamedAfterItsDevice)
{
    ActiveSession session = *pausedLedger().active;
    session.title = "";
    controlAnew(with(elsewhere(session)));
    const QVariantMap row = bridge().sessions().value(0).toMap();
    EXPECT_EQ(row["title"], "Session on Studio");
    EXPECT_EQ(row["detail"], "Studio · Paused · 0h 30m");
}

TEST_F(CloudSyncBridgeTest, ARunningSessionElsewhereStandsStill)
{
    controlAnew(with(elsewhere(*runningLedger().active)));
    now = now + 1'000'000.0;
    const QVariantMap row = bridge().sessions().value(0).toMap();
    EXPECT_EQ(row["title"], "Writing");
    EXPECT_EQ(row["detail"], "Studio · Running when last synced · 0h 30m");
}

TEST_F(CloudSyncBridgeTest, ADeletionStandsOverTheOtherVersion)
{
    controlAnew(
        withConflict(Sample::deletion(clientKey(acme)), remote(renamedAcme("Acme & Sons"))));
    const QString summary = conflict()["summary"].toString();
    EXPECT_TRUE(summary.startsWith("On this Mac: Deleted\niCloud: Acme & Sons · "))
        << summary.toStdString();
}

TEST_F(CloudSyncBridgeTest, AConflictIsComparedFieldByField)
{
    controlAnew(
        withConflict(Sample::record(renamedAcme("Acme Ltd")), remote(renamedAcme("Acme & Sons"))));
    const QVariantMap name = conflict()["fields"].toList().value(0).toMap();
    EXPECT_EQ(name["name"], "Name");
    EXPECT_EQ(name["local"], "Acme Ltd");
    EXPECT_EQ(name["remote"], "Acme & Sons");
    EXPECT_TRUE(name["differs"].toBool());
}

TEST_F(CloudSyncBridgeTest, TheUsersDecisionEndsTheConflict)
{
    controlAnew(
        withConflict(Sample::record(renamedAcme("Acme Ltd")), remote(renamedAcme("Acme & Sons"))));
    QSignalSpy changes(&bridge(), &CloudSyncBridge::conflictsChanged);
    bridge().useCloud(conflict()["id"].toString());
    EXPECT_TRUE(bridge().conflicts().isEmpty());
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(state().outbox.find(clientKey(acme)), state().outbox.end());
}

TEST_F(CloudSyncBridgeTest, AVersionThatIsKeptGoesOutAgain)
{
    controlAnew(
        withConflict(Sample::record(renamedAcme("Acme Ltd")), remote(renamedAcme("Acme & Sons"))));
    const std::string before = state().outbox.find(clientKey(acme))->second.revision;
    bridge().keepLocal(conflict()["id"].toString());
    EXPECT_TRUE(bridge().conflicts().isEmpty());
    EXPECT_NE(state().outbox.find(clientKey(acme))->second.revision, before);
}

TEST_F(CloudSyncBridgeTest, ADecisionThatCannotBeSavedLeavesTheConflict)
{
    controlAnew(
        withConflict(Sample::record(renamedAcme("Acme Ltd")), remote(renamedAcme("Acme & Sons"))));
    files.failCallsFrom(1, EIO);
    bridge().keepLocal(conflict()["id"].toString());
    EXPECT_EQ(bridge().conflicts().size(), 1);
    EXPECT_TRUE(store().errorMessage()->has_value());
}

TEST_F(CloudSyncBridgeTest, AnUnrelatedChangeLeavesTheListsAlone)
{
    controlAnew(
        withConflict(Sample::record(renamedAcme("Acme Ltd")), remote(renamedAcme("Acme & Sons"))));
    QSignalSpy changes(&bridge(), &CloudSyncBridge::conflictsChanged);
    store().addClient({"Birch", 100, "112233", true, std::nullopt, true});
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(CloudSyncBridgeTest, TextsFollowTheZone)
{
    syncWhole();
    const QString before = bridge().status();
    calendar.assign(ZoneCalendar("Asia/Kathmandu", "en_US"));
    EXPECT_NE(bridge().status(), before);
}

TEST_F(CloudSyncBridgeTest, TellsWhoIsSignedInWhere)
{
    EXPECT_EQ(bridge().account(), "Not signed in");
    EXPECT_FALSE(bridge().isSignedIn());
    signIn("https://example.org/hours", "mia");
    EXPECT_EQ(bridge().account(), "mia · https://example.org/hours");
    signIn("sqlite:/shared/store", "");
    EXPECT_EQ(bridge().account(), "sqlite:/shared/store");
}

TEST_F(CloudSyncBridgeTest, SaysThatTheDesktopKeepsNoPassword)
{
    secrets.keeps = false;
    signIn("https://example.org/hours", "mia");
    EXPECT_TRUE(bridge().account().endsWith("This desktop keeps no passwords. Sign in again after "
                                            "the next start."));
}

TEST_F(CloudSyncBridgeTest, SaysThatTheDesktopDidNotForgetThePassword)
{
    signIn("https://example.org/hours", "mia");
    secrets.isLocked = true;
    bridge().signOut();
    scheduler.turn();
    EXPECT_EQ(bridge().account(),
        "Not signed in\nThe desktop did not forget the password. Remove \"org.kestry.Kestry\" in "
        "its password manager.");
}

TEST_F(CloudSyncBridgeTest, SigningOutTurnsItOffAndLeavesTheLedgerAsItIs)
{
    signIn("https://example.org/hours", "mia");
    const std::string device = state().deviceID;
    bridge().signOut();
    EXPECT_FALSE(bridge().isOn());
    EXPECT_FALSE(bridge().isSignedIn());
    EXPECT_EQ(state().deviceID, device);
}

TEST_F(CloudSyncBridgeTest, AStoreThatWentBackInTimeIsOfferedTheRecordsAgain)
{
    syncWhole();
    EXPECT_FALSE(bridge().offersUpload());
    cloud.changes.emplace_back(
        CloudError("The store was restored.", CloudErrorCode::storeReplaced));
    bridge().syncNow();
    scheduler.turn();
    answerAll();
    EXPECT_TRUE(bridge().offersUpload());
    bridge().uploadAgain();
    scheduler.turn();
    answerAll();
    EXPECT_FALSE(bridge().offersUpload());
    EXPECT_FALSE(cloud.deliveries.empty());
}

} // namespace
} // namespace Kestry
