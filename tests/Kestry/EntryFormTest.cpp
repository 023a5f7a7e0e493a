#include "EntryForm.h"

#include "EditorFixture.h"
#include "RecordValidation.h"

namespace Kestry {
namespace {

class EntryFormTest : public EditorFixture {
protected:
    static constexpr double length = 3600.0 + 4 * 60.0 + 9.0;

    /// A session of 1 h 4 min 9 s with a pause.
    KestryCore::Uuid addWithPause()
    {
        const auto id = store.start(website, "Design", world.now());
        world.scheduler.advance(3600);
        store.pause(world.now());
        world.scheduler.advance(600);
        store.resume(world.now());
        world.scheduler.advance(length - 3600);
        store.stop(world.now());
        return id;
    }
    [[nodiscard]] Editor::EntryForm route(const KestryCore::Uuid& id) const { return {id}; }
    [[nodiscard]] const KestryCore::TimeEntry& onlyEntry() const
    {
        return store.data()->entries.front();
    }

    KestryCore::Uuid birch = addClient(store, "Birch");
    KestryCore::Uuid website = addProject(store, birch, "Website");
};

TEST_F(EntryFormTest, ANewTitleKeepsTheLengthToTheSecondAndTheIntervals)
{
    const auto id = addWithPause();
    const auto before = entry(id);
    EntryForm form(surroundings, route(id));
    EXPECT_EQ("Edit session", form.title());
    EXPECT_EQ("Review this session’s time, billable status, and rate.", form.line());
    EXPECT_EQ("1", draft(form, "hours"));
    EXPECT_EQ("4.15", draft(form, "minutes"));
    form.setProperty("name", "Layout");
    form.save();

    EXPECT_EQ("Layout", entry(id).title);
    EXPECT_EQ(length, entry(id).duration());
    EXPECT_EQ(before.spans, entry(id).spans);
}

TEST_F(EntryFormTest, ChangedMinutesMakeOneContinuousInterval)
{
    const auto id = addWithPause();
    const auto start = entry(id).startedAt();
    EntryForm form(surroundings, route(id));
    form.setProperty("minutes", "10");
    form.save();

    EXPECT_EQ((std::vector<KestryCore::TimeSpan>{{start, start + 4200.0}}), entry(id).spans);
}

TEST_F(EntryFormTest, AnEarlierStartMovesTheIntervals)
{
    const auto id = addWithPause();
    const auto before = entry(id);
    EntryForm form(surroundings, route(id));
    form.setProperty("started", "yesterday 14:30");
    EXPECT_NE("", form.startedHint());
    form.save();

    EXPECT_EQ("", form.error());
    EXPECT_EQ(2U, entry(id).spans.size());
    EXPECT_EQ(length, entry(id).duration());
    EXPECT_EQ(14, calendar->wallTime(entry(id).startedAt()).hour);
    EXPECT_LT(entry(id).startedAt(), before.startedAt());
}

TEST_F(EntryFormTest, AStartInTheFutureIsRefused)
{
    const auto id = addEntry(website, 600);
    const auto before = entry(id);
    EntryForm form(surroundings, route(id));
    form.setProperty("started", "9/20/2026 10:00");
    EXPECT_EQ("A date and time up to now, as in yesterday 14:30 or -2h", form.startedHint());
    form.save();

    EXPECT_EQ("A session cannot start in the future. Enter an earlier time.", form.error());
    EXPECT_EQ(before, entry(id));
}

TEST_F(EntryFormTest, AStartBeforeTheEarliestDateIsRefused)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "12/31/1969 10:00");
    form.save();
    EXPECT_EQ("A session cannot start before 1970. Enter a later date.", form.error());
}

TEST_F(EntryFormTest, ALengthThatCannotBeReadIsHintedAtAndRefused)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    EXPECT_EQ("", form.durationHint());
    form.setProperty("hours", "1.5");
    EXPECT_EQ("Whole hours up to 744, and minutes below 60", form.durationHint());
    EXPECT_EQ("", form.error());
    form.save();
    EXPECT_EQ("Enter whole hours and minutes from 0 to 59. The duration must be greater than zero "
              "and no more than 744 hours (31 days).",
        form.error());
}

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

