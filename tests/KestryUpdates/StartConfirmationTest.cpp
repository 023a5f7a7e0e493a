#include "StartConfirmation.h"

#include <gtest/gtest.h>

#include "InstalledPrefix.h"
#include "VirtualScheduler.h"

namespace Kestry {
namespace {

class StartConfirmationTest : public testing::Test, public InstalledPrefix {
protected:
    StartConfirmationTest() { install(); }

    void begin(const std::string& version = "1.3.0")
    {
        confirmation.emplace(
            scheduler,
            [this](const std::function<void()>& work, const std::function<void()>& done) {
                work();
                scheduler.post(done);
            },
            prefix, testVersion(version));
        confirmation->begin();
    }

    KestryCore::VirtualScheduler scheduler;
    std::optional<StartConfirmation> confirmation;
};

TEST_F(StartConfirmationTest, AVersionThatHasStartedIsOffTrial)
{
    begin();
    scheduler.turn();
    EXPECT_FALSE(prefix.trial());
    EXPECT_EQ(startable(), "1.3.0");
    EXPECT_FALSE(files.isDirectory("/home/kestry/versions/1.2.0"));
    EXPECT_TRUE(scheduler.isIdle());
    EXPECT_FALSE(files.isLocked("/home/kestry"));
}

TEST_F(StartConfirmationTest, TheVersionBeforeConfirmsNothingForItsSuccessor)
{
    begin("1.2.0");
    scheduler.turn();
    EXPECT_TRUE(prefix.trial());
}

TEST_F(StartConfirmationTest, WhileAnotherIsAtTheInstallationItTriesAgain)
{
    files.holdLock("/home/kestry", "kestry");
    begin();
    scheduler.advance(5.0);
    EXPECT_TRUE(prefix.trial());
    files.holdLock("/home/kestry", "");
    scheduler.advance(5.0);
    EXPECT_FALSE(prefix.trial());
}

TEST_F(StartConfirmationTest, ItGivesUpInTheEnd)
{
    files.failCalls("/home/kestry/trial removed", EROFS);
    begin();
    scheduler.advance(60.0);
    EXPECT_TRUE(prefix.trial());
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(StartConfirmationTest, WhoHasGoneIsNotCalledBack)
{
    files.holdLock("/home/kestry", "kestry");
    begin();
    confirmation.reset();
    scheduler.advance(60.0);
    EXPECT_TRUE(prefix.trial());
}

} // namespace
} // namespace Kestry
