#include "SessionBridge.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "ApplicationWorld.h"
#include "ZoneCalendar.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;

class SessionBridgeTest : public ::testing::Test {
protected:
    void startFor(const std::string& client, Projects projects = Projects::enabled)
    {
        state.sessionClientID.assign(addClient(store, client, projects));
        bridge.start();
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), ApplicationWorld::inMemory()};
    AppState state{world.defaults};
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar{
        KestryCore::ZoneCalendar("UTC", "en_US")};
    Commander commander{store, state, [this] { return world.now(); }, [] {}};
    SessionBridge bridge{commander, store, state, [this] { return world.now(); }, world.scheduler,
        {calendar, KestryCore::MoneyText("en_US")}};
};

TEST_F(SessionBridgeTest, WithoutClientsThereIsNothingToStart)
{
    EXPECT_FALSE(bridge.hasClients());
    EXPECT_FALSE(bridge.hasSession());
    EXPECT_EQ(bridge.targetClient(), "Choose client");
    EXPECT_EQ(bridge.elapsed(), "00:00:00");
}

TEST_F(SessionBridgeTest, AskingForAClientOpensTheFormOfANewOne)
{
    bridge.askForClient();
    EXPECT_EQ(*state.editor, Editor{Editor::ClientForm{}});
}

TEST_F(SessionBridgeTest, TheNextSessionIsNamedByClientProjectAndRate)
{
    const Uuid site = addProject(store, addClient(store, "Aster"), "Site");
    EXPECT_EQ(bridge.targetClient(), "Aster");
    EXPECT_EQ(bridge.targetDetail(), "Unassigned · Rate not set");
    state.selectedProject.assign(site);
    EXPECT_EQ(bridge.targetDetail(), "Site · $100/hr");
    EXPECT_TRUE(bridge.targetLabel().startsWith("Session project and hourly rate: Aster"));
}

TEST_F(SessionBridgeTest, TheNextSessionOfAClientWithoutProjectsIsNamedByClientAndRate)
{
    addClient(store, "Aster", Projects::disabled);
    EXPECT_EQ(bridge.targetClient(), "Aster");
    EXPECT_EQ(bridge.targetDetail(), "$0/hr");
}

TEST_F(SessionBridgeTest, ASessionRunsPausesResumesAndStops)
{
    startFor("Aster");
    EXPECT_TRUE(bridge.isRunning());
    world.scheduler.advance(60);
    bridge.pauseOrResume();
    EXPECT_TRUE(bridge.hasSession());
    EXPECT_FALSE(bridge.isRunning());
    world.scheduler.advance(60);
    bridge.pauseOrResume();
    EXPECT_TRUE(bridge.isRunning());
    world.scheduler.advance(60);
    bridge.stop();
    EXPECT_FALSE(bridge.hasSession());
    EXPECT_EQ(store.data()->entries.front().duration(), 120);
}

TEST_F(SessionBridgeTest, ElapsedFollowsTheClockOnceASecond)
{
    startFor("Aster");
    const QSignalSpy changes(&bridge, &SessionBridge::elapsedChanged);
    world.scheduler.advance(3.5);
    EXPECT_EQ(changes.count(), 3);
    EXPECT_EQ(bridge.elapsed(), "00:00:03");
    EXPECT_EQ(bridge.spokenElapsed(), "3 seconds");
}

