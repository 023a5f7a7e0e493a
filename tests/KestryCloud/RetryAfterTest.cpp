#include "RetryAfter.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

// Sun, 06 Nov 1994 08:49:37 GMT, counted from 2001.
constexpr KestryCore::Date thatDay{784111777.0 - 978307200.0};

TEST(RetryAfterTest, ANumberIsSeconds)
{
    EXPECT_EQ(retryAfterSeconds("120", thatDay), 120.0);
    EXPECT_EQ(retryAfterSeconds("0", thatDay), 0.0);
}

TEST(RetryAfterTest, ADateIsHeldAgainstNow)
{
    EXPECT_EQ(retryAfterSeconds("Sun, 06 Nov 1994 08:50:07 GMT", thatDay), 30.0);
}

TEST(RetryAfterTest, ADateThatHasPassedIsNoWait)
{
    EXPECT_EQ(retryAfterSeconds("Sun, 06 Nov 1994 08:00:00 GMT", thatDay), 0.0);
}

TEST(RetryAfterTest, AWaitOfMoreThanADayIsADay)
{
    EXPECT_EQ(retryAfterSeconds("999999999", thatDay), 86400.0);
    EXPECT_EQ(retryAfterSeconds("Sun, 06 Nov 2095 08:49:37 GMT", thatDay), 86400.0);
}

TEST(RetryAfterTest, AnythingElseIsNoWish)
{
    for (const char* const value : {"", "soon", "-5", "1.5", "12x", "Sun, 06 Nov 1994",
             "99999999999999999999999", "Sun, 99 Nov 1994 08:49:37 GMT"}) {
        EXPECT_EQ(retryAfterSeconds(value, thatDay), std::nullopt) << value;
    }
}

} // namespace
} // namespace Kestry
