#include "EntryForm.h"

#include "EntryFormFixture.h"

namespace Kestry {
namespace {

class EntryFormTest : public EntryFormFixture { };

TEST_F(EntryFormTest, TheSavedRateIsShownAndKept)
{
    const auto id = addEntry(website, 600);
    addProject(store, birch, "Shop");
    EntryForm form(surroundings, route(id));
    EXPECT_EQ("$100.00", form.savedRate());
    choose(form.choice()->projectMenu(), "Shop · $100/hr");
    form.setProperty("isBillable", false);
    form.save();

    EXPECT_EQ("Shop", store.project(entry(id).projectID)->name);
    EXPECT_EQ(10000, entry(id).hourlyRateCents);
    EXPECT_FALSE(entry(id).isBillable);
}

TEST_F(EntryFormTest, AnUnknownRateIsSaidToBeUnknown)
{
    const auto shop = store.addProject(birch, {"Shop", 0, false});
    const EntryForm form(surroundings, route(addEntry(shop, 600)));
    EXPECT_EQ("Rate not set", form.savedRate());
}

TEST_F(EntryFormTest, AnImportedSessionSaysSoAndStaysOne)
{
    KestryCore::LedgerData ledger = *store.data();
    KestryCore::TimeEntry imported;
    imported.id = KestryCore::Uuid::random();
    imported.projectID = website;
    imported.spans = {{world.now() + -7200.0, world.now() + -3600.0}};
    imported.recordedDuration = 1800.0;
    imported.sourceID = "T-1";
    ledger.entries.append(imported);
    KestryCore::StoreOptions options;
    options.demoLedger = ledger;
    KestryCore::TimeStore other(world.storePlatform(), options);
    const EditorWorld there{other, state, surroundings.now, world.scheduler, calendar,
        surroundings.words, surroundings.locale, surroundings.openMenu, chooser, {}};
    EntryForm form(there, route(imported.id));
    EXPECT_TRUE(form.isImported());
    EXPECT_FALSE(EntryForm(surroundings, route(addEntry(website, 600))).isImported());
    form.setProperty("name", "Layout");
    form.save();

    const auto& saved = *other.data()->entries.find(imported.id);
    EXPECT_EQ("Layout", saved.title);
    EXPECT_EQ("T-1", saved.sourceID);
    EXPECT_EQ(1800.0, saved.recordedDuration);
}

TEST_F(EntryFormTest, ASessionIsDeletedOnlyAfterAQuestion)
{
    const auto id = addEntry(website, 600);
    EntryForm form(surroundings, route(id));
    form.requestDelete();
    EXPECT_EQ(EditorForm::DeleteSession, form.question());
    form.goOn();
    EXPECT_EQ(1U, store.data()->entries.size());
    form.requestDelete();
    form.confirm();
    EXPECT_TRUE(store.data()->entries.empty());
}

TEST_F(EntryFormTest, ASessionThatIsGoneLeavesTheDraftsAndRefusesSaving)
{
    const auto id = addEntry(website, 600);
    EntryForm form(surroundings, route(id));
    form.setProperty("name", "Layout");
    store.deleteEntry(id);
    form.save();
    EXPECT_EQ("Entry not found.", form.error());
    EXPECT_EQ("Layout", draft(form, "name"));
}

TEST_F(EntryFormTest, ANewProjectThatIsTypedIsNotForgottenBySaving)
{
    const auto id = addEntry(website, 600);
    EntryForm form(surroundings, route(id));
    choose(form.choice()->projectMenu(), "New project");
    form.choice()->setProperty("newProjectName", "Shop");
    form.save();
    EXPECT_EQ("Create the project or cancel it first.", form.error());
    form.choice()->createProject();
    form.save();
    EXPECT_EQ("", form.error());
    EXPECT_EQ("Shop", store.project(entry(id).projectID)->name);
}

TEST_F(EntryFormTest, AClientWithoutProjectsIsRefusedAndNothingChanges)
{
    addClient(store, "Alder", Projects::disabled);
    const auto id = addEntry(website, 600);
    const auto before = entry(id);
    EntryForm form(surroundings, route(id));
    choose(form.choice()->clientMenu(), "Alder");
    form.setProperty("name", "Layout");
    form.save();
    EXPECT_EQ("Choose a project from the same client with projects enabled.", form.error());
    EXPECT_EQ(before, entry(id));
}

TEST_F(EntryFormTest, WhatWasNotEditedStaysAsItWasChangedElsewhere)
{
    const auto id = addEntry(website, 600);
    EntryForm form(surroundings, route(id));
    const auto start = entry(id).startedAt() + -60.0;
    store.updateEntry(id, {"Elsewhere", start, 1200.0, false, std::nullopt, std::nullopt});
    form.setProperty("name", "Here");
    form.save();
    EXPECT_EQ("Here", entry(id).title);
    EXPECT_EQ(start, entry(id).startedAt());
    EXPECT_EQ(1200.0, entry(id).duration());
    EXPECT_FALSE(entry(id).isBillable);
}

TEST_F(EntryFormTest, WhatWasEditedCountsWhateverWasChangedElsewhere)
{
    const auto id = addEntry(website, 600);
    EntryForm form(surroundings, route(id));
    const auto start = entry(id).startedAt() + -60.0;
    store.updateEntry(id, {"Elsewhere", start, 1200.0, true, std::nullopt, std::nullopt});
    form.setProperty("minutes", "5");
    form.setProperty("isBillable", false);
    form.save();
    EXPECT_EQ("Elsewhere", entry(id).title);
    EXPECT_EQ(start, entry(id).startedAt());
    EXPECT_EQ(300.0, entry(id).duration());
    EXPECT_FALSE(entry(id).isBillable);
}

TEST_F(EntryFormTest, ADeletionThatTheStoreRefusesIsToldInTheForm)
{
    const auto id = addEntry(website, 600);
    state.editor.assign(Editor{route(id)});
    EntryForm form(surroundings, route(id));
    world.damageLedger();
    form.requestDelete();
    form.confirm();
    EXPECT_NE("", form.error());
    EXPECT_EQ(EditorForm::NoQuestion, form.question());
    EXPECT_TRUE(*state.editor);
    EXPECT_EQ(1U, store.data()->entries.size());
    EXPECT_FALSE(store.errorMessage()->has_value());
}

} // namespace
} // namespace Kestry
