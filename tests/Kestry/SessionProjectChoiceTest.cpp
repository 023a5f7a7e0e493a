#include "SessionProjectChoice.h"

#include "EditorFixture.h"

namespace Kestry {
namespace {

class SessionProjectChoiceTest : public EditorFixture {
protected:
    bool attempt(const std::function<void()>& step)
    {
        try {
            step();
            return true;
        } catch (const KestryCore::LedgerError& failure) {
            error = failure.what();
            return false;
        }
    }

    KestryCore::Uuid birch = addClient(store, "Birch");
    KestryCore::Uuid alder = addClient(store, "Alder", Projects::disabled);
    KestryCore::Uuid website = addProject(store, birch, "Website");
    std::string error;
    SessionProjectChoice choice{surroundings, [this](const auto& step) { return attempt(step); }};
};

TEST_F(SessionProjectChoiceTest, AClientIsChosenFromAll)
{
    EXPECT_EQ("Choose a client", choice.clientName());
    EXPECT_EQ((std::vector<std::string>{"Birch", "Alder"}), texts(choice.clientMenu()));
    choose(choice.clientMenu(), "Birch");
    EXPECT_EQ("Birch", choice.clientName());
    EXPECT_EQ(birch, choice.clientID());
    EXPECT_TRUE(choice.isEdited());
}

TEST_F(SessionProjectChoiceTest, AProjectIsChosenFromThoseOfTheClientWithTheirRates)
{
    addProject(store, addClient(store, "Cedar"), "Other");
    store.addProject(birch, {"Shop", 0, false});
    choice.loadClient(birch);
    EXPECT_EQ("Choose a project", choice.projectName());
    EXPECT_EQ(
        (std::vector<std::string>{"Website · $100/hr", "Shop · Rate not set", "", "New project"}),
        texts(choice.projectMenu()));
    choose(choice.projectMenu(), "Website · $100/hr");
    EXPECT_EQ("Website · $100/hr", choice.projectName());
    EXPECT_EQ(website, choice.target());
}

TEST_F(SessionProjectChoiceTest, AClientWithoutProjectsHasNoneToChoose)
{
    choice.loadClient(alder);
    EXPECT_FALSE(choice.usesProjects());
    EXPECT_EQ("Client-level session", choice.projectName());
    EXPECT_TRUE(choice.projectMenu().empty());
    EXPECT_EQ(std::nullopt, choice.target());
}

TEST_F(SessionProjectChoiceTest, ASessionWithoutAClientIsUnassigned)
{
    choice.loadProject(KestryCore::Uuid::random());
    EXPECT_EQ("Unassigned · Rate not set", choice.projectName());
    EXPECT_EQ(std::nullopt, choice.target());
}

TEST_F(SessionProjectChoiceTest, AProjectIsNeededWhereTheClientHasProjects)
{
    choice.loadClient(birch);
    EXPECT_FALSE(attempt([this] { static_cast<void>(choice.target()); }));
    EXPECT_EQ("Choose a project for this session.", error);
}

TEST_F(SessionProjectChoiceTest, TheProjectThatASessionHasIsNoMove)
{
    choice.loadProject(website);
    EXPECT_EQ(std::nullopt, choice.target());
    EXPECT_FALSE(choice.isEdited());
}

TEST_F(SessionProjectChoiceTest, AnotherClientNeedsAnotherProjectAndTheWayBackKeepsTheOld)
{
    const auto cedar = addClient(store, "Cedar");
    choice.loadProject(website);
    choose(choice.clientMenu(), "Cedar");
    EXPECT_EQ(cedar, choice.clientID());
    EXPECT_EQ("Choose a project", choice.projectName());
    choose(choice.clientMenu(), "Birch");
    EXPECT_FALSE(choice.isEdited());
}

TEST_F(SessionProjectChoiceTest, ANewProjectIsAddedAtOnceAndChosen)
{
    choice.loadClient(birch);
    choose(choice.projectMenu(), "New project");
    EXPECT_TRUE(choice.isCreating());
    choice.setProperty("newProjectName", "Shop");
    choice.setProperty("newProjectRate", "80");
    choice.createProject();

    EXPECT_FALSE(choice.isCreating());
    EXPECT_EQ("Shop · $80/hr", choice.projectName());
    EXPECT_EQ("Shop", store.project(*choice.target())->name);
}

TEST_F(SessionProjectChoiceTest, ANewProjectThatIsRefusedLeavesItsFieldsOpen)
{
    choice.loadProject(website);
    choose(choice.projectMenu(), "New project");
    choice.setProperty("newProjectName", "Shop");
    choice.setProperty("newProjectRate", "much");
    EXPECT_EQ("US dollars, as in 150 or 150.50", choice.newProjectRateHint());
    choice.createProject();

    EXPECT_EQ("Enter a USD hourly rate from 0 to 1,000,000 with up to two decimal places.", error);
    EXPECT_TRUE(choice.isCreating());
    EXPECT_EQ("Shop", draft(choice, "newProjectName"));
    EXPECT_EQ(1U, store.data()->projects.size());
}

TEST_F(SessionProjectChoiceTest, NoProjectIsMadeWhileItsFieldsAreHidden)
{
    choice.loadClient(birch);
    choice.createProject();
    EXPECT_EQ("", error);
    EXPECT_EQ(1U, store.data()->projects.size());
}

TEST_F(SessionProjectChoiceTest, CancellingANewProjectKeepsTheOneBefore)
{
    choice.loadProject(website);
    choose(choice.projectMenu(), "New project");
    choice.setProperty("newProjectName", "Shop");
    choice.cancelNewProject();

    EXPECT_FALSE(choice.isCreating());
    EXPECT_EQ("Website · $100/hr", choice.projectName());
    choose(choice.projectMenu(), "New project");
    EXPECT_EQ("", draft(choice, "newProjectName"));
}

TEST_F(SessionProjectChoiceTest, TheMenusOpenBelowTheirFields)
{
    QQuickItem field;
    choice.loadClient(birch);
    choice.openClients(&field);
    EXPECT_EQ("Birch", opened.front().text);
    choice.openProjects(&field);
    EXPECT_EQ("Website · $100/hr", opened.front().text);
    choice.openProjects(nullptr);
}

TEST_F(SessionProjectChoiceTest, AClientWithoutProjectsIsRefusedForASavedSessionInTheStoresWords)
{
    const auto id = addEntry(website, 600);
    KestryCore::EntryChange change;
    change.start = entry(id).startedAt();
    change.duration = 600;
    change.projectID = store.addProject(alder, {"Hidden", 0, false});
    EXPECT_FALSE(attempt([&] { store.updateEntry(id, change); }));
    const std::string storesWords = error;

    choice.loadProject(website);
    choose(choice.clientMenu(), "Alder");
    EXPECT_FALSE(attempt([&] { static_cast<void>(choice.target()); }));
    EXPECT_EQ(storesWords, error);
    choose(choice.clientMenu(), "Birch");
    EXPECT_EQ(std::nullopt, choice.target());
}

TEST_F(SessionProjectChoiceTest, ASessionStaysWhereItsOwnClientHasNoProjectsAnyMore)
{
    KestryCore::ClientChange change;
    change.name = "Birch";
    change.colorHex = "A2A5AA";
    change.projectsEnabled = false;
    choice.loadProject(website);
    store.updateClient(birch, change);
    EXPECT_EQ(std::nullopt, choice.target());
}

TEST_F(SessionProjectChoiceTest, ANewProjectThatHasANameIsCreatedOrCancelledBeforeSaving)
{
    int wanted = 0;
    QObject::connect(&choice, &SessionProjectChoice::newProjectWanted, &choice, [&] { ++wanted; });
    choice.loadProject(website);
    choose(choice.projectMenu(), "New project");
    choice.setProperty("newProjectName", "  ");
    EXPECT_EQ(std::nullopt, choice.target());
    choice.setProperty("newProjectName", "Shop");
    EXPECT_FALSE(attempt([&] { static_cast<void>(choice.target()); }));
    EXPECT_EQ("Create the project or cancel it first.", error);
    EXPECT_EQ(1, wanted);
    choice.cancelNewProject();
    EXPECT_EQ(std::nullopt, choice.target());
}

} // namespace
} // namespace Kestry
