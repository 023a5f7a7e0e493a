#include "LaunchOptions.h"

#include <gtest/gtest.h>

#include <map>

namespace Kestry {
namespace {

using KestryCore::Uuid;

constexpr const char* token = "1B4E28BA-2FA1-11D2-883F-0016D3CCA427";
constexpr const char* otherToken = "2B4E28BA-2FA1-11D2-883F-0016D3CCA427";

class LaunchOptionsTest : public ::testing::Test {
protected:
    LaunchOptions parse(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "kestry");
        const auto lookup = [this](const std::string& name) {
            const auto found = environment.find(name);
            return found == environment.end() ? std::nullopt : std::optional(found->second);
        };
        return parseLaunchOptions(arguments, lookup, [] { return "/home/user/data"; });
    }

    std::map<std::string, std::string> environment;
};

TEST_F(LaunchOptionsTest, NothingIsAskedForByAnEmptyCommandLine)
{
    const LaunchOptions options = parse({});
    EXPECT_FALSE(options.demo);
    EXPECT_FALSE(options.updateToken);
}

TEST_F(LaunchOptionsTest, WithoutAWishTheDirectoryIsTheFolderAmongTheApplicationData)
{
    EXPECT_EQ(parse({}).dataDirectory, "/home/user/data/Kestry");
}

TEST_F(LaunchOptionsTest, DemoIsFoundAnywhere)
{
    EXPECT_TRUE(parse({"--data-directory", "/ledger", "--demo"}).demo);
}

TEST_F(LaunchOptionsTest, UrlsOfTheProgramAreTakenInTheirOrder)
{
    EXPECT_EQ(parse({"kestry://a", "https://b", "--demo", "kestry:c"}).urls,
        (std::vector<std::string>{"kestry://a", "kestry:c"}));
}

TEST_F(LaunchOptionsTest, UnknownArgumentsAreIgnored)
{
    EXPECT_EQ(parse({"--verbose", "x", "--data-directory", "/ledger"}).dataDirectory, "/ledger");
}

TEST_F(LaunchOptionsTest, TheFirstOccurrenceWins)
{
    const LaunchOptions options = parse({"--data-directory", "/first", "--update-token", token,
        "--data-directory", "/second", "--update-token", otherToken});
    EXPECT_EQ(options.dataDirectory, "/first");
    EXPECT_EQ(options.updateToken, Uuid::parse(token));
}

TEST_F(LaunchOptionsTest, ARelativeDirectoryStaysAsItIs)
{
    EXPECT_EQ(parse({"--data-directory", "ledger/../mine"}).dataDirectory, "ledger/../mine");
}

TEST_F(LaunchOptionsTest, TheCommandLineWinsOverTheEnvironment)
{
    environment["KESTRY_DATA_DIR"] = "/from-environment";
    EXPECT_EQ(parse({"--data-directory", "/from-option"}).dataDirectory, "/from-option");
}

TEST_F(LaunchOptionsTest, ADirectoryOptionWithoutValueLeavesItToTheEnvironment)
{
    environment["KESTRY_DATA_DIR"] = "/from-environment";
    EXPECT_EQ(parse({"--demo", "--data-directory"}).dataDirectory, "/from-environment");
}

TEST_F(LaunchOptionsTest, AnUpdateTokenThatIsNoIdentifierIsNone)
{
    EXPECT_FALSE(parse({"--update-token", "not-a-uuid"}).updateToken);
}

TEST_F(LaunchOptionsTest, AnUnreadableFirstTokenIsNotReplacedByALaterOne)
{
    EXPECT_FALSE(parse({"--update-token", "not-a-uuid", "--update-token", token}).updateToken);
}

TEST_F(LaunchOptionsTest, AnUpdateTokenWithoutValueIsNone)
{
    EXPECT_FALSE(parse({"--update-token"}).updateToken);
}

TEST_F(LaunchOptionsTest, TheValueOfAnOptionMayLookLikeAnOption)
{
    const LaunchOptions options = parse({"--data-directory", "--demo"});
    EXPECT_EQ(options.dataDirectory, "--demo");
    EXPECT_TRUE(options.demo);
}

} // namespace
} // namespace Kestry
