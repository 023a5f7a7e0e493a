#include "ActivityAngle.h"

#include <gtest/gtest.h>

#include <limits>

namespace Kestry {
namespace {

TEST(ActivityAngle, TurnsOnceInEightSecondsOfTheSession)
{
    EXPECT_DOUBLE_EQ(activityAngle(0.0), 0.0);
    EXPECT_DOUBLE_EQ(activityAngle(2.0), 90.0);
    EXPECT_DOUBLE_EQ(activityAngle(8.0), 0.0);
    EXPECT_DOUBLE_EQ(activityAngle(360'004.0), 180.0);
}

TEST(ActivityAngle, OfWhatIsNotFiniteIsNone)
{
    EXPECT_DOUBLE_EQ(activityAngle(std::numeric_limits<double>::infinity()), 0.0);
    EXPECT_DOUBLE_EQ(activityAngle(std::numeric_limits<double>::quiet_NaN()), 0.0);
}

} // namespace
} // namespace Kestry
