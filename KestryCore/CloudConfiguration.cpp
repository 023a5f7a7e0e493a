#include "CloudConfiguration.h"

#include <algorithm>
#include <array>

namespace KestryCore {

namespace {

constexpr std::string_view builtInContainer = "org.kestry.Kestry";

std::optional<std::string> textOf(const InfoValue& value)
{
    const auto* const text = std::get_if<std::string>(&value);
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

char lowerCase(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool isYes(const InfoValue& value)
{
    if (const bool* const flag = std::get_if<bool>(&value)) {
        return *flag;
    }
    constexpr std::array<std::string_view, 3> words{"yes", "true", "1"};
    std::string text = textOf(value).value_or("");
    std::ranges::transform(text, text.begin(), lowerCase);
    return std::ranges::find(words, text) != words.end();
}

std::optional<CloudSyncEnvironment> environmentOf(const InfoValue& value)
{
    const std::string text = textOf(value).value_or("");
    for (const auto environment :
        {CloudSyncEnvironment::development, CloudSyncEnvironment::production}) {
        if (text == environmentName(environment)) {
            return environment;
        }
    }
    return std::nullopt;
}

} // namespace

CloudConfiguration CloudConfiguration::read(
    const InfoKeys& keys, const std::optional<std::string>& containerIdentifier)
{
    CloudConfiguration configuration;
    const auto ofTheBuild = textOf(keys("KestryCloudContainerIdentifier"));
    configuration.containerIdentifier =
        containerIdentifier.value_or(ofTheBuild.value_or(std::string(builtInContainer)));
    configuration.isConfigured = isYes(keys("KestryCloudKitEnabled"));
    configuration.environment = environmentOf(keys("KestryCloudKitEnvironment"));
    return configuration;
}

} // namespace KestryCore