TEST_F(EntryFormTest, TimeAddedByHandIsTheHourThatHasPassedUntilItIsChanged)
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

TEST_F(EntryFormTest, TimeAddedByHandIsForTheClientOfThePage)
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

TEST_F(EntryFormTest, AClientOfThePageThatIsGoneHasToBeChosenAnew)
{
    state.destination.assign(Destination::client);
    state.selectedClient.assign(KestryCore::Uuid::random());
    EntryForm form(surroundings, Editor::EntryForm{});
    form.save();
    EXPECT_EQ("Choose a client for this session.", form.error());
}

TEST_F(EntryFormTest, TimeAddedByHandNeedsAClientAndItsProject)
{
    EntryForm form(surroundings, Editor::EntryForm{});
    form.save();
    EXPECT_EQ("Choose a client for this session.", form.error());
    choose(form.choice()->clientMenu(), "Birch");
    form.save();
    EXPECT_EQ("Choose a project for this session.", form.error());
    EXPECT_TRUE(store.data()->entries.empty());
}

TEST_F(EntryFormTest, NonbillableTimeByHandIsAddedInOneSave)
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

TEST_F(EntryFormTest, TimeThatWouldEndInTheFutureIsRefused)
{
    EntryForm form(surroundings, Editor::EntryForm{});
    choose(form.choice()->clientMenu(), "Birch");
    choose(form.choice()->projectMenu(), "Website · $100/hr");
    form.setProperty("hours", "2");
    form.save();
    EXPECT_EQ("Saved time cannot extend into the future.", form.error());
    EXPECT_TRUE(store.data()->entries.empty());
}

TEST_F(EntryFormTest, AProjectMadeInsideTheFormOutlivesItsDrafts)
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

TEST_F(EntryFormTest, TheArrowKeysStepTheLength)
{
    EntryForm form(surroundings, route(addWithPause()));
    form.stepMinutes(1);
    EXPECT_EQ("5", draft(form, "minutes"));
    form.stepMinutes(-1);
    form.stepMinutes(-1);
    EXPECT_EQ("3", draft(form, "minutes"));
    form.stepHours(1);
    EXPECT_EQ("2", draft(form, "hours"));
    EXPECT_EQ("3", draft(form, "minutes"));
}

TEST_F(EntryFormTest, AStepCarriesAndStaysInsideTheLimits)
{
    EntryForm form(surroundings, Editor::EntryForm{});
    form.stepMinutes(-1);
    EXPECT_EQ("0", draft(form, "hours"));
    EXPECT_EQ("59", draft(form, "minutes"));
    form.stepHours(-1);
    EXPECT_EQ("59", draft(form, "minutes"));
    form.setProperty("hours", "744");
    form.setProperty("minutes", "0");
    form.stepMinutes(1);
    EXPECT_EQ("0", draft(form, "minutes"));
    form.setProperty("hours", "many");
    form.stepHours(1);
    EXPECT_EQ("many", draft(form, "hours"));
}

TEST_F(EntryFormTest, AStepOfTheHoursAndBackKeepsTheLengthToTheSecond)
{
    const auto id = addEntry(website, 3600.0 + 4 * 60.0 + 21.0);
    EntryForm form(surroundings, route(id));
    for (const int by : {1, 1, -1, -1}) {
        form.stepHours(by);
    }
    EXPECT_FALSE(form.isEdited());
    form.save();
    EXPECT_EQ(3861.0, entry(id).duration());
}

TEST_F(EntryFormTest, ALengthBeforeNowCountsFromWhenItWasTyped)
{
    const auto id = addEntry(website, 600);
    EntryForm form(surroundings, route(id));
    form.setProperty("started", "-2h");
    const KestryCore::Date typed = world.now();
    const QString hint = form.startedHint();
    world.scheduler.advance(1200);
    EXPECT_EQ(hint, form.startedHint());
    form.save();
    EXPECT_EQ(typed + -7200.0, entry(id).startedAt());
}

