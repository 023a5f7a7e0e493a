#include "SidebarSession.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "ApplicationWorld.h"
#include "SyncState.h"

namespace Kestry {
namespace {

using KestryCore::ActiveSession;
using KestryCore::LedgerData;
using KestryCore::SyncedSession;
using KestryCore::Uuid;

constexpr const char* thisDevice = "this device";

KestryCore::Client clientNamed(const std::string& name, const Uuid& id)
{
    KestryCore::Client client;
    client.id = id;
    client.name = name;
    client.colorHex = "A2A5AA";
    return client;
}

KestryCore::Project projectNamed(const std::string& name, const Uuid& id, const Uuid& clientID)
{
    KestryCore::Project project;
    project.id = id;
    project.clientID = clientID;
    project.name = name;
    return project;
}

/// The box over a ledger.
struct Box {
    explicit Box(LedgerData ledger)
        : store(world.storePlatform(), optionsFor(std::move(ledger))) { }
    /// Over one on the disk.
    Box() : store(world.storePlatform(), world.onDisk()) { }
    [[nodiscard]] static KestryCore::StoreOptions optionsFor(LedgerData ledger)
    {
        KestryCore::StoreOptions options;
        options.demoLedger = std::move(ledger);
        return options;
    }

    ApplicationWorld world;
    KestryCore::TimeStore store;
    AppState state{world.defaults};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar{
        KestryCore::ZoneCalendar("UTC", "en_US")};
    Commander commander{store, state, [this] { return world.now(); }, [] {}};
    SessionBridge session{commander, store, state, [this] { return world.now(); }, world.scheduler,
        {calendar, KestryCore::MoneyText("en_US")}};
    SidebarSession box{
        session, store, state, [this] { return world.now(); }, KestryCore::MoneyText("en_US")};
};

class SidebarSessionTest : public ::testing::Test, protected Box {
protected:
    SidebarSessionTest() : Box(LedgerData{}) { }