TEST_F(SessionBridgeTest, NothingTicksUnlessASessionRuns)
{
    EXPECT_TRUE(world.scheduler.isIdle());
    startFor("Aster");
    EXPECT_FALSE(world.scheduler.isIdle());
    bridge.pauseOrResume();
    EXPECT_TRUE(world.scheduler.isIdle());
    bridge.stop();
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(SessionBridgeTest, ASessionIsCalledByItsTitleElseItsProjectElseSession)
{
    EXPECT_EQ(bridge.label(), "Session");
    startFor("Aster");
    EXPECT_EQ(bridge.label(), "Unassigned");
    bridge.rename(bridge.sessionID(), "  Drawing ");
    EXPECT_EQ(bridge.label(), "Drawing");
    EXPECT_EQ(bridge.title(), "Drawing");
}

TEST_F(SessionBridgeTest, AnUntitledSessionOfAClientWithoutProjectsIsCalledSession)
{
    startFor("Aster", Projects::disabled);
    EXPECT_EQ(bridge.label(), "Session");
}

TEST_F(SessionBridgeTest, AProjectOfAClientThatGoesWithoutProjectsNowIsNotShown)
{
    startFor("Aster");
    const KestryCore::Client client = store.data()->clients.front();
    store.updateClient(
        client.id, {.name = client.name, .colorHex = client.colorHex, .projectsEnabled = false});
    EXPECT_EQ(bridge.label(), "Session");
    EXPECT_EQ(bridge.projectName(), "");
}

TEST_F(SessionBridgeTest, TheHiddenProjectOfAClientIsNotShown)
{
    startFor("Aster", Projects::disabled);
    EXPECT_EQ(bridge.projectName(), "");
    bridge.stop();
    startFor("Birch");
    EXPECT_EQ(bridge.projectName(), "Unassigned");
}

TEST_F(SessionBridgeTest, ARefusalThatTheStoreKeepsQuietAboutStillShows)
{
    bridge.pauseOrResume();
    EXPECT_EQ(bridge.message(), "No session to resume.");
}

TEST_F(SessionBridgeTest, TheHeightFollowsSessionAndMessage)
{
    EXPECT_EQ(bridge.panelHeight(), 48);
    startFor("Aster");
    EXPECT_EQ(bridge.panelHeight(), 74);
    store.reportFailure("The disk is full.");
    EXPECT_EQ(bridge.panelHeight(), 92);
}

TEST_F(SessionBridgeTest, AChangeFromElsewhereIsToldOnTheNextTurn)
{
    const Uuid aster = addClient(store, "Aster");
    const QSignalSpy changes(&bridge, &SessionBridge::changed);
    store.start(aster, std::nullopt, "Drawing", world.now());
    EXPECT_EQ(changes.count(), 0);
    world.scheduler.turn();
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(bridge.title(), "Drawing");
}

TEST_F(SessionBridgeTest, AnEditOfASessionThatHasEndedIsRefusedInWords)
{
    startFor("Aster");
    const QString ended = bridge.sessionID();
    bridge.stop();
    bridge.start();
    bridge.rename(ended, "Drawing");
    EXPECT_EQ(bridge.title(), "");
    EXPECT_NE(bridge.message(), "");
}

TEST_F(SessionBridgeTest, APausedSessionDoesNotTick)
{
    startFor("Aster");
    world.scheduler.advance(5);
    bridge.pauseOrResume();
    const QSignalSpy changes(&bridge, &SessionBridge::elapsedChanged);
    world.scheduler.advance(60);
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(bridge.elapsed(), "00:00:05");
}

TEST_F(SessionBridgeTest, AHundredHoursHaveThreeDigits)
{
    startFor("Aster");
    world.scheduler.advance(100 * 3600.0 + 59);
    EXPECT_EQ(bridge.elapsed(), "100:00:59");
}

TEST_F(SessionBridgeTest, TheSessionsWorthAndTheMonthsFollowTheClock)
{
    const Uuid client = addClient(store, "Aster");
    state.selectedProject.assign(addProject(store, client, "Site"));
    bridge.start();
    EXPECT_EQ(bridge.sessionValue(), "$0.00");
    world.scheduler.advance(3600);
    EXPECT_EQ(bridge.sessionValue(), "$100.00");
    EXPECT_EQ(bridge.monthValue(), "$100.00");
    EXPECT_TRUE(bridge.monthExplanation().startsWith("Billable earnings across all clients"));
}

TEST_F(SessionBridgeTest, TheMonthIsToldOnlyWhenItsWordsChange)
{
    const Uuid client = addClient(store, "Aster");
    state.selectedProject.assign(addProject(store, client, "Site"));
    bridge.start();
    const QSignalSpy changes(&bridge, &SessionBridge::monthChanged);
    world.scheduler.advance(3); // more than two cents each
    EXPECT_EQ(changes.count(), 3);
    bridge.pauseOrResume();
    bridge.rename(bridge.sessionID(), "Drawing");
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(SessionBridgeTest, TheMarkTurnsWithTheSession)
{
    startFor("Aster");
    world.scheduler.advance(2);
    EXPECT_DOUBLE_EQ(bridge.activityAngle(), 90.0);
    bridge.pauseOrResume();
    world.scheduler.advance(2);
    EXPECT_DOUBLE_EQ(bridge.activityAngle(), 90.0);
}

TEST_F(SessionBridgeTest, SuggestionsAreEarlierTitlesTheLatestFirst)
{
    startFor("Aster");
    for (const char* title : {"Design review", "Logo", "Design exploration", "Drawing"}) {
        bridge.rename(bridge.sessionID(), title);
        world.scheduler.advance(60);
        bridge.stop();
        bridge.start();
    }
    EXPECT_EQ(bridge.titleSuggestions("des"), (QStringList{"Design exploration", "Design review"}));
    EXPECT_EQ(bridge.titleSuggestions("  "), QStringList());
}

TEST_F(SessionBridgeTest, AJumpOfTheClockIsToldInThePanel)
{
    startFor("Aster");
    world.scheduler.advance(10);
    world.clockAhead = 3600;
    EXPECT_EQ(bridge.elapsed(), "00:00:10");
    const double height = bridge.panelHeight();
    bridge.pauseOrResume();
    EXPECT_TRUE(bridge.message().startsWith("The clock jumped ahead by 1 hour. Your session was "));
    EXPECT_GT(bridge.panelHeight(), height);
    EXPECT_EQ(bridge.elapsed(), "00:00:10");
    EXPECT_FALSE(bridge.isRunning());
}

TEST_F(SessionBridgeTest, AnotherTimeZoneCountsAnotherMonth)
{
    const Uuid client = addClient(store, "Aster", Projects::disabled);
    const KestryCore::Date month = calendar->month(world.now())->start;
    store.updateClient(client, {.name = "Aster", .rateCents = 10000, .colorHex = "A2A5AA"});
    store.addEntry({client, std::nullopt, "", month, 3600});
    state.sessionClientID.assign(client);
    bridge.start();
    EXPECT_EQ(bridge.monthValue(), "$100.00");
    calendar.assign(KestryCore::ZoneCalendar("America/Mexico_City", "en_US"));
    world.scheduler.advance(0.5);
    EXPECT_EQ(bridge.monthValue(), "$0.00");
}

} // namespace
} // namespace Kestry
