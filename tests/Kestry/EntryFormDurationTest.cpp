#include "EntryForm.h"

#include "EntryFormFixture.h"

namespace Kestry {
namespace {

/// How long it took.
class EntryFormDurationTest : public EntryFormFixture { };

TEST_F(EntryFormDurationTest, ANewTitleKeepsTheLengthToTheSecondAndTheIntervals)
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

TEST_F(EntryFormDurationTest, ChangedMinutesMakeOneContinuousInterval)
{
    const auto id = addWithPause();
    const auto start = entry(id).startedAt();
    EntryForm form(surroundings, route(id));
    form.setProperty("minutes", "10");
    form.save();

    EXPECT_EQ((std::vector<KestryCore::TimeSpan>{{start, start + 4200.0}}), entry(id).spans);
}

TEST_F(EntryFormDurationTest, ALengthThatCannotBeReadIsHintedAtAndRefused)
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

TEST_F(EntryFormDurationTest, TheArrowKeysStepTheLength)
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

TEST_F(EntryFormDurationTest, AStepCarriesAndStaysInsideTheLimits)
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

TEST_F(EntryFormDurationTest, AStepOfTheHoursAndBackKeepsTheLengthToTheSecond)
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

} // namespace
} // namespace Kestry
