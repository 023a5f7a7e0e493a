#include "ApplicationKeeper.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include "CommandFixture.h"

namespace Kestry {
namespace {

using Outcome = LocalReply::Outcome;

/// A program that asks an application which answers as it is told to.
class ApplicationKeeperTest : public CommandFixture {
protected:
    ApplicationKeeperTest() { environment_["KESTRY_DATA_DIR"] = directory_.string(); }

    ExitStatus ask(const std::vector<std::string>& words)
    {
        console_.output.clear();
        console_.errors.clear();
        ProgramPlatform platform{files_, console_,
            [this](const std::string& name) {
                const auto found = environment_.find(name);
                return found != environment_.end() ? std::optional(found->second) : std::nullopt;
            },
            [this] { return now_; }, [this](double seconds) { sleep(seconds); }, pictureAsItIs};
        platform.handOver = [this](const LocalCommand& command) {
            asked_.push_back(command);
            return reply_;
        };
        return runProgram(words, platform);
    }
    void answer(LocalAnswer answer) { reply_ = {Outcome::answered, std::move(answer), 4711}; }

    LocalReply reply_;
    std::vector<LocalCommand> asked_;
};

TEST_F(ApplicationKeeperTest, TheApplicationsAnswerIsTheProgramsAnswer)
{
    answer({1, false, "out\n", "why\n"});
    EXPECT_EQ(ask({"start", "aster"}), ExitStatus::refused);
    EXPECT_EQ(console_.output, "out\n");
    EXPECT_EQ(console_.errors, "why\n");
    EXPECT_EQ(asked_.front().words, (std::vector<std::string>{"start", "aster"}));
    EXPECT_EQ(asked_.front().dataDirectory, directory_.string());
    EXPECT_FALSE(std::filesystem::exists(directory_));
}

TEST_F(ApplicationKeeperTest, AnAnswerToAChangeThatCannotBeShownSaysThatItWasMade)
{
    answer({0, true, "Started.\n", ""});
    console_.isBroken = true;
    EXPECT_EQ(ask({"start", "aster"}), ExitStatus::refused);
    EXPECT_EQ(console_.errors,
        "The change has been made and saved; only its result can't be shown. The output could not "
        "be written: Broken pipe.\n");
}

TEST_F(ApplicationKeeperTest, WithNobodyThereTheFilesAreWorkedOn)
{
    EXPECT_EQ(ask({"client", "add", "Aster"}), ExitStatus::done);
    EXPECT_EQ(ledger().clients.size(), 1U);
    reply_.outcome = Outcome::declined;
    EXPECT_EQ(ask({"client", "add", "Birch"}), ExitStatus::done);
    EXPECT_EQ(ledger().clients.size(), 2U);
}

TEST_F(ApplicationKeeperTest, WhatNeedsNoStoreIsNotHandedOver)
{
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"check"}, {"completion", "bash"}, {"--help"}, {"sttaus"}}) {
        (void)ask(words);
    }
    EXPECT_TRUE(asked_.empty());
}

TEST_F(ApplicationKeeperTest, AnApplicationThatDoesNotAnswerIsARefusalOfAChange)
{
    reply_ = {Outcome::silent, {}, 4711};
    EXPECT_EQ(ask({"client", "add", "Aster"}), ExitStatus::refused);
    EXPECT_EQ(console_.errors,
        "Kestry (process 4711) is using this data directory and does not answer. Nothing was "
        "changed.\n");
    EXPECT_FALSE(std::filesystem::exists(directory_));
}

TEST_F(ApplicationKeeperTest, ReadingDoesNotNeedAnApplicationThatAnswers)
{
    reply_ = {Outcome::silent, {}, 4711};
    EXPECT_EQ(ask({"status"}), ExitStatus::done);
    reply_.outcome = Outcome::lost;
    EXPECT_EQ(ask({"status"}), ExitStatus::done);
    EXPECT_EQ(console_.output, "State  idle\n");
}

TEST_F(ApplicationKeeperTest, AChangeThatWasLostIsNotTriedOnceMore)
{
    reply_ = {Outcome::lost, {}, 4711};
    EXPECT_EQ(ask({"client", "add", "Aster"}), ExitStatus::refused);
    EXPECT_EQ(console_.errors, lostCommandText(reply_) + "\n");
    EXPECT_EQ(asked_.size(), 1U);
    EXPECT_FALSE(std::filesystem::exists(directory_));
}

