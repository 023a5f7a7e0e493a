#include "EntryForm.h"

#include "EntryFormFixture.h"

namespace Kestry {
namespace {

/// When a session began.
class EntryFormStartTest : public EntryFormFixture { };

TEST_F(EntryFormStartTest, AnEarlierStartMovesTheIntervals)
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

TEST_F(EntryFormStartTest, AStartInTheFutureIsRefused)
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

TEST_F(EntryFormStartTest, AStartBeforeTheEarliestDateIsRefused)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "12/31/1969 10:00");
    form.save();
    EXPECT_EQ("A session cannot start before 1970. Enter a later date.", form.error());
}

TEST_F(EntryFormStartTest, ALengthBeforeNowCountsFromWhenItWasTyped)
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

TEST_F(EntryFormStartTest, AWordForADayKeepsItsMeaningPastMidnight)
{
    const auto id = addEntry(website, 600);
    EntryForm form(surroundings, route(id));
    form.setProperty("started", "yesterday 14:30");
    world.scheduler.advance(6 * 3600);
    form.save();
    EXPECT_EQ((KestryCore::CalendarDay{2025, 9, 18}), calendar->day(entry(id).startedAt()));
}

TEST_F(EntryFormStartTest, ADayOfTheCalendarKeepsTheTimeOfDay)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "yesterday 14:30");
    form.openDays();
    form.days()->press(Qt::Key_Left, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("9/17/2025, 2:30 PM", draft(form, "started"));
    EXPECT_FALSE(form.days()->isOpen());
}

TEST_F(EntryFormStartTest, ADayOfTheCalendarNeverLeadsIntoTheFuture)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "yesterday 23:30");
    form.openDays();
    form.days()->press(Qt::Key_PageDown, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("9/19/2025, 8:40 PM", draft(form, "started"));
    EXPECT_EQ("", form.startedHint());
}

TEST_F(EntryFormStartTest, TheCalendarOpensOnTodayWhileTheStartCannotBeRead)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "soon");
    form.openDays();
    EXPECT_EQ("Friday, September 19, 2025", form.days()->currentName());
}

TEST_F(EntryFormStartTest, AStartThatIsNotEditedIsToldOnTheClocksOfHereAndStays)
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

TEST_F(EntryFormStartTest, ATypedStartKeepsItsWordsAndItsMomentWhenTheZoneChanges)
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

TEST_F(EntryFormStartTest, AMinuteInTheSecondOfTwoSameHoursStaysInTheSecond)
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

TEST_F(EntryFormStartTest, ADayWhoseClocksSkipTheTimeBeginsAfterTheGap)
{
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "3/29/2025, 2:30 AM");
    form.openDays();
    form.days()->press(Qt::Key_Right, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("3/30/2025, 3:00 AM", draft(form, "started"));
}

TEST_F(EntryFormStartTest, AGapOfHalfAnHourIsLeftAtItsEnd)
{
    calendar.assign(KestryCore::ZoneCalendar("Australia/Lord_Howe", "en_US"));
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "10/5/2024, 2:10 AM");
    form.openDays();
    form.days()->press(Qt::Key_Right, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("10/6/2024, 2:30 AM", draft(form, "started"));
}

TEST_F(EntryFormStartTest, ADayThatTheCalendarSkippedGivesTheNextOne)
{
    calendar.assign(KestryCore::ZoneCalendar("Pacific/Apia", "en_US"));
    EntryForm form(surroundings, route(addEntry(website, 600)));
    form.setProperty("started", "12/29/2011, 2:10 AM");
    form.openDays();
    form.days()->press(Qt::Key_Right, Qt::NoModifier);
    form.days()->press(Qt::Key_Return, Qt::NoModifier);
    EXPECT_EQ("12/31/2011, 12:00 AM", draft(form, "started"));
}

} // namespace
} // namespace Kestry
