#include "SelfUpdate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Kestry {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SuccessorArgumentsTest, ASuccessorWorksOnTheSameDataDirectory)
{
    EXPECT_THAT(successorArguments({"--data-directory", "/home/a b", "--demo"}),
        ElementsAre("--data-directory", "/home/a b", "--demo"));
}

TEST(SuccessorArgumentsTest, WhatWasMeantForThisStartAloneIsNotSaidAgain)
{
    EXPECT_THAT(successorArguments({"--update-token", "5E1F", "--demo", "kestry://update?token=x"}),
        ElementsAre("--demo"));
    EXPECT_THAT(successorArguments({"--update-token"}), IsEmpty());
}

} // namespace
} // namespace Kestry
