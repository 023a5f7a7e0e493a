#include "ClientDashboardBridge.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "SessionListFixture.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;

class ClientDashboardBridgeTest : public SessionListFixture {
protected:
    /// Opens the page of a client.
    void open(const Uuid& client)
    {
        state.selectedClient.assign(client);
        page.open();
    }
    /// A client without projects, at 150 dollars an hour.
    Uuid addPlainClient(const std::string& name)
    {
        KestryCore::NewClient client;
        client.name = name;
        client.rateCents = 15000;
        client.colorHex = "A2A5AA";
        client.projectsEnabled = false;
        return store.addClient(client);
    }
    [[nodiscard]] static QString idText(const Uuid& id)
    {
        return QString::fromStdString(id.text());
    }
    /// How often the figures were told to have changed.
    [[nodiscard]] qsizetype figuresTold() const
    {
        return earnings.size() + hours.size() + monthHours.size() + average.size();
    }

    void forgetTold()
    {
        for (QSignalSpy* told : {&earnings, &hours, &monthHours, &average}) {
            told->clear();
        }
    }

    KestryCore::VirtualScheduler midnights; // not one of the page's own timers
    Today today{midnights, [this] { return world.now(); }, calendar};
    ClientDashboardBridge page{worldOfList(), today};
    QSignalSpy earnings{&page, &ClientDashboardBridge::earningsChanged};
    QSignalSpy hours{&page, &ClientDashboardBridge::hoursChanged};
    QSignalSpy monthHours{&page, &ClientDashboardBridge::monthHoursChanged};
    QSignalSpy average{&page, &ClientDashboardBridge::averageChanged};
};

TEST_F(ClientDashboardBridgeTest, ANewClientHasNoTrackedTimeYetAndZeros)
{
    open(aster);
    EXPECT_EQ(page.earnings().value, "$0.00");
    EXPECT_EQ(page.hours().value, "0h 0m");
    EXPECT_EQ(page.monthHours().value, "0h 0m");
    EXPECT_EQ(page.average().line, "No tracked time yet");
    EXPECT_EQ(page.unpriced(), "");
}

TEST_F(ClientDashboardBridgeTest, AClientWithOnlyUnpricedTimeHasNoRateInItsFirstCard)
{
    const Uuid poster = store.addProject(aster, {"Poster", 0, false});
    saveOn(poster, "Sketch", world.now() + -7200.0, world.now() + -3600.0);
    open(aster);
    EXPECT_EQ(page.earnings().value, "Rate not set");
    EXPECT_EQ(page.unpriced(), "1h 0m of billable time has no rate and is excluded from earnings.");
}

TEST_F(ClientDashboardBridgeTest, AProjectWithoutSavedSessionsSaysSo)
{
    open(aster);
    ASSERT_EQ(page.projects()->rowCount(), 1);
    const QModelIndex row = page.projects()->index(0);
    EXPECT_EQ(page.projects()->data(row, ProjectsModel::CountRole).toString(), "0 saved sessions");
    save("Design");
    EXPECT_EQ(page.projects()->data(row, ProjectsModel::CountRole).toString(), "1 saved sessions");
}

TEST_F(ClientDashboardBridgeTest, ThePartOfTheCurrentMonthCountsAsOneMonth)
{
    save("Design");
    open(aster);
    EXPECT_EQ(page.average().line, "Across 1 calendar month");
}

TEST_F(ClientDashboardBridgeTest, TheAverageFallsWhenAMonthWithoutTimePasses)
{
    saveAt("Design", inMonth(9, 1, 9), inMonth(9, 1, 15));
    open(aster);
    EXPECT_EQ(page.average().value, "6h 0m");
    world.scheduler.advance(31 * 86400.0);
    today.look();
    EXPECT_EQ(page.average().value, "3h 0m");
    EXPECT_EQ(page.average().line, "Across 2 calendar months");
    EXPECT_EQ(page.monthHours().value, "0h 0m");
    EXPECT_EQ(page.monthHours().line, "October 2025");
}

TEST_F(ClientDashboardBridgeTest, ARunningSessionRaisesTheFiguresEachSecond)
{
    open(aster);
    start("Design");
    earnings.clear();
    world.scheduler.advance(3);
    EXPECT_EQ(earnings.size(), 3);
    EXPECT_EQ(page.earnings().value, "$0.08");
    world.scheduler.advance(3597);
    EXPECT_EQ(page.earnings().value, "$100.00");
    EXPECT_EQ(page.hours().value, "1h 0m");
}

