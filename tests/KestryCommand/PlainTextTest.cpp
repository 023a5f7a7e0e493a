#include "PlainText.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

TEST(Printable, LeavesOrdinaryTextAlone)
{
    EXPECT_EQ(printable("Aster & Söhne 日本 \\n"), "Aster & Söhne 日本 \\n");
}

TEST(Printable, WritesControlCharactersOut)
{
    EXPECT_EQ(printable("a\nb\tc\rd"), "a\\nb\\tc\\rd");
    EXPECT_EQ(printable("\x1B[2J\x07\x7F"), "\\x1B[2J\\x07\\x7F");
    EXPECT_EQ(printable(std::string_view("\0", 1)), "\\x00");
    EXPECT_EQ(printable("\u009B31m"), "\\x9B31m");
}

TEST(Printable, WritesOutMarksThatTurnTheDirectionOfWriting)
{
    EXPECT_EQ(printable("safe\u202Etxt.exe"), "safe\\u202Etxt.exe");
    EXPECT_EQ(printable("\u2066\u2069\u200F\u2028"), "\\u2066\\u2069\\u200F\\u2028");
}

TEST(Printable, ReplacesBytesThatAreNoText)
{
    EXPECT_EQ(printable("a\xFF\xC3"), "a\uFFFD\uFFFD");
}

TEST(PrintableLines, KeepsLineFeedsOnly)
{
    EXPECT_EQ(printableLines("a\nb\r"), "a\nb\\r");
}

TEST(Counted, OneThingAloneIsSingular)
{
    EXPECT_EQ(counted(0, "session"), "0 sessions");
    EXPECT_EQ(counted(1, "session"), "1 session");
    EXPECT_EQ(counted(2, "calendar month"), "2 calendar months");
}

TEST(ColumnWidth, CountsWideCharactersTwiceAndCombiningOnesNotAtAll)
{
    EXPECT_EQ(columnWidth("abc"), 3U);
    EXPECT_EQ(columnWidth("日本"), 4U);
    EXPECT_EQ(columnWidth("e\u0301"), 1U);
    EXPECT_EQ(columnWidth("é"), 1U);
}

TEST(TextTable, AlignsColumnsByWhatIsSeen)
{
    TextTable table;
    table.add({{"日本"}, {"a"}, {"x"}});
    table.add({{"e\u0301"}, {"\n"}, {"y"}});
    EXPECT_EQ(table.text(false), "日本  a   x\ne\u0301     \\n  y\n");
}

TEST(TextTable, AlignsNumbersToTheRight)
{
    TextTable table;
    table.add({{"N"}, {"9", Tint::plain, true}, {"a"}});
    table.add({{"M"}, {"10", Tint::plain, true}, {"b"}});
    EXPECT_EQ(table.text(false), "N   9  a\nM  10  b\n");
}

TEST(TextTable, EndsNoLineInBlanks)
{
    TextTable table;
    table.add({{"long name"}, {"x"}});
    table.add({{"short"}, {""}});
    EXPECT_EQ(table.text(false), "long name  x\nshort\n");
}

TEST(TextTable, ShowsColorsOnlyWhereAsked)
{
    TextTable table;
    table.add({{"State", Tint::heading}, {"running", Tint::good}});
    EXPECT_EQ(table.text(false), "State  running\n");
    EXPECT_EQ(table.text(true), "\x1B[1mState\x1B[0m  \x1B[32mrunning\x1B[0m\n");
}

TEST(TextTable, LetsNoNameColorTheTerminal)
{
    TextTable table;
    table.add({{"\x1B[31mred"}});
    EXPECT_EQ(table.text(true), "\\x1B[31mred\n");
}

} // namespace
} // namespace Kestry
