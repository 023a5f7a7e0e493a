#include "ActiveSessionForm.h"

#include "EditorFixture.h"

namespace Kestry {
namespace {

class ActiveSessionFormTest : public EditorFixture {
protected:
    KestryCore::Uuid birch = addClient(store, "Birch");
    KestryCore::Uuid website = addProject(store, birch, "Website");
    KestryCore::Uuid session = store.start(website, "Call", world.now());
    ActiveSessionForm form{surroundings, Editor::ActiveForm{session}};
};

TEST_F(ActiveSessionFormTest, TheSessionTakesAnotherTitleAndProjectAndRunsOn)
{
    const auto shop = addProject(store, birch, "Shop");
    EXPECT_EQ("Edit current session", form.title());
    EXPECT_EQ("Change the title or project without interrupting the timer.", form.line());
    EXPECT_EQ("Call", draft(form, "name"));
    form.setProperty("name", "Layout");
    choose(form.choice()->projectMenu(), "Shop · $100/hr");
    form.save();

    EXPECT_EQ("Layout", store.data()->active->title);
    EXPECT_EQ(shop, store.data()->active->projectID);
    EXPECT_FALSE(store.data()->active->isPaused());
}

TEST_F(ActiveSessionFormTest, TheElapsedTimeGoesOnWhileTheFormIsOpen)
{
    EXPECT_EQ("00:00:00", form.elapsed());
    world.scheduler.advance(61.5);
    EXPECT_EQ("00:01:01", form.elapsed());
    EXPECT_EQ("", form.pausedAt());
}

TEST_F(ActiveSessionFormTest, APauseIsShownWithItsTimeAndWakesNobodyUp)
{
    world.scheduler.advance(60);
    store.pause(world.now());
    EXPECT_EQ("00:01:00", form.elapsed());
    EXPECT_EQ("8:41 PM", form.pausedAt());
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(ActiveSessionFormTest, AFormThatIsShownNoLongerDoesNotTick)
{
    form.retire();
    EXPECT_TRUE(world.scheduler.isIdle());
}

TEST_F(ActiveSessionFormTest, ASessionThatHasEndedLeavesTheDraftsAndRefusesSaving)
{
    form.setProperty("name", "Layout");
    world.scheduler.advance(60.5);
    store.stop(world.now());
    form.save();

    EXPECT_NE("", form.error());
    EXPECT_EQ("Layout", draft(form, "name"));
    EXPECT_EQ("00:01:00", form.elapsed());
    EXPECT_EQ("Call", store.data()->entries.front().title);
}

TEST_F(ActiveSessionFormTest, AChangedProjectIsADraft)
{
    EXPECT_FALSE(form.isEdited());
    choose(form.choice()->projectMenu(), "New project");
    EXPECT_TRUE(form.isEdited());
}

TEST_F(ActiveSessionFormTest, ATitleThatWasNotEditedStaysAsItWasChangedElsewhere)
{
    addProject(store, birch, "Shop");
    store.renameActiveSession(session, "Elsewhere");
    choose(form.choice()->projectMenu(), "Shop · $100/hr");
    form.save();
    EXPECT_EQ("Elsewhere", store.data()->active->title);
}

TEST_F(ActiveSessionFormTest, ATitleThatWasEditedCountsWhateverWasChangedElsewhere)
{
    store.renameActiveSession(session, "Elsewhere");
    form.setProperty("name", "Here");
    form.save();
    EXPECT_EQ("Here", store.data()->active->title);
}

TEST_F(ActiveSessionFormTest, AClientWithoutProjectsIsRefusedAndNothingChanges)
{
    addClient(store, "Alder", Projects::disabled);
    const auto before = *store.data()->active;
    choose(form.choice()->clientMenu(), "Alder");
    form.setProperty("name", "Layout");
    form.save();
    EXPECT_EQ("Choose a project from the same client with projects enabled.", form.error());
    EXPECT_EQ(before, *store.data()->active);
}

} // namespace
} // namespace Kestry
