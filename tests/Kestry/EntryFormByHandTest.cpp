#include "EntryForm.h"

#include "EntryFormFixture.h"

namespace Kestry {
namespace {

/// Time that is added by hand.
class EntryFormByHandTest : public EntryFormFixture { };

TEST_F(EntryFormByHandTest, TimeAddedByHandIsTheHourThatHasPassedUntilItIsChanged)
{
    state.destination.assign(Destination::client);
    state.selectedClient.assign(birch);
    EntryForm form(surroundings, Editor::EntryForm{});
    EXPECT_EQ("Every hour counts.", form.title());
    EXPECT_EQ("Add time you’ve already worked.", form.line());
    EXPECT_EQ("Birch", form.choice()->clientName());
    EXPECT_EQ("", form.savedRate());
    EXPECT_FALSE(form.canDelete());
    EXPECT_FALSE(form.isEdited());
    form.setProperty("name", "Workshop");
    choose(form.choice()->projectMenu(), "Website · $100/hr");
    form.save();

    EXPECT_EQ("", form.error());
    EXPECT_EQ("Workshop", onlyEntry().title);
    EXPECT_EQ(3600.0, onlyEntry().duration());
    EXPECT_LE(onlyEntry().endedAt(), world.now());
    EXPECT_EQ(website, onlyEntry().projectID);
    EXPECT_TRUE(onlyEntry().isBillable);
}

TEST_F(EntryFormByHandTest, TimeAddedByHandIsForTheClientOfThePage)
{
    state.selectedClient.assign(birch);
    for (const Destination page : {Destination::client, Destination::sessions}) {
        state.destination.assign(page);
        EXPECT_EQ("Birch", EntryForm(surroundings, Editor::EntryForm{}).choice()->clientName());
    }
    for (const Destination page : {Destination::overview, Destination::settings}) {
        state.destination.assign(page);
        EXPECT_EQ(
            "Choose a client", EntryForm(surroundings, Editor::EntryForm{}).choice()->clientName());
    }
}

TEST_F(EntryFormByHandTest, AClientOfThePageThatIsGoneHasToBeChosenAnew)
{
    state.destination.assign(Destination::client);
    state.selectedClient.assign(KestryCore::Uuid::random());
    EntryForm form(surroundings, Editor::EntryForm{});
    form.save();
    EXPECT_EQ("Choose a client for this session.", form.error());
}

TEST_F(EntryFormByHandTest, TimeAddedByHandNeedsAClientAndItsProject)
{
    EntryForm form(surroundings, Editor::EntryForm{});
    form.save();
    EXPECT_EQ("Choose a client for this session.", form.error());
    choose(form.choice()->clientMenu(), "Birch");
    form.save();
    EXPECT_EQ("Choose a project for this session.", form.error());
    EXPECT_TRUE(store.data()->entries.empty());
}

TEST_F(EntryFormByHandTest, NonbillableTimeByHandIsAddedInOneSave)
{
    addClient(store, "Alder", Projects::disabled);
    EntryForm form(surroundings, Editor::EntryForm{});
    choose(form.choice()->clientMenu(), "Alder");
    form.setProperty("isBillable", false);
    int saves = 0;
    const auto counting = store.data().observe([&](const auto&) { ++saves; });
    form.save();
    EXPECT_EQ("", form.error());
    EXPECT_FALSE(onlyEntry().isBillable);
    EXPECT_EQ(1, saves);
}

TEST_F(EntryFormByHandTest, TimeThatWouldEndInTheFutureIsRefused)
{
    EntryForm form(surroundings, Editor::EntryForm{});
    choose(form.choice()->clientMenu(), "Birch");
    choose(form.choice()->projectMenu(), "Website · $100/hr");
    form.setProperty("hours", "2");
    form.save();
    EXPECT_EQ("Saved time cannot extend into the future.", form.error());
    EXPECT_TRUE(store.data()->entries.empty());
}

TEST_F(EntryFormByHandTest, AProjectMadeInsideTheFormOutlivesItsDrafts)
{
    EntryForm form(surroundings, Editor::EntryForm{});
    choose(form.choice()->clientMenu(), "Birch");
    choose(form.choice()->projectMenu(), "New project");
    form.choice()->createProject();
    EXPECT_EQ("Enter a name.", form.error());
    form.choice()->setProperty("newProjectName", "Shop");
    form.choice()->createProject();
    EXPECT_EQ("", form.error());
    form.close();

    EXPECT_EQ(2U, store.data()->projects.size());
    EXPECT_TRUE(store.data()->entries.empty());
}

} // namespace
} // namespace Kestry
