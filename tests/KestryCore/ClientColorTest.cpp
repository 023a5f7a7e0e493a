#include "ClientColor.h"

#include <gtest/gtest.h>

#include "LedgerEditing.h"

namespace KestryCore {
namespace {

TEST(ClientColor, OfANewClientIsAQuietGrey)
{
    EXPECT_EQ(ClientColor::initialHex, "A2A5AA");
    EXPECT_EQ(NewClient{}.colorHex, "A2A5AA");
}

TEST(ClientColor, GoesThroughTheRuleForAllColors)
{
    EXPECT_EQ(ClientColor::normalise(" #b7a5ff\n"), "B7A5FF");
    EXPECT_EQ(ClientColor::normalise("b7a5f"), std::nullopt);
    EXPECT_EQ(ClientColor::normalise("red"), std::nullopt);
}

} // namespace
} // namespace KestryCore
