#include <gtest/gtest.h>

#include "ApplicationWorld.h"
#include "EditorForm.h"

namespace Kestry {
namespace {

class EditorFormTest : public ::testing::Test {
protected:
    void openClientForm() { state.editor.assign(Editor{Editor::ClientForm{}}); }
    void openProjectForm(const KestryCore::Uuid& client)
    {
        state.editor.assign(Editor{Editor::ProjectForm{.projectID = {}, .clientID = client}});
    }
    void openSessionForm()
    {
        state.editor.assign(Editor{Editor::ActiveForm{store.data()->active->id}});
    }

    ApplicationWorld world;
    KestryCore::TimeStore store{world.storePlatform(), world.onDisk()};
    AppState state{world.defaults};
    EditorForm form{store, state};
};

TEST_F(EditorFormTest, ANewClientIsAddedAndItsPageOpened)
{
    openClientForm();
    EXPECT_EQ("New client", form.title());
    form.setProperty("name", "Birch");
    form.save();

    const auto& client = store.data()->clients.front();
    EXPECT_EQ("Birch", client.name);
    EXPECT_TRUE(client.projectsEnabled);
    EXPECT_FALSE(client.rateIsKnown);
    EXPECT_EQ(client.id, *state.selectedClient);
    EXPECT_EQ(client.id, *state.sessionClientID);
    EXPECT_EQ(Destination::client, *state.destination);
    EXPECT_FALSE(*state.editor);
}

TEST_F(EditorFormTest, AClientWithoutProjectsHasARateOfItsOwn)
{
    openClientForm();
    form.setProperty("name", "Birch");
    form.setProperty("projectsEnabled", false);
    form.setProperty("rate", "95.50");
    form.save();

    EXPECT_EQ(9550, store.data()->clients.front().hourlyRateCents);
    EXPECT_TRUE(store.data()->clients.front().rateIsKnown);
}

TEST_F(EditorFormTest, ARefusalStaysInTheFormAndNothingIsChanged)
{
    openClientForm();
    form.setProperty("name", "  ");
    form.save();

    EXPECT_EQ("Enter a name.", form.error());
    EXPECT_TRUE(store.data()->clients.empty());
    EXPECT_TRUE(state.editor->has_value());
    EXPECT_FALSE(store.errorMessage()->has_value());
}

TEST_F(EditorFormTest, ARateThatCannotBeReadIsRefused)
{
    openClientForm();
    form.setProperty("name", "Birch");
    form.setProperty("projectsEnabled", false);
    form.setProperty("rate", "much");
    form.save();

    EXPECT_EQ(
        "Enter a USD hourly rate from 0 to 1,000,000 with up to two decimal places.", form.error());
    EXPECT_TRUE(store.data()->clients.empty());
}

TEST_F(EditorFormTest, ANewProjectIsTheOneForTheNextSession)
{
    const auto birch = addClient(store, "Birch");
    openProjectForm(birch);
    EXPECT_EQ("Birch", form.clientName());
    form.setProperty("name", "Website");
    form.save();

    EXPECT_EQ("Website", store.project(**state.selectedProject)->name);
    EXPECT_FALSE(store.project(**state.selectedProject)->rateIsKnown);
    EXPECT_EQ(birch, *state.sessionClientID);
}

TEST_F(EditorFormTest, AProjectNeedsAClientThatUsesProjects)
{
    openProjectForm(addClient(store, "Alder", Projects::disabled));
    form.setProperty("name", "Website");
    form.save();

    EXPECT_EQ("Enable projects in the client editor first.", form.error());
}

TEST_F(EditorFormTest, TheSessionInProgressTakesAnotherTitleAndProject)
{
    const auto birch = addClient(store, "Birch");
    const auto website = addProject(store, birch, "Website");
    store.start(birch, std::nullopt, "Call", world.now());
    openSessionForm();
    EXPECT_EQ("Call", form.property("name").toString());

    form.setProperty("name", "Layout");
    form.chooseProject(QString::fromStdString(website.text()));
    form.save();

    EXPECT_EQ("Layout", store.data()->active->title);
    EXPECT_EQ(website, store.data()->active->projectID);
}

TEST_F(EditorFormTest, ANewFormStartsWithFreshDrafts)
{
    openClientForm();
    form.setProperty("name", "Birch");
    form.close();
    openClientForm();

    EXPECT_EQ("", form.property("name").toString());
    EXPECT_EQ("", form.error());
}

TEST_F(EditorFormTest, DraftsStayWhileTheLedgerChanges)
{
    openClientForm();
    form.setProperty("name", "Birch");

    addClient(store, "Cedar");

    EXPECT_EQ("Birch", form.property("name").toString());
}

} // namespace
} // namespace Kestry
