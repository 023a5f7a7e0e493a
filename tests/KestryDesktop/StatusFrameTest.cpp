#include <gtest/gtest.h>

#include <limits>

#include "StatusFrame.h"

namespace Kestry {
namespace {

TEST(StatusFrame, TurnsOnceInEightSeconds)
{
    EXPECT_EQ(0, statusFrame(0.0));
    EXPECT_EQ(30, statusFrame(1.0));
    EXPECT_EQ(120, statusFrame(4.0));
    EXPECT_EQ(239, statusFrame(7.999));
    EXPECT_EQ(0, statusFrame(8.0));
    EXPECT_EQ(30, statusFrame(3601.0));
}

TEST(StatusFrame, StandsAtTheStartForANegativeTime)
{
    EXPECT_EQ(0, statusFrame(-3.0));
}

TEST(StatusFrame, StandsAtTheStartForATimeThatIsNoNumber)
{
    EXPECT_EQ(0, statusFrame(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(0, statusFrame(std::numeric_limits<double>::infinity()));
}

} // namespace
} // namespace Kestry
