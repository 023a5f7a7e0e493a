#include "CloudConfiguration.h"

#include <gtest/gtest.h>

#include <map>

namespace KestryCore {
namespace {

class CloudConfigurationTest : public testing::Test {
protected:
    [[nodiscard]] CloudConfiguration read(const std::optional<std::string>& container = {}) const
    {
        return CloudConfiguration::read(
            [this](std::string_view key) {
                const auto found = keys.find(std::string(key));
                return found != keys.end() ? found->second : InfoValue();
            },
            container);
    }
    [[nodiscard]] bool isConfiguredBy(const InfoValue& value)
    {
        keys["KestryCloudKitEnabled"] = value;
        return read().isConfigured;
    }
    [[nodiscard]] std::optional<CloudSyncEnvironment> environmentOf(const InfoValue& value)
    {
        keys["KestryCloudKitEnvironment"] = value;
        return read().environment;
    }

    std::map<std::string, InfoValue> keys;
};

TEST_F(CloudConfigurationTest, ABuildThatSaysNothingMayUseNoStoreAndHasNoEnvironment)
{
    const CloudConfiguration configuration = read();
    EXPECT_FALSE(configuration.isConfigured);
    EXPECT_EQ(configuration.environment, std::nullopt);
    EXPECT_EQ(configuration.containerIdentifier, "org.kestry.Kestry");
}

TEST_F(CloudConfigurationTest, TheContainerIsThatOfTheCallerElseOfTheBuild)
{
    keys["KestryCloudContainerIdentifier"] = std::string("https://cloud.example/ledger");
    EXPECT_EQ(read().containerIdentifier, "https://cloud.example/ledger");
    EXPECT_EQ(read("sqlite:/home/cloud").containerIdentifier, "sqlite:/home/cloud");
    keys["KestryCloudContainerIdentifier"] = true;
    EXPECT_EQ(read().containerIdentifier, "org.kestry.Kestry");
}

TEST_F(CloudConfigurationTest, ABooleanOrAWordForYesAllowsTheStore)
{
    EXPECT_TRUE(isConfiguredBy(true));
    for (const char* const word : {"yes", "YES", "true", "True", "1"}) {
        EXPECT_TRUE(isConfiguredBy(std::string(word))) << word;
    }
}

TEST_F(CloudConfigurationTest, AnythingElseDoesNot)
{
    EXPECT_FALSE(isConfiguredBy(false));
    EXPECT_FALSE(isConfiguredBy(std::monostate()));
    for (const char* const word : {"", "no", "0", "on", " yes", "yes ", "trueish", "11"}) {
        EXPECT_FALSE(isConfiguredBy(std::string(word))) << word;
    }
}

TEST_F(CloudConfigurationTest, TheEnvironmentIsSpeltExactly)
{
    EXPECT_EQ(environmentOf(std::string("Development")), CloudSyncEnvironment::development);
    EXPECT_EQ(environmentOf(std::string("Production")), CloudSyncEnvironment::production);
    for (const char* const word : {"", "development", "PRODUCTION", "Production "}) {
        EXPECT_EQ(environmentOf(std::string(word)), std::nullopt) << word;
    }
    EXPECT_EQ(environmentOf(true), std::nullopt);
}

} // namespace
} // namespace KestryCore
