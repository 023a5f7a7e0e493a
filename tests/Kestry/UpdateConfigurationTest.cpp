#include "UpdateConfiguration.h"

#include <gtest/gtest.h>

#include <map>

#include "ApplicationInfo.h"
#include "Base64.h"

namespace Kestry {
namespace {

class UpdateConfigurationTest : public ::testing::Test {
protected:
    [[nodiscard]] UpdateConfiguration read() const
    {
        return UpdateConfiguration::read([this](std::string_view key) {
            const auto found = keys.find(std::string(key));
            return found == keys.end() ? KestryCore::InfoValue() : found->second;
        });
    }
    [[nodiscard]] bool hasFeed() const { return read().feed.has_value(); }

    const std::string keyBytes = std::string("\xFF\0 and thirty more of some bytes.", 32);
    std::map<std::string, KestryCore::InfoValue> keys{{"KestryUpdatesEnabled", true},
        {"SUFeedURL", std::string("https://updates.example/feed.xml")},
        {"SUPublicEDKey", KestryCore::encodeBase64(keyBytes)}};
};

TEST_F(UpdateConfigurationTest, AWholeFeedIsTakenAsTheBuildHasIt)
{
    const UpdateConfiguration configuration = read();
    EXPECT_FALSE(configuration.isFromStore);
    ASSERT_TRUE(configuration.feed);
    EXPECT_EQ(configuration.feed->url, "https://updates.example/feed.xml");
    const auto& key = configuration.feed->publicKey;
    EXPECT_EQ(std::string(key.begin(), key.end()), keyBytes);
}

TEST_F(UpdateConfigurationTest, ABuildWithoutTheKeysHasNoUpdates)
{
    keys.clear();
    EXPECT_EQ(read(), UpdateConfiguration());
}

TEST_F(UpdateConfigurationTest, UpdatesAreSwitchedOnByTheBooleanTrueAlone)
{
    for (const KestryCore::InfoValue& value :
        {KestryCore::InfoValue(), KestryCore::InfoValue(false),
            KestryCore::InfoValue(std::string("true")), KestryCore::InfoValue(std::string("1"))}) {
        keys["KestryUpdatesEnabled"] = value;
        EXPECT_FALSE(hasFeed());
    }
}

TEST_F(UpdateConfigurationTest, TheFileOfTheBuildKeepsTheBooleanApartFromItsWord)
{
    const QString key = QString::fromStdString(KestryCore::encodeBase64(keyBytes));
    QJsonObject file{{"KestryUpdatesEnabled", true},
        {"SUFeedURL", "https://updates.example/feed.xml"}, {"SUPublicEDKey", key}};
    const auto hasUpdates = [&file] {
        const ApplicationInfo info(file);
        return UpdateConfiguration::read([&](std::string_view name) {
            return info.value(name);
        }).feed.has_value();
    };
    EXPECT_TRUE(hasUpdates());
    file["KestryUpdatesEnabled"] = "true";
    EXPECT_FALSE(hasUpdates());
}

TEST_F(UpdateConfigurationTest, EachOfTheValuesIsNeeded)
{
    for (const std::string missing : {"KestryUpdatesEnabled", "SUFeedURL", "SUPublicEDKey"}) {
        const auto whole = keys;
        keys.erase(missing);
        EXPECT_FALSE(hasFeed()) << missing;
        keys = whole;
    }
}

TEST_F(UpdateConfigurationTest, TheFeedMustBeAnHttpsURLWithAHost)
{
    for (const std::string url : {"", "http://updates.example/feed.xml", "https:///feed.xml",
             "https:feed.xml", "https://", "updates.example/feed.xml", "file:///feed.xml",
             "https://updates example/feed.xml", "https://updates.example:port/"}) {
        keys["SUFeedURL"] = url;
        EXPECT_FALSE(hasFeed()) << url;
    }
    keys["SUFeedURL"] = true;
    EXPECT_FALSE(hasFeed());
}

TEST_F(UpdateConfigurationTest, TheSchemeMayBeWrittenInUpperCase)
{
    keys["SUFeedURL"] = std::string("HTTPS://updates.example/feed.xml");
    EXPECT_TRUE(hasFeed());
}

TEST_F(UpdateConfigurationTest, TheKeyMustBeThirtyTwoBytesInBase64)
{
    for (const std::string& key :
        {KestryCore::encodeBase64(keyBytes.substr(1)), KestryCore::encodeBase64(keyBytes + "!"),
            KestryCore::encodeBase64(keyBytes) + "\n", keyBytes, std::string()}) {
        keys["SUPublicEDKey"] = key;
        EXPECT_FALSE(hasFeed()) << key;
    }
}

TEST_F(UpdateConfigurationTest, OnlyTheWordOfTheStoreLeavesUpdatesToIt)
{
    keys["KestryDistribution"] = std::string("appStore");
    EXPECT_TRUE(read().isFromStore);
    for (const KestryCore::InfoValue& value : {KestryCore::InfoValue(std::string("appstore")),
             KestryCore::InfoValue(std::string()), KestryCore::InfoValue(true)}) {
        keys["KestryDistribution"] = value;
        EXPECT_FALSE(read().isFromStore);
    }
}

} // namespace
} // namespace Kestry