    void startOn(const std::string& client)
    {
        state.sessionClientID.assign(addClient(store, client));
        session.start();
    }
    void changeClient(const std::function<void(KestryCore::ClientChange&)>& change)
    {
        const auto& client = store.data()->clients.front();
        KestryCore::ClientChange values{.name = client.name,
            .colorHex = client.colorHex,
            .projectsEnabled = client.projectsEnabled};
        change(values);
        store.updateClient(client.id, values);
        world.scheduler.turn();
    }
};

TEST_F(SidebarSessionTest, TheHeadingTellsWhetherASessionIsInProgress)
{
    EXPECT_EQ("New session", box.heading());
    startOn("Aster");
    EXPECT_EQ("Current session", box.heading());
    session.pauseOrResume();
    EXPECT_EQ("Current session", box.heading());
    session.stop();
    EXPECT_EQ("New session", box.heading());
}

TEST_F(SidebarSessionTest, ASessionStartedElsewhereInTheProgramShowsAtOnce)
{
    addClient(store, "Aster");
    const QSignalSpy changes(&box, &SidebarSession::changed);
    commander.startSession();
    world.scheduler.turn();
    EXPECT_LE(1, changes.count());
    EXPECT_EQ("Current session", box.heading());
}

TEST_F(SidebarSessionTest, TheTargetIsToldInPieces)
{
    EXPECT_EQ("Choose client", box.targetClient());
    EXPECT_EQ("", box.targetRate());
    const Uuid aster = addClient(store, "Aster");
    world.scheduler.turn();
    EXPECT_EQ("Unassigned", box.targetProject());
    EXPECT_EQ("Rate not set", box.targetRate());
    state.selectedProject.assign(addProject(store, aster, "Site"));
    world.scheduler.turn();
    EXPECT_EQ("Site", box.targetProject());
    EXPECT_EQ("$100/hr", box.targetRate());
    EXPECT_EQ("Site · $100/hr", box.targetDetail());
    EXPECT_EQ("Session project and hourly rate: Aster · Site · $100/hr", box.targetLabel());
}

TEST_F(SidebarSessionTest, TheLineNamesClientAndProjectOfTheSession)
{
    EXPECT_EQ("", box.line());
    startOn("Aster");
    EXPECT_EQ("Aster · Unassigned", box.line());
    changeClient([](auto& values) { values.projectsEnabled = false; });
    EXPECT_EQ("Aster", box.line());
}

TEST_F(SidebarSessionTest, TheValueIsWhatTheSessionHasEarned)
{
    EXPECT_EQ("", box.value());
    const Uuid aster = addClient(store, "Aster");
    state.selectedProject.assign(addProject(store, aster, "Site"));
    session.start();
    world.scheduler.advance(1800);
    EXPECT_EQ("$50.00 earned", box.value());
}

TEST_F(SidebarSessionTest, ASessionWithoutARateSaysSo)
{
    startOn("Aster");
    EXPECT_EQ("Hourly rate not set", box.value());
}

TEST_F(SidebarSessionTest, ANonbillableSessionSaysSo)
{
    LedgerData ledger = *store.data();
    const Uuid client = Uuid::random(), project = Uuid::random();
    ledger.clients.append(clientNamed("Aster", client));
    ledger.projects.append(projectNamed("Site", project, client));
    ActiveSession active;
    active.id = Uuid::random();
    active.projectID = project;
    active.checkpointAt = world.now();
    active.isBillable = false;
    active.rateIsKnown = false;
    ledger.active = active;
    Box shown(ledger);
    EXPECT_EQ("Nonbillable session", shown.box.value());
}

TEST_F(SidebarSessionTest, TheValueTicksWithTheSession)
{
    startOn("Aster");
    const QSignalSpy ticks(&box, &SidebarSession::ticked);
    world.scheduler.advance(3.5);
    EXPECT_EQ(3, ticks.count());
}

TEST_F(SidebarSessionTest, TheLineLeadsToTheFormOfTheSession)
{
    box.edit();
    EXPECT_FALSE(*state.editor);
    startOn("Aster");
    box.edit();
    EXPECT_EQ(Editor{Editor::ActiveForm{store.data()->active->id}}, *state.editor);
}

// The title.

TEST_F(SidebarSessionTest, TheTypedTitleIsThatOfTheNextSession)
{
    addClient(store, "Aster");
    box.beginTitle();
    box.typeTitle("Drawing");
    EXPECT_EQ("Drawing", *state.sessionTitle);
    EXPECT_EQ("Drawing", box.titleText());
    box.submitTitle();
    ASSERT_TRUE(store.data()->active);
    EXPECT_EQ("Drawing", store.data()->active->title);
    EXPECT_EQ("", *state.sessionTitle);
    EXPECT_EQ("Drawing", box.titleText());
}

TEST_F(SidebarSessionTest, ATitleTypedElsewhereShowsHere)
{
    const QSignalSpy changes(&box, &SidebarSession::titleChanged);
    state.sessionTitle.assign("Layout");
    EXPECT_EQ(1, changes.count());
    EXPECT_EQ("Layout", box.titleText());
}

TEST_F(SidebarSessionTest, ReturnRenamesTheSession)
{
    startOn("Aster");
    box.beginTitle();
    box.typeTitle("Drawing");
    EXPECT_EQ("Drawing", box.titleText());
    EXPECT_EQ("", store.data()->active->title);
    box.submitTitle();
    EXPECT_EQ("Drawing", store.data()->active->title);
}

TEST_F(SidebarSessionTest, LeavingTheFieldKeepsWhatWasTyped)
{
    startOn("Aster");
    box.beginTitle();
    box.typeTitle("Drawing");
    box.endTitle();
    EXPECT_EQ("Drawing", store.data()->active->title);
}

TEST_F(SidebarSessionTest, EscapeLeavesTheTitleAsItWas)
{
    startOn("Aster");
    box.beginTitle();
    box.typeTitle("Drawing");
    box.cancelTitle();
    box.endTitle();
    EXPECT_EQ("", store.data()->active->title);
    EXPECT_EQ("", box.titleText());
}

TEST_F(SidebarSessionTest, AnEditEndsWithItsSession)
{
    startOn("Aster");
    box.beginTitle();
    box.typeTitle("Drawing");
    store.stop(world.now()); // by another program
    session.start();
    box.endTitle();
    EXPECT_EQ("", store.data()->active->title);
    EXPECT_EQ("", store.data()->entries.front().title);
}

TEST_F(SidebarSessionTest, TypingGoesOnAfterReturnAndAfterEscape)
{
    startOn("Aster");
    box.beginTitle();
    box.typeTitle("Draw");
    box.submitTitle();
    box.typeTitle("Drawing");
    box.submitTitle();
    EXPECT_EQ("Drawing", store.data()->active->title);
    box.typeTitle("Drawing x");
    box.cancelTitle();
    box.typeTitle("Drawings");
    box.endTitle();
    EXPECT_EQ("Drawings", store.data()->active->title);
}

TEST_F(SidebarSessionTest, AFieldThatWasOnlyVisitedKeepsATitleFromElsewhere)
{
    startOn("Aster");
    box.beginTitle();
    store.renameActiveSession(store.data()->active->id, "From elsewhere");
    world.scheduler.turn();
    EXPECT_EQ("From elsewhere", box.titleText());
    box.endTitle();
    EXPECT_EQ("From elsewhere", store.data()->active->title);
}

TEST_F(SidebarSessionTest, StoppingFromAnywhereKeepsTheTitleThatIsTyped)
{
    startOn("Aster");
    box.beginTitle();
    box.typeTitle("Drawing");
    commander.stopSession();
    ASSERT_FALSE(store.data()->active);
    EXPECT_EQ("Drawing", store.data()->entries.front().title);
}

TEST_F(SidebarSessionTest, APauseFromAnywhereWritesTheTitleThatIsTyped)
{
    startOn("Aster");
    box.beginTitle();
    box.typeTitle("Drawing");
    commander.toggleSession();
    EXPECT_TRUE(store.data()->active->isPaused());
    EXPECT_EQ("Drawing", store.data()->active->title);
}

TEST_F(SidebarSessionTest, WithoutAnEditWhatTheFieldShowsChangesNothing)
{
    startOn("Aster");
    box.typeTitle("Drawing");
    EXPECT_EQ("", *state.sessionTitle);
    EXPECT_EQ("", store.data()->active->title);
}

/// A title is typed, and nothing can be saved any more.
class RefusedTitleTest : public ::testing::Test, protected Box {
protected:
    RefusedTitleTest()
    {
        state.sessionClientID.assign(addClient(store, "Aster"));
        session.start();
        box.beginTitle();
        box.typeTitle("Drawing");
        world.damageLedger();
    }
};

TEST_F(RefusedTitleTest, StaysInTheFieldWithTheRefusalInWords)
{
    box.submitTitle();
    EXPECT_TRUE(store.errorMessage()->has_value());
    EXPECT_EQ("", store.data()->active->title);
    EXPECT_EQ("Drawing", box.titleText());
    box.endTitle();
    EXPECT_EQ("Drawing", box.titleText());
}

TEST_F(RefusedTitleTest, IsDroppedByEscape)
{
    box.submitTitle();
    box.cancelTitle();
    EXPECT_EQ("", box.titleText());
}

TEST_F(RefusedTitleTest, LeavesTheSessionThatWasToBeStoppedOrPaused)
{
    commander.stopSession();
    EXPECT_TRUE(store.data()->active);
    EXPECT_EQ("Drawing", box.titleText());
    commander.toggleSession();
    EXPECT_FALSE(store.data()->active->isPaused());
    EXPECT_EQ("Drawing", box.titleText());
}

// The session of another device.

class RemoteSessionTest : public ::testing::Test {
protected:
    /// A session that has lasted an hour and a half when its device last told.
    [[nodiscard]] static SyncedSession remote(const std::string& device, bool isPaused = false)
    {
        ActiveSession active;
        active.id = Uuid::random();
        active.projectID = project;
        active.hourlyRateCents = 10000;
        active.checkpointAt = ApplicationWorld::morning;
        const KestryCore::Date begin = ApplicationWorld::morning + -5400.0;
        if (isPaused) {
            active.spans = {{begin, ApplicationWorld::morning}};
        } else {
            active.runningSince = begin;
        }
        return {.ownerDeviceID = device, .ownerName = device, .active = active, .entry = {}};
    }
    [[nodiscard]] static LedgerData knowing(const std::vector<SyncedSession>& sessions)
    {
        LedgerData ledger;
        ledger.clients.append(clientNamed("Aster", client));
        ledger.projects.append(projectNamed("Site", project, client));
        KestryCore::LedgerSyncState sync;
        sync.deviceID = thisDevice;
        sync.deviceName = "Desk";
        sync.accountID = "account";
        for (const SyncedSession& session : sessions) {
            sync.remoteSessions["Session:" + session.active->id.text()] = session;
        }
        ledger.replication = sync;
        return ledger;
    }

