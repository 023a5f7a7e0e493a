#include "DayPicker.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

namespace Kestry {
namespace {

using KestryCore::CalendarDay;

class DayPickerTest : public ::testing::Test {
protected:
    DayPickerTest()
    {
        QObject::connect(&picker, &DayPicker::chosen, [this](const auto& day) { chosen = day; });
        picker.open({2026, 3, 14}, {2026, 3, 20});
    }
    void press(std::initializer_list<int> keys, int modifiers = Qt::NoModifier)
    {
        for (const int key : keys) {
            EXPECT_TRUE(picker.press(key, modifiers));
        }
    }
    [[nodiscard]] QVariant at(int row, int role) const
    {
        return picker.data(picker.index(row), role);
    }

    DayPicker picker{QLocale("en_US"), {1970, 1, 1}};
    std::optional<CalendarDay> chosen;
};

TEST_F(DayPickerTest, APageBeginsWithTheFirstWeekdayOfTheLocale)
{
    const QAbstractItemModelTester tester(&picker);
    EXPECT_EQ("March 2026", picker.month());
    EXPECT_EQ("Sun", picker.weekdays().front());
    EXPECT_EQ("Sunday, March 1, 2026", at(0, DayPicker::NameRole));

    DayPicker german(QLocale("de_DE"), {1970, 1, 1});
    german.open({2026, 3, 14}, {2026, 3, 20});
    EXPECT_EQ("Mo", german.weekdays().front());
    EXPECT_EQ(
        "Montag, 23. Februar 2026", german.data(german.index(0), DayPicker::NameRole).toString());
    EXPECT_EQ("März 2026", german.month());
}

TEST_F(DayPickerTest, TheChosenDayAndTodayAreMarked)
{
    EXPECT_EQ(13, picker.current());
    EXPECT_TRUE(at(13, DayPicker::IsChosenRole).toBool());
    EXPECT_TRUE(at(19, DayPicker::IsTodayRole).toBool());
    EXPECT_EQ("14", at(13, DayPicker::NumberRole));
    EXPECT_TRUE(at(13, DayPicker::IsInMonthRole).toBool());
    EXPECT_FALSE(at(31, DayPicker::IsInMonthRole).toBool());
}

TEST_F(DayPickerTest, TheArrowKeysMoveByDaysAndWeeks)
{
    press({Qt::Key_Left});
    EXPECT_EQ("Friday, March 13, 2026", picker.currentName());
    press({Qt::Key_Right, Qt::Key_Up});
    EXPECT_EQ("Saturday, March 7, 2026", picker.currentName());
    press({Qt::Key_Down});
    EXPECT_EQ("Saturday, March 14, 2026", picker.currentName());
    press({Qt::Key_Home});
    EXPECT_EQ("Sunday, March 8, 2026", picker.currentName());
    press({Qt::Key_End});
    EXPECT_EQ("Saturday, March 14, 2026", picker.currentName());
}

TEST_F(DayPickerTest, ThePageKeysMoveByMonthsAndYears)
{
    press({Qt::Key_PageUp});
    EXPECT_EQ("February 2026", picker.month());
    press({Qt::Key_PageUp}, Qt::ShiftModifier);
    EXPECT_EQ("February 2025", picker.month());
    press({Qt::Key_PageDown});
    EXPECT_EQ("Friday, March 14, 2025", picker.currentName());
}

TEST_F(DayPickerTest, AMonthThatIsTooShortEndsWithItsLastDay)
{
    picker.open({2026, 1, 31}, {2026, 3, 20});
    press({Qt::Key_PageDown});
    EXPECT_EQ("Saturday, February 28, 2026", picker.currentName());
    picker.open({2026, 1, 15}, {2026, 3, 20});
    press({Qt::Key_PageUp});
    EXPECT_EQ("December 2025", picker.month());
}

TEST_F(DayPickerTest, TheKeyboardNeverLeavesTheDaysThatCanBeChosen)
{
    press({Qt::Key_Down, Qt::Key_PageDown});
    EXPECT_EQ("Friday, March 20, 2026", picker.currentName());
    picker.open({1970, 1, 2}, {2026, 3, 20});
    press({Qt::Key_Up});
    EXPECT_EQ("Thursday, January 1, 1970", picker.currentName());
}

TEST_F(DayPickerTest, ReturnChoosesTheCurrentDayAndCloses)
{
    press({Qt::Key_Left, Qt::Key_Return});
    EXPECT_EQ((CalendarDay{2026, 3, 13}), *chosen);
    EXPECT_FALSE(picker.isOpen());
}

TEST_F(DayPickerTest, ADayInTheFutureCannotBeChosen)
{
    EXPECT_FALSE(at(20, DayPicker::IsAllowedRole).toBool());
    picker.choose(20);
    picker.choose(-1);
    picker.choose(42);
    EXPECT_FALSE(chosen);
    EXPECT_TRUE(picker.isOpen());
}

TEST_F(DayPickerTest, EscapeClosesAndChoosesNothing)
{
    press({Qt::Key_Escape});
    EXPECT_FALSE(picker.isOpen());
    EXPECT_FALSE(chosen);
    EXPECT_FALSE(picker.press(Qt::Key_Tab, Qt::NoModifier));
}

TEST_F(DayPickerTest, TheArrowKeysFollowThePageInEveryLocale)
{
    DayPicker arabic(QLocale("ar_EG"), {1970, 1, 1});
    arabic.open({2026, 3, 14}, {2026, 3, 20});
    const int before = arabic.current();
    arabic.press(Qt::Key_Left, Qt::NoModifier);
    EXPECT_EQ(before - 1, arabic.current());
}

TEST_F(DayPickerTest, TheYearHasTheDigitsOfTheDays)
{
    DayPicker arabic(QLocale("ar_EG"), {1970, 1, 1});
    arabic.open({2026, 3, 14}, {2026, 3, 20});
    EXPECT_TRUE(arabic.month().endsWith(QString::fromUtf8("٢٠٢٦")));
}

TEST_F(DayPickerTest, NothingCanBeChosenFromAClosedPage)
{
    picker.close();
    picker.choose(13);
    EXPECT_FALSE(chosen);
}

} // namespace
} // namespace Kestry
