#include "SessionColumn.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

using KestryCore::SessionSort;
using KestryCore::SessionSortField;

TEST(SessionColumn, TheActiveColumnSaysItsDirection)
{
    const SessionColumn down = sessionColumn(SessionSortField::date, SessionSort());
    EXPECT_TRUE(down.isActive);
    EXPECT_EQ(down.symbol, "chevron.down");
    EXPECT_EQ(down.value, "Sorted descending");
    const SessionColumn up =
        sessionColumn(SessionSortField::date, {.field = SessionSortField::date, .ascending = true});
    EXPECT_EQ(up.symbol, "chevron.up");
    EXPECT_EQ(up.value, "Sorted ascending");
}

TEST(SessionColumn, OtherColumnsAreNotSorted)
{
    const SessionColumn column = sessionColumn(SessionSortField::value, SessionSort());
    EXPECT_FALSE(column.isActive);
    EXPECT_EQ(column.symbol, "arrow.up.arrow.down");
    EXPECT_EQ(column.value, "Not sorted");
}

TEST(SessionColumn, HasTheNameOfItsField)
{
    const char* names[] = {"Session", "Date", "Duration", "Value"};
    for (std::size_t index = 0; index < 4; ++index) {
        const SessionColumn column =
            sessionColumn(KestryCore::allSessionSortFields[index], SessionSort());
        EXPECT_EQ(column.name, names[index]);
        EXPECT_EQ(column.label, QString("Sort by ") + names[index]);
        EXPECT_EQ(column.field, static_cast<int>(index));
    }
}

TEST(SessionColumn, TheHintSaysWhatAPressWillDo)
{
    const SessionSort newestFirst;
    EXPECT_EQ(
        sessionColumn(SessionSortField::title, newestFirst).hint, "Activate to sort ascending");
    EXPECT_EQ(
        sessionColumn(SessionSortField::duration, newestFirst).hint, "Activate to sort descending");
    EXPECT_EQ(
        sessionColumn(SessionSortField::date, newestFirst).hint, "Activate to sort ascending");
}

} // namespace
} // namespace Kestry
