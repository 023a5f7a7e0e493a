#include "UpdateContents.h"

#include <utility>

#include "JsonReader.h"

namespace Kestry {

using namespace KestryCore;

namespace {

constexpr std::uint64_t mostInfoBytes = std::uint64_t{64} * 1024;

/// The version that the tree says it is; nullopt when it does not.
std::optional<UpdateVersion> versionIn(FileSystem& files, const std::string& directory)
{
    const std::string path = joinPath(directory, "share/kestry/Info.json");
    const std::optional<FileStatus> status = files.status(path);
    if (!status || !status->isRegular || status->size > mostInfoBytes) {
        return std::nullopt;
    }
    std::string bytes = readFile(files, path);
    try {
        const JsonDocument document(std::move(bytes));
        const JsonValue root = document.root();
        JsonObject info(root);
        return UpdateVersion::parse(info.required("CFBundleShortVersionString").text());
    } catch (const LedgerError&) {
        return std::nullopt; // Its words would be about the file, which people do not know.
    }
}

[[noreturn]] void refuseContents(const std::string& reason)
{
    throw LedgerError("The new version was refused: " + reason);
}

} // namespace

void requireAnnouncedVersion(FileSystem& files, const std::string& directory,
    const UnpackedTree& tree, const UpdateVersion& announced, const UpdateVersion& running)
{
    const std::optional<UpdateVersion> version = versionIn(files, directory);
    if (!version || !tree.programs.contains("bin/kestry")) {
        refuseContents("its archive holds no Kestry.");
    }
    if (*version != announced) {
        refuseContents(
            "it was announced as " + announced.text() + ", and it is " + version->text() + ".");
    }
    if (*version <= running) {
        refuseContents(version->text() + " isn't newer than " + running.text() + ".");
    }
}

} // namespace Kestry
