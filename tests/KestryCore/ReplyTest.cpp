#include "Reply.h"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>

#include "TaskOwner.h"
#include "VirtualScheduler.h"

namespace KestryCore {
namespace {

/// A task that waits for one reply, and what it was given.
class ReplyTest : public testing::Test {
protected:
    using Sender = Reply<std::string>::Sender;

    Task<void> wait()
    {
        Reply<std::string> reply(scheduler);
        sender = reply.sender();
        if (early) {
            sender->give(*early);
        }
        try {
            const std::string value = co_await reply;
            given += value;
        } catch (const std::runtime_error& failure) {
            given += std::string("failed: ") + failure.what();
        }
    }
    void start()
    {
        owner.emplace(scheduler, [](std::exception_ptr) { FAIL(); });
        owner->start(wait());
    }

    VirtualScheduler scheduler;
    std::optional<std::string> early;
    std::optional<Sender> sender;
    std::string given;
    std::optional<TaskOwner> owner;
};

TEST_F(ReplyTest, TheTaskGoesOnInALaterTurnThanTheSender)
{
    start();
    EXPECT_TRUE(sender->isAwaited());
    sender->give("a");
    EXPECT_EQ(given, "");
    EXPECT_FALSE(sender->isAwaited());
    scheduler.turn();
    EXPECT_EQ(given, "a");
}

TEST_F(ReplyTest, AFailureIsThrownWhereItIsAwaited)
{
    start();
    sender->fail(std::make_exception_ptr(std::runtime_error("no answer")));
    scheduler.turn();
    EXPECT_EQ(given, "failed: no answer");
}

TEST_F(ReplyTest, WhatIsGivenBeforeTheWaitNeedsNone)
{
    early = "at once";
    start();
    EXPECT_EQ(given, "at once");
    scheduler.turn();
    EXPECT_EQ(given, "at once");
}

TEST_F(ReplyTest, OnlyTheFirstGivenCounts)
{
    start();
    sender->give("first");
    sender->give("second");
    sender->fail(std::make_exception_ptr(std::runtime_error("third")));
    scheduler.turn();
    sender->give("fourth");
    scheduler.turn();
    EXPECT_EQ(given, "first");
}

TEST_F(ReplyTest, WhatComesAfterTheTaskHasGoneGoesNowhere)
{
    start();
    owner.reset();
    EXPECT_FALSE(sender->isAwaited());
    sender->give("late");
    scheduler.turn();
    EXPECT_EQ(given, "");
}

TEST_F(ReplyTest, NorDoesWhatIsGivenJustBeforeItGoes)
{
    start();
    sender->give("too late");
    owner.reset();
    scheduler.turn();
    EXPECT_EQ(given, "");
}

TEST_F(ReplyTest, ADelayThatIsCancelledNeverEnds)
{
    const auto wait = [](Scheduler& on, std::string& into) -> Task<void> {
        co_await Delay(on, 2);
        into += "woke";
    };
    owner.emplace(scheduler, [](std::exception_ptr) { FAIL(); });
    owner->start(wait(scheduler, given));
    owner->start(wait(scheduler, given));
    scheduler.advance(1.5);
    EXPECT_EQ(given, "");
    owner.reset();
    EXPECT_TRUE(scheduler.isIdle());
    scheduler.advance(1);
    EXPECT_EQ(given, "");
}

} // namespace
} // namespace KestryCore
