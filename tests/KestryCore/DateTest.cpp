#include "Date.h"

#include <gtest/gtest.h>

#include <chrono>

namespace KestryCore {
namespace {

TEST(Date, CountsSecondsFromTheStartOf2001)
{
    using namespace std::chrono;
    const sys_days reference = year{2001} / January / 1;
    EXPECT_EQ(
        duration<double>(reference.time_since_epoch()).count(), referenceDateSecondsSince1970);
    const sys_days yearOne = year{1} / January / 1;
    EXPECT_EQ(distantPast.seconds,
        duration<double>(yearOne.time_since_epoch()).count() - referenceDateSecondsSince1970
            - 2 * 86400);
}

TEST(Date, KeepsFractionsAndComparesExactly)
{
    const Date date{816'393'600.25};
    EXPECT_EQ(date + 0.5, Date{816'393'600.75});
    EXPECT_EQ((date + 0.5) - date, 0.5);
    EXPECT_LT(date, date + 0.0001);
}

TEST(Date, EveryComparisonWithANotANumberIsFalse)
{
    const Date none{std::nan("")};
    EXPECT_FALSE(none < Date{} || none > Date{} || none == none);
    EXPECT_FALSE(none.isFinite());
    EXPECT_FALSE(Date{INFINITY}.isFinite());
}

TEST(Date, TheCurrentDateIsTheSystemClocks)
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    const double expected =
        std::chrono::duration<double>(sinceEpoch).count() - referenceDateSecondsSince1970;
    EXPECT_NEAR(currentDate().seconds, expected, 60.0);
}

} // namespace
} // namespace KestryCore
