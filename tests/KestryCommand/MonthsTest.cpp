#include "Months.h"

#include <gmock/gmock.h>

#include "UsageError.h"

namespace Kestry {
namespace {

using KestryCore::CalendarDay;
using testing::ThrowsMessage;

void expectHint(const std::string& words, const std::string& hint)
{
    EXPECT_THAT([&] { (void)readMonth(words); },
        ThrowsMessage<UsageError>("\"" + words + "\" is no month. " + hint));
}

TEST(Months, AreReadByYearAndNumber)
{
    EXPECT_EQ(readMonth("2026-03"), (CalendarDay{2026, 3, 1}));
    EXPECT_EQ(readMonth(" 1999-12 "), (CalendarDay{1999, 12, 1}));
    EXPECT_EQ(readMonth("0001-01"), (CalendarDay{1, 1, 1}));
}

TEST(Months, WrittenOtherwiseAreRefusedWithTheRightForm)
{
    for (const char* words : {"2026-3", "2026/03", "202603", "3/2026", "03-2026", "March 2026",
             "mar2026", "2026 March", "2026-03-14", "2026-03x"}) {
        expectHint(words, "Did you mean \"2026-03\"?");
    }
}

TEST(Months, BeyondTheYearAreRefusedWithTheNearestOne)
{
    expectHint("2026-13", "Did you mean \"2026-12\"?");
    expectHint("2026-00", "Did you mean \"2026-01\"?");
}

TEST(Months, WithoutAYearAreRefusedWithTheirNumber)
{
    expectHint("March", "Give its year and number, as in \"2026-03\".");
    expectHint("dec", "Give its year and number, as in \"2026-12\".");
}

TEST(Months, ThatCannotBeGuessedAreRefusedWithAnExample)
{
    for (const char* words :
        {"", "x", "2026", "26-03", "14.03.2026", "0000-01", "2026-003", "last", "ma", "99999-01"}) {
        expectHint(words, "Give its year and number, as in \"2026-03\".");
    }
}

} // namespace
} // namespace Kestry