TEST_F(EntryFormTest, AWordForADayKeepsItsMeaningPastMidnight)
{
    const auto id = addEntry(website, 600);
    EntryForm form(surroundings, route(id));
    form.setProperty("started", "yesterday 14:30");
    world.scheduler.advance(6 * 3600);
    form.save();
    EXPECT_EQ((KestryCore::CalendarDay{2025, 9, 18}), calendar->day(entry(id).startedAt()));
}

TEST_F(EntryFormTest, ADayOfTheCalendarKeepsTheTimeOfDay)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "yesterday 14:30");
    form.openDays();
    form.days()->press(Qt::Key_Left, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("9/17/2025, 2:30 PM", draft(form, "started"));
    EXPECT_FALSE(form.days()->isOpen());
}

TEST_F(EntryFormTest, ADayOfTheCalendarNeverLeadsIntoTheFuture)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "yesterday 23:30");
    form.openDays();
    form.days()->press(Qt::Key_PageDown, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("9/19/2025, 8:40 PM", draft(form, "started"));
    EXPECT_EQ("", form.startedHint());
}

TEST_F(EntryFormTest, TheCalendarOpensOnTodayWhileTheStartCannotBeRead)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "soon");
    form.openDays();
    EXPECT_EQ("Friday, September 19, 2025", form.days()->currentName());
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

TEST_F(EntryFormTest, AStartThatIsNotEditedIsToldOnTheClocksOfHereAndStays)
{
    const auto id = addEntry(website, 600);
    const auto before = entry(id);
    EntryForm form(surroundings, route(id));
    EXPECT_EQ("9/19/2025, 7:30 PM", draft(form, "started"));
    calendar.assign(KestryCore::ZoneCalendar("America/New_York", "en_US"));
    EXPECT_EQ("9/19/2025, 1:30 PM", draft(form, "started"));
    EXPECT_FALSE(form.isEdited());
    form.save();
    EXPECT_EQ(before, entry(id));
}

TEST_F(EntryFormTest, ATypedStartKeepsItsWordsAndItsMomentWhenTheZoneChanges)
{
    const auto id = addEntry(website, 600);
    EntryForm form(surroundings, route(id));
    form.setProperty("started", "9/18/2025, 2:30 PM");
    const auto meant = *calendar->date({{2025, 9, 18}, 14, 30, 0.0});
    calendar.assign(KestryCore::ZoneCalendar("America/New_York", "en_US"));
    EXPECT_EQ("9/18/2025, 2:30 PM", draft(form, "started"));
    EXPECT_EQ("9/18/2025, 8:30 AM", form.startedHint());
    form.save();
    EXPECT_EQ(meant, entry(id).startedAt());
}

TEST_F(EntryFormTest, AMinuteInTheSecondOfTwoSameHoursStaysInTheSecond)
{
    world.scheduler.advance(60.0 * 86400);
    const auto second = *calendar->date({{2025, 10, 26}, 2, 30, 0.0}) + 3600.0;
    const auto id = store.addEntry(website, {.title = "Night", .start = second, .duration = 600});
    EntryForm form(surroundings, route(id));
    form.setProperty("started", "10/26/2025, 2:31 AM");
    form.save();
    EXPECT_EQ("", form.error());
    EXPECT_EQ(second + 60.0, entry(id).startedAt());
}

TEST_F(EntryFormTest, ADayWhoseClocksSkipTheTimeBeginsAfterTheGap)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "3/29/2025, 2:30 AM");
    form.openDays();
    form.days()->press(Qt::Key_Right, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("3/30/2025, 3:00 AM", draft(form, "started"));
}

TEST_F(EntryFormTest, AGapOfHalfAnHourIsLeftAtItsEnd)
{
    calendar.assign(KestryCore::ZoneCalendar("Australia/Lord_Howe", "en_US"));
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "10/5/2024, 2:10 AM");
    form.openDays();
    form.days()->press(Qt::Key_Right, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("10/6/2024, 2:30 AM", draft(form, "started"));
}

TEST_F(EntryFormTest, ADayThatTheCalendarSkippedGivesTheNextOne)
{
    calendar.assign(KestryCore::ZoneCalendar("Pacific/Apia", "en_US"));
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "12/29/2011, 2:10 AM");
    form.openDays();
    form.days()->press(Qt::Key_Right, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("12/31/2011, 12:00 AM", draft(form, "started"));
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
