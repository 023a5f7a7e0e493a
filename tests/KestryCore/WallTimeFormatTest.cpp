#include "WallTimeFormat.h"

#include <gtest/gtest.h>

#include <new>

#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>

namespace KestryCore {
namespace {

WallTimeFormat isoFormat(const char* locale)
{
    UErrorCode status = U_ZERO_ERROR;
    return WallTimeFormat(
        std::make_unique<icu::SimpleDateFormat>("y-MM-dd HH:mm", icu::Locale(locale), status));
}

TEST(WallTimeFormat, ShowsWhatTheClocksShow)
{
    EXPECT_EQ(isoFormat("en_US").text(WallTime{CalendarDay{2026, 3, 14}, 9, 26, 53.0}),
        "2026-03-14 09:26");
}

TEST(WallTimeFormat, CountsAllDaysByTheGregorianCalendar)
{
    for (const CalendarDay& day : {CalendarDay{1582, 10, 14}, CalendarDay{1582, 10, 5},
             CalendarDay{1500, 2, 28}, CalendarDay{1500, 3, 1}}) {
        const std::string text = isoFormat("en_US").text(WallTime{day, 12, 0, 0.0});
        EXPECT_EQ(std::stoi(text.substr(5, 2)), day.month) << text;
        EXPECT_EQ(std::stoi(text.substr(8, 2)), day.day) << text;
    }
}

TEST(WallTimeFormat, IsNotMadeOfNothing)
{
    EXPECT_THROW(WallTimeFormat(nullptr), std::bad_alloc);
}

} // namespace
} // namespace KestryCore