TEST_F(ClientDashboardBridgeTest, ASessionOfAnotherClientRaisesNothingAndWakesNothing)
{
    const Uuid birch = addPlainClient("Birch");
    open(birch);
    start("Design");
    forgetTold();
    EXPECT_TRUE(world.scheduler.isIdle());
    world.scheduler.advance(3600);
    EXPECT_EQ(figuresTold(), 0);
    EXPECT_EQ(page.hours().value, "0h 0m");
}

TEST_F(ClientDashboardBridgeTest, NothingWakesWhileNothingRunsOrTheSessionIsPaused)
{
    open(aster);
    EXPECT_TRUE(world.scheduler.isIdle());
    start("Design");
    EXPECT_FALSE(world.scheduler.isIdle());
    store.pause(world.now());
    world.scheduler.turn();
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(ClientDashboardBridgeTest, OnlyWhatHasChangedIsTold)
{
    open(aster);
    start("Design");
    world.scheduler.advance(1);
    forgetTold();
    QSignalSpy names(&page, &ClientDashboardBridge::nameChanged);
    QSignalSpy rows(page.projects(), &QAbstractItemModel::dataChanged);
    world.scheduler.advance(58);
    store.checkpoint(world.now());
    world.scheduler.turn();
    EXPECT_EQ(earnings.size(), figuresTold());
    world.scheduler.advance(1);
    EXPECT_EQ(hours.size(), 1);
    EXPECT_EQ(names.size() + rows.size(), 0);
}

TEST_F(ClientDashboardBridgeTest, AClientThatIsGoneLeavesNothing)
{
    open(aster);
    start("Design");
    state.selectedClient.assign(Uuid::random());
    EXPECT_EQ(page.clientID(), "");
    EXPECT_EQ(page.name(), "");
    EXPECT_EQ(page.subtitle(), "");
    EXPECT_EQ(page.earnings().value, "");
    EXPECT_EQ(page.projects()->rowCount(), 0);
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(ClientDashboardBridgeTest, AClientThatIsDeletedOnAnotherDeviceLeavesNothing)
{
    const Uuid birch = addPlainClient("Birch");
    store.beginSync("account", "Desk", KestryCore::CloudSyncEnvironment::development);
    for (const KestryCore::SyncRecord& record : store.pendingSyncRecords()) {
        store.acknowledgeDelivery(record, "");
    }
    open(birch);
    store.applyRemoteSync(
        {{"Client:" + birch.text(), Uuid::random().text(), "laptop", {}, true}}, {}, "cursor");
    world.scheduler.turn();
    EXPECT_EQ(store.data()->clients.find(birch), nullptr);
    EXPECT_EQ(page.clientID(), "");
    EXPECT_EQ(page.name(), "");
}

TEST_F(ClientDashboardBridgeTest, APageThatIsNotOpenShowsAndDoesNothing)
{
    state.selectedClient.assign(aster);
    start("Design");
    EXPECT_EQ(page.name(), "");
    EXPECT_TRUE(world.scheduler.isIdle());
    page.open();
    EXPECT_EQ(page.name(), "Aster Studio");
    page.close();
    EXPECT_TRUE(world.scheduler.isIdle());
    EXPECT_EQ(page.projects()->rowCount(), 0);
}

TEST_F(ClientDashboardBridgeTest, TheSubtitleCountsProjectsWithoutTheHiddenOne)
{
    open(aster);
    EXPECT_EQ(page.subtitle(), "1 projects · Rates set per project");
    addProject(store, aster, "Poster");
    world.scheduler.turn();
    EXPECT_EQ(page.subtitle(), "2 projects · Rates set per project");
}

TEST_F(ClientDashboardBridgeTest, TheSubtitleOfAClientWithoutProjectsIsItsRate)
{
    const Uuid birch = addPlainClient("Birch");
    open(birch);
    EXPECT_EQ(page.subtitle(), "$150.00 / hour");
    EXPECT_FALSE(page.hasProjects());
    KestryCore::ClientChange change;
    change.name = "Birch";
    change.colorHex = "A2A5AA";
    change.rateIsKnown = false;
    store.updateClient(birch, change);
    world.scheduler.turn();
    EXPECT_EQ(page.subtitle(), "Hourly rate not set");
}

TEST_F(ClientDashboardBridgeTest, AClientWithProjectsButNoneYetIsToldToAddOne)
{
    open(aster);
    EXPECT_EQ(page.noProjects(), "");
    open(addClient(store, "Birch"));
    EXPECT_EQ(page.noProjects(), "Add your first project to start tracking time for Birch.");
    EXPECT_EQ(page.subtitle(), "0 projects · Rates set per project");
}

TEST_F(ClientDashboardBridgeTest, TheSessionsOfAClientWithoutProjectsAreItsOwn)
{
    const Uuid birch = addPlainClient("Birch");
    save("Design");
    const Uuid cedar = addPlainClient("Cedar");
    for (const Uuid& client : {birch, cedar}) {
        KestryCore::NewEntry entry;
        entry.clientID = client;
        entry.title = client == birch ? "Bark" : "Cone";
        entry.start = world.now() + -7200.0;
        entry.duration = 3600.0;
        store.addEntry(entry);
    }
    open(birch);
    page.sessions()->open();
    EXPECT_EQ(labels(*page.sessions()->list()), QStringList{"Bark"});
    state.selectedClient.assign(cedar);
    EXPECT_EQ(labels(*page.sessions()->list()), QStringList{"Cone"});
}

TEST_F(ClientDashboardBridgeTest, AStartIsOnTheProject)
{
    open(aster);
    page.start(idText(website));
    ASSERT_TRUE(store.data()->active);
    EXPECT_EQ(store.data()->active->projectID, website);
    EXPECT_EQ(*state.sessionClientID, aster);
}

TEST_F(ClientDashboardBridgeTest, AStartIsRefusedInWordsWhileASessionRuns)
{
    open(aster);
    start("Design");
    const auto before = store.data()->active;
    page.start(idText(website));
    EXPECT_EQ(*store.errorMessage(), "Stop the current session first.");
    EXPECT_EQ(store.data()->active, before);
}

TEST_F(ClientDashboardBridgeTest, AStartOnAProjectThatIsGoneIsRefusedInWords)
{
    open(aster);
    page.start(idText(Uuid::random()));
    EXPECT_EQ(*store.errorMessage(), "Project no longer exists.");
    page.start("nothing");
    EXPECT_FALSE(store.data()->active);
}

TEST_F(ClientDashboardBridgeTest, FormsAreOfTheClientAndItsProjects)
{
    open(aster);
    page.editClient();
    EXPECT_EQ(*state.editor, Editor{Editor::ClientForm{aster}});
    page.addProject();
    EXPECT_EQ(*state.editor, (Editor{Editor::ProjectForm{.projectID = {}, .clientID = aster}}));
    page.editProject(idText(website));
    EXPECT_EQ((*state.editor)->id(), "project-" + website.text());
    state.editor.assign(std::nullopt);
    page.editProject(idText(Uuid::random()));
    EXPECT_EQ(*state.editor, std::nullopt);
}

TEST_F(ClientDashboardBridgeTest, AllSessionsAreThoseOfTheClientInEveryMonth)
{
    state.sessionsMonth.assign(world.now());
    open(aster);
    page.viewAll();
    EXPECT_EQ(*state.destination, Destination::sessions);
    EXPECT_EQ(*state.selectedClient, aster);
    EXPECT_EQ(*state.sessionsMonth, std::nullopt);
}

TEST_F(ClientDashboardBridgeTest, ARenamedClientIsToldOnce)
{
    open(aster);
    QSignalSpy names(&page, &ClientDashboardBridge::nameChanged);
    KestryCore::ClientChange change;
    change.name = "Aster & Co";
    change.colorHex = "A2A5AA";
    store.updateClient(aster, change);
    world.scheduler.turn();
    EXPECT_EQ(page.name(), "Aster & Co");
    EXPECT_EQ(names.size(), 1);
}

TEST_F(ClientDashboardBridgeTest, AChangedZoneMovesHoursBetweenMonths)
{
    const KestryCore::Date monthEnd = calendar->month(world.now())->end;
    world.scheduler.advance(monthEnd - world.now() + 7200.0);
    saveAt("Late", monthEnd + -3600.0, monthEnd);
    open(aster);
    EXPECT_EQ(page.monthHours().value, "0h 0m");
    calendar.assign(KestryCore::ZoneCalendar("Asia/Tokyo", "en_US"));
    EXPECT_EQ(page.monthHours().value, "1h 0m");
}

} // namespace
} // namespace Kestry
