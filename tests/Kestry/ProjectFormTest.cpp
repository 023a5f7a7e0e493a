#include "ProjectForm.h"

#include "EditorFixture.h"

namespace Kestry {
namespace {

class ProjectFormTest : public EditorFixture {
protected:
    static Editor::ProjectForm newProject(const KestryCore::Uuid& client)
    {
        return {.projectID = {}, .clientID = client};
    }
    static Editor::ProjectForm existing(const KestryCore::Uuid& project)
    {
        return {.projectID = project, .clientID = {}};
    }
};

TEST_F(ProjectFormTest, ANewProjectIsTheOneForTheNextSession)
{
    const auto birch = addClient(store, "Birch");
    ProjectForm form{surroundings, newProject(birch)};
    EXPECT_EQ("Make space for good work.", form.title());
    EXPECT_EQ("New sessions use this rate. Leave it blank if unknown.", form.line());
    EXPECT_EQ("Birch", form.clientName());
    form.setProperty("name", "Website");
    form.save();

    EXPECT_EQ("Website", store.project(**state.selectedProject)->name);
    EXPECT_FALSE(store.project(**state.selectedProject)->rateIsKnown);
    EXPECT_EQ(birch, *state.sessionClientID);
}

TEST_F(ProjectFormTest, AnExistingProjectIsShownAndChanged)
{
    const auto website = addProject(store, addClient(store, "Birch"), "Website");
    ProjectForm form{surroundings, existing(website)};
    EXPECT_EQ("The project details.", form.title());
    EXPECT_EQ("Birch", form.clientName());
    EXPECT_EQ("Website", draft(form, "name"));
    EXPECT_EQ("100.00", draft(form, "rate"));
    form.setProperty("name", "Shop");
    form.setProperty("rate", "120.5");
    form.save();

    EXPECT_EQ("Shop", store.project(website)->name);
    EXPECT_EQ(12050, store.project(website)->hourlyRateCents);
    EXPECT_FALSE(*state.selectedProject);
}

TEST_F(ProjectFormTest, ABlankRateMakesItUnknown)
{
    const auto website = addProject(store, addClient(store, "Birch"), "Website");
    ProjectForm form{surroundings, existing(website)};
    form.setProperty("rate", " ");
    form.save();
    EXPECT_FALSE(store.project(website)->rateIsKnown);
    EXPECT_EQ("", draft(ProjectForm{surroundings, existing(website)}, "rate"));
}

TEST_F(ProjectFormTest, WhatWasNotEditedStaysAsItWasChangedElsewhere)
{
    const auto website = addProject(store, addClient(store, "Birch"), "Website");
    ProjectForm rate{surroundings, existing(website)};
    store.updateProject(website, {"Elsewhere", 5000, true});
    rate.setProperty("rate", "70");
    rate.save();
    EXPECT_EQ("Elsewhere", store.project(website)->name);
    EXPECT_EQ(7000, store.project(website)->hourlyRateCents);

    ProjectForm name{surroundings, existing(website)};
    store.updateProject(website, {"Elsewhere", 0, false});
    name.setProperty("name", "Here");
    name.save();
    EXPECT_EQ("Here", store.project(website)->name);
    EXPECT_FALSE(store.project(website)->rateIsKnown);
}

TEST_F(ProjectFormTest, WhatWasEditedCountsWhateverWasChangedElsewhere)
{
    const auto website = addProject(store, addClient(store, "Birch"), "Website");
    ProjectForm form{surroundings, existing(website)};
    store.updateProject(website, {"Elsewhere", 5000, true});
    form.setProperty("name", "Here");
    form.setProperty("rate", "");
    form.save();
    EXPECT_EQ("Here", store.project(website)->name);
    EXPECT_FALSE(store.project(website)->rateIsKnown);
}

TEST_F(ProjectFormTest, AProjectThatIsGoneLeavesTheDraftsAndRefusesSaving)
{
    const auto birch = addClient(store, "Birch");
    ProjectForm form{surroundings, {.projectID = KestryCore::Uuid::random(), .clientID = birch}};
    form.setProperty("name", "Website");
    form.save();
    EXPECT_EQ("Project not found.", form.error());
    EXPECT_EQ("Website", draft(form, "name"));
}

TEST_F(ProjectFormTest, AProjectNeedsAClientThatUsesProjects)
{
    ProjectForm form{surroundings, newProject(addClient(store, "Alder", Projects::disabled))};
    form.setProperty("name", "Website");
    form.save();

    EXPECT_EQ("Enable projects in the client editor first.", form.error());
    EXPECT_TRUE(store.data()->projects.empty());
}

TEST_F(ProjectFormTest, ARateIsHintedAtWhileTypingAndRefusedOnSaving)
{
    ProjectForm form{surroundings, newProject(addClient(store, "Birch"))};
    form.setProperty("name", "Website");
    EXPECT_EQ("", form.rateHint());
    form.setProperty("rate", "1,000");
    EXPECT_EQ("US dollars, as in 150 or 150.50", form.rateHint());
    EXPECT_EQ("", form.error());
    form.save();
    EXPECT_EQ(
        "Enter a USD hourly rate from 0 to 1,000,000 with up to two decimal places.", form.error());
    EXPECT_TRUE(store.data()->projects.empty());
}

} // namespace
} // namespace Kestry
