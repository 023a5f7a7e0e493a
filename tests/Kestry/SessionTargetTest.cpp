#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "SessionTarget.h"

namespace Kestry {
namespace {

using KestryCore::Uuid;
using ::testing::ElementsAre;

class SessionTargetTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string clientName() const
    {
        const auto client = clientForNewSession(store, state);
        return client ? client->name : "(none)";
    }
    [[nodiscard]] std::string projectName() const
    {
        const auto project = projectForNewSession(store, state, clientForNewSession(store, state));
        return project ? project->name : "(none)";
    }
    [[nodiscard]] SessionTarget target() const { return sessionTarget(store, state, words); }
    [[nodiscard]] Menu menu() { return targetMenu(store, state, words); }

    /// The entries in words, the chosen ones with an asterisk.
    [[nodiscard]] std::vector<std::string> entries()
    {
        std::vector<std::string> texts;
        for (const MenuEntry& entry : menu()) {
            const bool isLine = entry.kind == MenuEntry::Kind::separator;
            texts.push_back(
                isLine ? "-" : entry.text + (entry.isChosen.value_or(false) ? "*" : ""));
        }
        return texts;
    }
    void choose(const std::string& text)
    {
        const Menu entries = menu();
        const auto found = std::ranges::find(entries, text, &MenuEntry::text);
        ASSERT_NE(entries.end(), found) << text;
        found->action();
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    KestryCore::MoneyText words{"en_US"};
};

TEST_F(SessionTargetTest, WithoutClientsThereIsNoneForANewSession)
{
    EXPECT_EQ(clientName(), "(none)");
    EXPECT_EQ(projectName(), "(none)");
}

TEST_F(SessionTargetTest, TheFirstClientIsTakenWhenNoneIsWanted)
{
    addClient(store, "Aster");
    addClient(store, "Birch");
    EXPECT_EQ(clientName(), "Aster");
}

TEST_F(SessionTargetTest, ThePickedClientComesBeforeTheSelectedOneAndThatBeforeTheProjects)
{
    addClient(store, "Aster");
    const Uuid birch = addClient(store, "Birch");
    const Uuid cedar = addClient(store, "Cedar");
    const Uuid dogwood = addClient(store, "Dogwood");
    state.selectedProject.assign(addProject(store, birch, "Site"));
    EXPECT_EQ(clientName(), "Birch");
    state.selectedClient.assign(cedar);
    EXPECT_EQ(clientName(), "Cedar");
    state.sessionClientID.assign(dogwood);
    EXPECT_EQ(clientName(), "Dogwood");
}

TEST_F(SessionTargetTest, AWantedClientThatIsGoneGivesTheFirst)
{
    addClient(store, "Aster");
    state.selectedClient.assign(addClient(store, "Birch"));
    state.sessionClientID.assign(Uuid::random());
    EXPECT_EQ(clientName(), "Aster");
}

TEST_F(SessionTargetTest, AClientWithoutProjectsHasNoneForANewSession)
{
    const Uuid aster = addClient(store, "Aster", Projects::disabled);
    store.start(aster, std::nullopt, "", world.now());
    state.selectedProject.assign(store.data()->active->projectID);
    EXPECT_EQ(projectName(), "(none)");
}

TEST_F(SessionTargetTest, TheSelectedProjectIsTakenWhenItIsTheClients)
{
    const Uuid aster = addClient(store, "Aster");
    addProject(store, aster, "Unassigned");
    state.selectedProject.assign(addProject(store, aster, "Site"));
    EXPECT_EQ(projectName(), "Site");
}

TEST_F(SessionTargetTest, AProjectOfAnotherClientGivesTheUnassignedOne)
{
    const Uuid aster = addClient(store, "Aster");
    addProject(store, aster, "unassigned");
    state.sessionClientID.assign(aster);
    state.selectedProject.assign(addProject(store, addClient(store, "Birch"), "Site"));
    EXPECT_EQ(projectName(), "unassigned");
}

TEST_F(SessionTargetTest, AsksForAClientWhenThereIsNone)
{
    EXPECT_EQ((SessionTarget{"Choose client", "", "", "Session client and project: Choose client"}),
        target());
    EXPECT_THAT(entries(), ElementsAre("Add client…", "Add project…"));
    EXPECT_FALSE(menu().back().isEnabled);
}

TEST_F(SessionTargetTest, AClientIsOfferedWithItsColour)
{
    store.addClient(
        KestryCore::NewClient{.name = "Alder", .colorHex = "F0BB85", .projectsEnabled = false});
    EXPECT_EQ("F0BB85", menu().front().colorHex);
    EXPECT_EQ("", menu().back().colorHex);
}

TEST_F(SessionTargetTest, NamesAClientWithoutProjectsAndItsRate)
{
    KestryCore::NewClient client{.name = "Alder", .rateCents = 15000, .projectsEnabled = false};
    store.addClient(client);

    EXPECT_EQ(
        (SessionTarget{"Alder", "", "$150/hr", "Session client and project: Alder · $150/hr"}),
        target());
    EXPECT_THAT(entries(), ElementsAre("Alder*", "-", "Add client…", "Add project…"));
    EXPECT_FALSE(menu().back().isEnabled);
}

TEST_F(SessionTargetTest, NamesTheProjectAndItsRate)
{
    const auto birch = addClient(store, "Birch");
    const auto project = addProject(store, birch, "Website");
    state.selectedProject.assign(project);

    EXPECT_EQ((SessionTarget{"Birch", "Website", "$100/hr",
                  "Session project and hourly rate: Birch · Website · $100/hr"}),
        target());
}

TEST_F(SessionTargetTest, CallsTheLackOfAProjectUnassignedWithoutARate)
{
    addClient(store, "Birch");

    EXPECT_EQ("Unassigned", target().project);
    EXPECT_EQ("Rate not set", target().rate);
    EXPECT_THAT(entries(),
        ElementsAre(
            "Birch*", "-", "Unassigned · Rate not set*", "-", "Add client…", "Add project…"));
}

TEST_F(SessionTargetTest, ChoosesClientAndProject)
{
    addClient(store, "Alder", Projects::disabled);
    const auto birch = addClient(store, "Birch");
    const auto project = addProject(store, birch, "Website");

    choose("Birch");
    EXPECT_EQ(birch, *state.sessionClientID);
    choose("Website · $100/hr");
    EXPECT_EQ(project, *state.selectedProject);
    EXPECT_THAT(entries(),
        ElementsAre("Alder", "Birch*", "-", "Unassigned · Rate not set", "Website · $100/hr*", "-",
            "Add client…", "Add project…"));
    choose("Unassigned · Rate not set");
    EXPECT_FALSE(*state.selectedProject);
}

TEST_F(SessionTargetTest, AProjectIsAddedToAnotherClientWhereTheChosenOneHasNone)
{
    state.sessionClientID.assign(addClient(store, "Alder", Projects::disabled));
    EXPECT_FALSE(menu().back().isEnabled);
    EXPECT_FALSE(menu().back().action);

    addClient(store, "Birch");
    const auto cedar = addClient(store, "Cedar");
    EXPECT_TRUE(menu().back().isEnabled);
    state.selectedClient.assign(cedar);
    choose("Add project…");
    EXPECT_EQ("project-" + cedar.text(), (*state.editor)->id());
}

TEST_F(SessionTargetTest, AProjectIsAddedToTheChosenClientBeforeTheSelectedOne)
{
    state.selectedClient.assign(addClient(store, "Birch"));
    const auto cedar = addClient(store, "Cedar");
    state.sessionClientID.assign(cedar);
    choose("Add project…");
    EXPECT_EQ("project-" + cedar.text(), (*state.editor)->id());
}

TEST_F(SessionTargetTest, OpensTheFormsThatAddEither)
{
    int dashboards = 0;
    state.installOpenDashboard([&] { ++dashboards; });
    const auto birch = addClient(store, "Birch");

    choose("Add client…");
    EXPECT_EQ("client-new", (*state.editor)->id());
    choose("Add project…");
    EXPECT_EQ("project-" + birch.text(), (*state.editor)->id());
    EXPECT_EQ(2, dashboards);
}

} // namespace
} // namespace Kestry
