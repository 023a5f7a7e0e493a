#include "PasswordKeeper.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "FakeSecrets.h"
#include "VirtualScheduler.h"

namespace Kestry {
namespace {

using Secrets = std::map<std::string, std::string>;

class PasswordKeeperTest : public ::testing::Test {
protected:
    PasswordKeeperTest() { secrets.answersLater = true; }

    void write(const std::string& password)
    {
        keeper->write("mia", password, [this](SecretAnswer answer) { told = answer; });
    }
    void remove()
    {
        keeper->remove("mia", [this](SecretAnswer answer) { told = answer; });
    }
    void answer()
    {
        secrets.answer();
        scheduler.turn();
    }

    KestryCore::VirtualScheduler scheduler;
    FakeSecrets secrets;
    std::unique_ptr<PasswordKeeper> keeper = std::make_unique<PasswordKeeper>(secrets, scheduler);
    std::optional<SecretAnswer> told;
};

TEST_F(PasswordKeeperTest, TheLastWishStandsHoweverSlowTheDesktopIs)
{
    write("first");
    remove();
    write("second");
    for (const auto& kept : {Secrets{{"mia", "first"}}, Secrets{}, Secrets{{"mia", "second"}}}) {
        EXPECT_EQ(secrets.asked.size(), 1U) << "one at a time";
        answer();
        EXPECT_EQ(secrets.secrets, kept);
    }
    EXPECT_TRUE(secrets.asked.empty());
}

TEST_F(PasswordKeeperTest, TheAnswerIsToldOnALaterTurn)
{
    write("x");
    secrets.isLocked = true;
    secrets.answer();
    EXPECT_EQ(told, std::nullopt);
    scheduler.turn();
    EXPECT_EQ(told, SecretAnswer::refused);
}

TEST_F(PasswordKeeperTest, ADesktopThatDoesNotAnswerIsNotWaitedForAndCarriesOutAllTheSame)
{
    write("x");
    remove();
    scheduler.advance(PasswordKeeper::patienceSeconds);
    EXPECT_EQ(told, SecretAnswer::refused);
    told.reset();
    answer();
    answer();
    EXPECT_TRUE(secrets.secrets.empty());
    EXPECT_EQ(told, std::nullopt) << "nothing is told twice";
}

TEST_F(PasswordKeeperTest, AKeeperThatGoesTellsNothing)
{
    write("x");
    remove();
    keeper.reset();
    answer();
    EXPECT_EQ(told, std::nullopt);
    EXPECT_TRUE(secrets.asked.empty());
    EXPECT_TRUE(scheduler.isIdle());
}

} // namespace
} // namespace Kestry