TEST_F(ApplicationKeeperTest, APersonIsAskedBeforeTheCommandIsHandedOver)
{
    addClientAndStart();
    done({"stop"});
    console_.isTerminal = true;
    EXPECT_EQ(ask({"delete", "sketches"}), ExitStatus::refused);
    EXPECT_TRUE(asked_.empty());
    answer({0, true, "Deleted.\n", ""});
    console_.answers = {"y"};
    EXPECT_EQ(ask({"delete", "sketches"}), ExitStatus::done);
    EXPECT_TRUE(asked_.at(0).isConfirmed);
    EXPECT_EQ(asked_.at(0).session, ledger().entries.front().id.text());
    EXPECT_TRUE(asked_.at(0).writesToTerminal);
}

TEST_F(ApplicationKeeperTest, WhatWasConfirmedByAWordIsAgreedToByNobody)
{
    answer({});
    (void)ask({"restore", "--yes"});
    EXPECT_FALSE(asked_.at(0).isConfirmed);
    console_.isTerminal = true;
    console_.answers = {"y"};
    (void)ask({"restore"});
    EXPECT_TRUE(asked_.at(1).isConfirmed);
}

TEST_F(ApplicationKeeperTest, ASessionThatTheApplicationDoesNotLookForIsLookedForInTheFiles)
{
    addClientAndStart();
    done({"stop"});
    reply_.outcome = Outcome::declined;
    EXPECT_EQ(ask({"edit", "sketches", "--title", "Ink"}), ExitStatus::done);
    ASSERT_EQ(asked_.size(), 2U);
    EXPECT_FALSE(asked_.at(0).session);
    EXPECT_EQ(asked_.at(1).session, ledger().entries.front().id.text());
    EXPECT_EQ(ask({"edit", "nobody", "--title", "Ink"}), ExitStatus::refused);
    EXPECT_EQ(console_.errors, "There is no saved session \"nobody\".\n");
}

TEST_F(ApplicationKeeperTest, TheFileOfAnAnswerIsWrittenHere)
{
    LocalAnswer exported{0, false, "Exported.\n", ""};
    exported.file = FileToWrite{(root_ / "out.csv").string(), "a,b\r\n"};
    answer(exported);
    EXPECT_EQ(ask({"export", "out.csv"}), ExitStatus::done);
    EXPECT_EQ(fileContent(root_ / "out.csv"), "a,b\r\n");
    EXPECT_EQ(console_.output, "Exported.\n");
    EXPECT_TRUE(asked_.at(0).isPrepared);
}

TEST_F(ApplicationKeeperTest, AFileThatCannotBeWrittenIsToldInPlaceOfTheAnswer)
{
    LocalAnswer exported{0, false, "Exported.\n", ""};
    exported.file = FileToWrite{(root_ / "none/out.csv").string(), "a,b\r\n"};
    answer(exported);
    EXPECT_EQ(ask({"export", "out.csv"}), ExitStatus::refused);
    EXPECT_EQ(console_.output, "");
    EXPECT_EQ(console_.errors, "out.csv could not be written: No such file or directory.\n");
}

TEST_F(ApplicationKeeperTest, ALogoIsReadHere)
{
    std::ofstream(root_ / "logo.png") << "PNG";
    answer({});
    (void)ask({"client", "edit", "aster", "--logo", (root_ / "logo.png").string()});
    EXPECT_EQ(asked_.at(0).logo, "PNG");
    EXPECT_EQ(ask({"client", "edit", "aster", "--logo", (root_ / "none.png").string()}),
        ExitStatus::refused);
    EXPECT_EQ(asked_.size(), 1U);
}

TEST_F(ApplicationKeeperTest, APasswordGoesToTheApplicationAndIsNoneOfTheWords)
{
    const std::vector<std::string> signIn{
        "sync", "sign-in", "https://example.org/hours", "--user", "mia"};
    answer({});
    console_.isTerminal = true;
    console_.answers = {"open sesame"};
    EXPECT_EQ(ask(signIn), ExitStatus::done);
    EXPECT_EQ(console_.errors, "Password of mia: ");
    EXPECT_EQ(asked_.at(0).secret, "open sesame");
    environment_["KESTRY_CLOUD_PASSWORD"] = "from the environment";
    EXPECT_EQ(ask(signIn), ExitStatus::done);
    EXPECT_EQ(asked_.at(1).secret, "from the environment");
    EXPECT_EQ(asked_.at(1).environment.count("KESTRY_CLOUD_PASSWORD"), 0U);
    console_.answers = {" from the input "};
    std::vector<std::string> piped = signIn;
    piped.emplace_back("--password-stdin");
    EXPECT_EQ(ask(piped), ExitStatus::done);
    EXPECT_EQ(asked_.at(2).secret, " from the input ");
    EXPECT_THAT(asked_.at(2).words, testing::Not(testing::Contains(" from the input ")));
}

