#include "SyncFailureText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>

#include "CloudError.h"
#include "SyncDeliveryError.h"

namespace KestryCore {
namespace {

std::string textAfter(double seconds)
{
    return syncFailureText(CloudError("Busy.").retryingAfter(seconds));
}

TEST(SyncFailureText, IsTheDescription)
{
    EXPECT_EQ(syncFailureText(SyncDeliveryError("No way.")), "No way.");
    EXPECT_EQ(syncFailureText(CloudError("Busy.")), "Busy.");
}

TEST(SyncFailureText, TellsTheWishToBeLeftAloneInWholeSecondsRoundedUp)
{
    EXPECT_EQ(textAfter(2.1), "Busy. Retry in 3 seconds.");
    EXPECT_EQ(textAfter(2.0), "Busy. Retry in 2 seconds.");
    EXPECT_EQ(textAfter(0.0), "Busy. Retry in 0 seconds.");
    EXPECT_EQ(textAfter(1.0), "Busy. Retry in 1 seconds.");
}

TEST(SyncFailureText, AWishThatMakesNoSenseIsNotTold)
{
    EXPECT_EQ(textAfter(std::nan("")), "Busy.");
    EXPECT_EQ(textAfter(-1.0), "Busy.");
    EXPECT_EQ(textAfter(std::numeric_limits<double>::infinity()),
        "Busy. Retry in 1000000000000000 seconds.");
}

TEST(SyncFailureText, NamesNoFunctionOfALibrary)
{
    EXPECT_EQ(syncFailureText(std::bad_alloc()),
        "There isn't enough memory for that. Close other programs and try again.");
}

} // namespace
} // namespace KestryCore
