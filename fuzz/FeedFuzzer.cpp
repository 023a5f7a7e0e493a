#include <cstddef>
#include <cstdint>
#include <string>

#include "AppcastFeed.h"
#include "LedgerError.h"
#include "Require.h"

// Any bytes that a server of updates answers either are refused in one sentence or are items that
// can be gone by: of each, the version is fit to be a name, the links are secure and the rest can
// be shown.

namespace {

using namespace Kestry;
using KestryCore::require;

void requireSound(const AppcastItem& item)
{
    constexpr std::size_t longestShown = 200;
    const std::string& name = item.version.text();
    require(UpdateVersion::parse(name) == item.version, "a version reads as it is written");
    require(name.find('/') == std::string::npos && name.find("..") == std::string::npos,
        "a version is fit to be a name");
    require(item.url.starts_with("https://"), "an archive comes over a secure connection");
    require(
        item.releaseNotes.empty() || item.releaseNotes.starts_with("https://"), "so do the notes");
    require(item.bytes > 0, "an archive has bytes");
    require(!item.shortVersion.empty() && item.shortVersion.size() <= longestShown
            && item.shortVersion.find('\n') == std::string::npos,
        "a version can be shown in a line");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    try {
        for (const AppcastItem& item : readAppcast(bytes)) {
            requireSound(item);
        }
    } catch (const KestryCore::LedgerError& refusal) {
        require(refusal.what() == std::string("The list of new versions could not be read."),
            "a refusal is one sentence");
    }
    return 0;
}
