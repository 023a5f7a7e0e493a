#include "SpokenDuration.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Kestry {
namespace {

TEST(SpokenDuration, LeavesOutWhatIsZero)
{
    EXPECT_EQ(spokenDuration(3600 + 2 * 60 + 3), "1 hour, 2 minutes, 3 seconds");
    EXPECT_EQ(spokenDuration(7200), "2 hours");
    EXPECT_EQ(spokenDuration(61), "1 minute, 1 second");
}

TEST(SpokenDuration, ZeroIsStillSaid)
{
    EXPECT_EQ(spokenDuration(0.4), "0 seconds");
    EXPECT_EQ(spokenDuration(std::nan("")), "unknown");
}

} // namespace
} // namespace Kestry
