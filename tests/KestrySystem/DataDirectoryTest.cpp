#include "DataDirectory.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace KestryCore {
namespace {

EnvironmentLookup variable(std::optional<std::string> value)
{
    return [value](const std::string& name) {
        return name == "KESTRY_DATA_DIR" ? value : std::optional<std::string>();
    };
}

std::string support()
{
    return "/home/ada/.local/share";
}

std::string noHome()
{
    throw std::logic_error("asked for the user's folder");
}

TEST(DataDirectory, IsThePathGivenAsAnOption)
{
    EXPECT_EQ(resolveDataDirectory("/given", variable("/variable"), noHome), "/given");
}

TEST(DataDirectory, IsTheVariableWithoutAnOption)
{
    EXPECT_EQ(resolveDataDirectory(std::nullopt, variable("/variable"), noHome), "/variable");
}

TEST(DataDirectory, IsTheUsersFolderWithoutEither)
{
    EXPECT_EQ(resolveDataDirectory(std::nullopt, variable(std::nullopt), support),
        "/home/ada/.local/share/Kestry");
}

TEST(DataDirectory, KeepsRelativePathsAsTheyStand)
{
    EXPECT_EQ(
        resolveDataDirectory("here/../there", variable(std::nullopt), support), "here/../there");
}

TEST(DataDirectory, TakesAnEmptyValueForTheWorkingDirectory)
{
    EXPECT_EQ(resolveDataDirectory(std::nullopt, variable(""), support), ".");
    EXPECT_EQ(resolveDataDirectory("", variable("/variable"), support), ".");
}

TEST(OptionValue, IsTheArgumentAfterTheFirstOccurrence)
{
    EXPECT_EQ(optionValue({"kestry", "--data-directory", "/a", "--data-directory", "/b"},
                  dataDirectoryOption),
        "/a");
}

TEST(OptionValue, MayLookLikeAnOption)
{
    EXPECT_EQ(optionValue({"--data-directory", "--demo"}, dataDirectoryOption), "--demo");
}

TEST(OptionValue, IsNoneForTheLastArgument)
{
    EXPECT_EQ(optionValue({"kestry", "--data-directory"}, dataDirectoryOption), std::nullopt);
    EXPECT_EQ(optionValue({"kestry", "--demo"}, dataDirectoryOption), std::nullopt);
}

TEST(OptionValue, IsNoneWithoutItsOwnArgument)
{
    EXPECT_EQ(optionValue({"kestry", "--data-directory=/a"}, dataDirectoryOption), std::nullopt);
}

TEST(DataDirectory, IsGivenByTheOptionOrTheVariableEvenWhenThatIsEmpty)
{
    EXPECT_FALSE(isDataDirectoryGiven(std::nullopt, variable(std::nullopt)));
    EXPECT_TRUE(isDataDirectoryGiven("/given", variable(std::nullopt)));
    EXPECT_TRUE(isDataDirectoryGiven(std::nullopt, variable("")));
}

} // namespace
} // namespace KestryCore
