#include "UpdateRequest.h"

#include <unistd.h>

#include <cstdint>

#include "DurableFiles.h"
#include "JsonWriter.h"
#include "KestryUrl.h"
#include "Text.h"

namespace Kestry {

using KestryCore::Uuid;

namespace {

constexpr std::uint64_t mostRequestBytes = 128;

} // namespace

std::optional<Uuid> updateToken(const std::vector<std::string>& urls)
{
    for (const std::string& text : urls) {
        const KestryUrl url(text);
        if (url.scheme() != "kestry" || url.host() != "update") {
            continue;
        }
        const auto token = url.queryItem("token");
        return token ? Uuid::parse(*token) : std::nullopt;
    }
    return std::nullopt;
}

UpdateRequest::UpdateRequest(KestryCore::FileSystem& files, const std::string& dataDirectory)
    : files_(files), path_(KestryCore::joinPath(dataDirectory, "update-request"))
{
}

bool UpdateRequest::holds(const Uuid& token) const
{
    try {
        const KestryCore::OpenFile file(files_, path_);
        if (files_.size(file.handle()) > mostRequestBytes) {
            return false;
        }
        const std::string content = KestryCore::readToEnd(files_, file.handle());
        return KestryCore::isWellFormedUtf8(content)
            && Uuid::parse(KestryCore::trimmed(content)) == token;
    } catch (const KestryCore::LedgerError&) {
        return false;
    }
}

void UpdateRequest::remove() const
{
    KestryCore::DurableFiles(files_).remove(path_);
}

void acknowledgeUpdate(KestryCore::FileSystem& files, const std::string& dataDirectory,
    const Uuid& token, const std::string& bundlePath)
{
    KestryCore::JsonWriter json;
    json.beginObject();
    json.member("token", token);
    json.member("pid", static_cast<std::int64_t>(getpid()));
    json.member("bundlePath", bundlePath);
    json.endObject();
    KestryCore::DurableFiles durableFiles(files);
    durableFiles.createDirectories(dataDirectory);
    durableFiles.writePrivate(
        KestryCore::joinPath(dataDirectory, "update-ready.json"), json.take());
}

} // namespace Kestry
