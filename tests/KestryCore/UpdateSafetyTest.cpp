#include "UpdateSafety.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

using UpdateSafety::hasUnfinishedWork;

TEST(UpdateSafety, NothingOpenIsNoUnfinishedWork)
{
    EXPECT_FALSE(hasUnfinishedWork(std::nullopt, false, ""));
}

TEST(UpdateSafety, ASessionInProgressIsUnfinishedWorkPausedToo)
{
    ActiveSession paused;
    ActiveSession running;
    running.runningSince = Date{10};
    EXPECT_TRUE(hasUnfinishedWork(paused, false, ""));
    EXPECT_TRUE(hasUnfinishedWork(running, false, ""));
}

TEST(UpdateSafety, AnOpenEditorIsUnfinishedWork)
{
    EXPECT_TRUE(hasUnfinishedWork(std::nullopt, true, ""));
}

TEST(UpdateSafety, ATypedTitleIsUnfinishedWorkEvenASingleBlank)
{
    EXPECT_TRUE(hasUnfinishedWork(std::nullopt, false, "Report"));
    EXPECT_TRUE(hasUnfinishedWork(std::nullopt, false, " "));
}

} // namespace
} // namespace KestryCore
