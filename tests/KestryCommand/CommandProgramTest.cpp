#include "CommandFixture.h"

namespace Kestry {
namespace {

class CommandProgram : public CommandFixture { };

TEST_F(CommandProgram, RefusesOnBothOutputsWhereJsonIsAskedFor)
{
    EXPECT_EQ(run({"pause", "--json"}), ExitStatus::refused);
    EXPECT_EQ(console_.errors, "No running session to pause.\n");
    EXPECT_EQ(console_.output, "{\"error\":\"No running session to pause.\"}\n");
}

TEST_F(CommandProgram, RefusesUnusableWordsWithAStatusOfTheirOwn)
{
    EXPECT_EQ(run({"statsu", "--json"}), ExitStatus::unusable);
    EXPECT_EQ(console_.output,
        "{\"error\":\"There is no command \\\"statsu\\\". Did you mean \\\"status\\\"?\"}\n");
    EXPECT_EQ(run({"status", "--time-zone", "Mars"}), ExitStatus::unusable);
    EXPECT_EQ(run({"status", "--locale", "xx"}), ExitStatus::unusable);
    EXPECT_EQ(run({"status", "--at", "soon"}), ExitStatus::unusable);
    EXPECT_FALSE(std::filesystem::exists(directory_));
}

TEST_F(CommandProgram, SaysThatAChangeStandsWhoseResultCannotBeShown)
{
    done({"client", "add", "Aster"});
    console_.isBroken = true;
    EXPECT_EQ(refused({"start", "aster"}),
        "The change has been made and saved; only its result can't be shown. The output could not "
        "be written: Broken pipe.");
    EXPECT_TRUE(ledger().active);
    EXPECT_EQ(refused({"status"}), "The output could not be written: Broken pipe.");
}

} // namespace
} // namespace Kestry
