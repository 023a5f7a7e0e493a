#include "UpdateConfiguration.h"

#include <QUrl>

#include <algorithm>

#include "Base64.h"

namespace Kestry {
namespace {

std::string textOf(const KestryCore::InfoValue& value)
{
    const auto* const text = std::get_if<std::string>(&value);
    return text != nullptr ? *text : std::string();
}

bool isTrue(const KestryCore::InfoValue& value)
{
    const bool* const flag = std::get_if<bool>(&value);
    return flag != nullptr && *flag;
}

bool isFeedURL(const std::string& text)
{
    const QUrl url(QString::fromStdString(text), QUrl::StrictMode);
    return url.isValid() && url.scheme().toLower() == "https" && !url.host().isEmpty();
}

std::optional<UpdateFeed> feedOf(const KestryCore::InfoKeys& keys)
{
    UpdateFeed feed{.url = textOf(keys("SUFeedURL"))};
    const auto key = KestryCore::decodeBase64(textOf(keys("SUPublicEDKey")));
    if (!isFeedURL(feed.url) || !key || key->size() != feed.publicKey.size()) {
        return std::nullopt;
    }
    std::ranges::transform(
        *key, feed.publicKey.begin(), [](char byte) { return static_cast<std::uint8_t>(byte); });
    return feed;
}

} // namespace

UpdateConfiguration UpdateConfiguration::read(const KestryCore::InfoKeys& keys)
{
    UpdateConfiguration configuration;
    configuration.isFromStore = textOf(keys("KestryDistribution")) == "appStore";
    if (isTrue(keys("KestryUpdatesEnabled"))) {
        configuration.feed = feedOf(keys);
    }
    return configuration;
}

} // namespace Kestry