    inline static const Uuid client = Uuid::random();
    inline static const Uuid project = Uuid::random();
};

TEST_F(RemoteSessionTest, WithoutSyncNothingIsKnownElsewhere)
{
    const Box shown(LedgerData{});
    EXPECT_EQ("", shown.box.remoteTitle());
    EXPECT_EQ("", shown.box.remoteState());
}

TEST_F(RemoteSessionTest, ARunningSessionIsToldWithItsTimeAtTheLastSync)
{
    Box shown(knowing({remote("Laptop")}));
    EXPECT_EQ("Session on Laptop", shown.box.remoteTitle());
    EXPECT_EQ("Running when last synced · 1h 30m", shown.box.remoteState());
    shown.world.scheduler.advance(600);
    EXPECT_EQ("Running when last synced · 1h 30m", shown.box.remoteState());
}

TEST_F(RemoteSessionTest, APausedSessionIsToldAsPaused)
{
    const Box shown(knowing({remote("Laptop", true)}));
    EXPECT_EQ("Session on Laptop", shown.box.remoteTitle());
    EXPECT_EQ("Paused", shown.box.remoteState());
}

TEST_F(RemoteSessionTest, TheOneThatRunsIsToldBeforeThoseThatArePaused)
{
    const Box shown(knowing({remote("A", true), remote("B"), remote("C", true)}));
    EXPECT_EQ("Session on B", shown.box.remoteTitle());
}

TEST_F(RemoteSessionTest, OneOfThisDeviceIsOfNoOther)
{
    const Box shown(knowing({remote(thisDevice)}));
    EXPECT_EQ("", shown.box.remoteTitle());
}

TEST_F(RemoteSessionTest, ASessionInProgressHereComesFirst)
{
    Box shown(knowing({remote("Laptop")}));
    shown.session.start();
    EXPECT_EQ("", shown.box.remoteTitle());
    shown.session.stop();
    EXPECT_EQ("Session on Laptop", shown.box.remoteTitle());
}

} // namespace
} // namespace Kestry
