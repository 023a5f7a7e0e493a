#pragma once

#include <string>
#include <vector>

#include "Base64.h"

namespace Kestry {

/// What a feed says of one version; an empty text leaves it out.
struct FeedItem {
    std::string version = "1.3.0";
    std::string shortVersion{};
    std::string minimumSystem{};
    std::string bytes = "1000";
    std::string signature = KestryCore::encodeBase64(std::string(64, 's'));
    std::string url = "https://example.org/kestry.tar.xz";
    std::string system{};
    std::string notes = "https://example.org/notes";
    std::string more{}; ///< Markup in the item.
};

/// A feed as servers have it.
inline std::string appcast(const std::vector<FeedItem>& items)
{
    const auto attribute = [](const std::string& name, const std::string& value) {
        return value.empty() ? "" : " " + name + "=\"" + value + "\"";
    };
    const auto element = [](const std::string& name, const std::string& value) {
        return value.empty() ? "" : "<s:" + name + ">" + value + "</s:" + name + ">";
    };
    std::string feed = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                       "<rss version=\"2.0\" xmlns:s=\"https://example.org/ns\"><channel>\n"
                       "<title>Kestry</title>\n";
    for (const FeedItem& item : items) {
        feed += "<item><title>News</title>" + element("minimumSystemVersion", item.minimumSystem)
            + element("releaseNotesLink", item.notes) + "<enclosure" + attribute("url", item.url)
            + attribute("length", item.bytes) + attribute("s:version", item.version)
            + attribute("s:shortVersionString", item.shortVersion)
            + attribute("s:edSignature", item.signature) + attribute("s:os", item.system)
            + " type=\"application/octet-stream\"/>" + item.more + "</item>\n";
    }
    return feed + "</channel></rss>\n";
}

} // namespace Kestry