TEST_F(ApplicationKeeperTest, WithoutAPasswordNothingIsHandedOver)
{
    const std::vector<std::string> signIn{
        "sync", "sign-in", "https://example.org/hours", "--user", "mia"};
    EXPECT_EQ(ask(signIn), ExitStatus::refused);
    EXPECT_EQ(console_.errors,
        "There is no password, and nobody can be asked for it here. Hand it over with "
        "--password-stdin or in KESTRY_CLOUD_PASSWORD.\n");
    console_.isTerminal = true;
    console_.answers = {"", std::string(LocalMessageLimits::secret + 1, 'x')};
    EXPECT_EQ(ask(signIn), ExitStatus::refused);
    EXPECT_THAT(console_.errors, testing::HasSubstr("The password is empty."));
    EXPECT_EQ(ask(signIn), ExitStatus::refused);
    EXPECT_THAT(console_.errors, testing::HasSubstr("No password is as long as this."));
    EXPECT_EQ(ask(signIn), ExitStatus::refused);
    EXPECT_TRUE(asked_.empty());
}

TEST_F(ApplicationKeeperTest, AFileIsSignedInToWithoutAnyQuestion)
{
    answer({});
    console_.isTerminal = true;
    EXPECT_EQ(ask({"sync", "sign-in", "sqlite:/shared/store"}), ExitStatus::done);
    EXPECT_EQ(asked_.at(0).secret, std::nullopt);
    EXPECT_EQ(console_.secretsRead, 0);
}

TEST_F(ApplicationKeeperTest, WhatNeedsTheApplicationIsNotTriedOnTheFiles)
{
    EXPECT_EQ(ask({"sync", "on"}), ExitStatus::refused);
    EXPECT_THAT(console_.errors, testing::StartsWith("Kestry is not running"));
    EXPECT_FALSE(std::filesystem::exists(directory_));
    reply_ = {Outcome::silent, {}, 4711};
    EXPECT_EQ(ask({"sync", "now"}), ExitStatus::refused);
    EXPECT_THAT(console_.errors, testing::HasSubstr("does not answer. Nothing was changed."));
}

TEST_F(ApplicationKeeperTest, AnApplicationThatHasTheDirectoryIsAskedUntilItListens)
{
    addClientAndStart();
    const auto held = files_.lockDirectory(directory_.string());
    prctl(PR_SET_NAME, "kestry");
    int sleeps = 0;
    onSleep_ = [&] {
        if (++sleeps == 3) {
            answer({0, true, "Paused.\n", ""});
        }
    };
    EXPECT_EQ(ask({"pause"}), ExitStatus::done) << console_.errors;
    EXPECT_EQ(asked_.size(), 4U);
    EXPECT_EQ(console_.output, "Paused.\n");
}

TEST_F(ApplicationKeeperTest, AnApplicationThatNeverListensIsWaitedForForFiveSeconds)
{
    addClientAndStart();
    const auto held = files_.lockDirectory(directory_.string());
    prctl(PR_SET_NAME, "kestry");
    const KestryCore::Date before = now_;
    EXPECT_EQ(ask({"pause"}), ExitStatus::refused);
    EXPECT_NEAR(now_ - before, 5.0, 0.1);
    EXPECT_THAT(console_.errors, testing::StartsWith("kestry (process "));
}

TEST_F(ApplicationKeeperTest, WordsThatAreTooLongAreRefusedWhileTheApplicationHasTheDirectory)
{
    addClientAndStart();
    const auto held = files_.lockDirectory(directory_.string());
    prctl(PR_SET_NAME, "kestry");
    const KestryCore::Date before = now_;
    EXPECT_EQ(ask({"rename", std::string(LocalMessageLimits::word + 1, 'x')}), ExitStatus::refused);
    EXPECT_EQ(console_.errors,
        "Kestry is running, and takes no command line with words as long as these. Nothing was "
        "changed.\n");
    EXPECT_EQ(now_, before);
}

TEST_F(ApplicationKeeperTest, WordsThatAreTooLongForTheApplicationAreNotHandedOver)
{
    addClientAndStart();
    EXPECT_EQ(ask({"rename", std::string(LocalMessageLimits::word + 1, 'x')}), ExitStatus::done);
    EXPECT_TRUE(asked_.empty());
}

} // namespace
} // namespace Kestry
