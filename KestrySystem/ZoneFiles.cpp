#include "ZoneFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace KestryCore {

namespace {

namespace fs = std::filesystem;

/// The same zones once more, with leap seconds in one of them: no names of zones.
constexpr std::array<std::string_view, 2> otherCollections{"posix/", "right/"};

bool isNamePart(std::string_view part)
{
    constexpr std::string_view letters =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_+-";
    return !part.empty() && part.find_first_not_of(letters) == std::string_view::npos;
}

/// Whether a file of this name may be a zone's. Dots are in none, and so in no way out of the
/// folder.
bool isZoneName(std::string_view name)
{
    // These two lead to a zone without being the name of one.
    if (name == "localtime" || name == "posixrules"
        || std::ranges::any_of(
            otherCollections, [&](std::string_view each) { return name.starts_with(each); })) {
        return false;
    }
    while (true) {
        const std::size_t slash = name.find('/');
        if (!isNamePart(name.substr(0, slash))) {
            return false;
        }
        if (slash == std::string_view::npos) {
            return true;
        }
        name.remove_prefix(slash + 1);
    }
}

/// The first bytes of a file, no more than there may be; none when it is no regular file.
std::optional<std::string> readStart(const std::string& path, std::size_t most)
{
    // Opening a pipe would wait for its writer.
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return std::nullopt;
    }
    struct stat status { };
    std::string bytes;
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        bytes.resize(most);
        std::size_t filled = 0;
        ssize_t count = 0;
        do {
            count = ::read(descriptor, bytes.data() + filled, most - filled);
            filled += count > 0 ? static_cast<std::size_t>(count) : 0;
        } while (filled < most && (count > 0 || (count < 0 && errno == EINTR)));
        bytes.resize(filled);
    }
    close(descriptor);
    return bytes;
}

bool isZoneFile(std::string_view content)
{
    return content.starts_with("TZif");
}

fs::path withoutLinks(const std::string& path)
{
    std::error_code failure;
    fs::path result = fs::canonical(path, failure);
    return failure ? fs::path() : result;
}

} // namespace

ZoneFiles ZoneFiles::ofSystem(const EnvironmentLookup& environment)
{
    const auto named = environment("TZDIR");
    return ZoneFiles(named && !named->empty() ? *named : "/usr/share/zoneinfo");
}

std::string ZoneFiles::path(const std::string& name) const
{
    return folder_ + "/" + name;
}

std::optional<std::string> ZoneFiles::read(const std::string& name) const
{
    return isZoneName(name) ? readZoneFile(path(name)) : std::nullopt;
}

std::vector<std::string> ZoneFiles::names() const
{
    std::vector<std::string> names;
    std::error_code failure;
    fs::recursive_directory_iterator file(
        folder_, fs::directory_options::skip_permission_denied, failure);
    for (; !failure && file != fs::recursive_directory_iterator(); file.increment(failure)) {
        const std::string name = file->path().string().substr(folder_.size() + 1);
        std::error_code ignored;
        if (file->is_directory(ignored)) {
            if (!isZoneName(name + "/x")) {
                file.disable_recursion_pending();
            }
        } else if (isZoneName(name) && isZoneFile(readStart(file->path(), 4).value_or(""))) {
            names.push_back(name);
        }
    }
    std::ranges::sort(names);
    return names;
}

std::optional<std::string> ZoneFiles::nameOf(const std::string& path) const
{
    const std::string file = withoutLinks(path).string();
    const std::string folder = withoutLinks(folder_).string() + "/";
    if (!file.starts_with(folder)) {
        return std::nullopt;
    }
    std::string name = file.substr(folder.size());
    for (const std::string_view collection : otherCollections) {
        if (name.starts_with(collection)) {
            name.erase(0, collection.size());
        }
    }
    return read(name) ? std::optional(name) : std::nullopt;
}

std::optional<std::string> ZoneFiles::nameOfContent(std::string_view content) const
{
    for (const std::string& name : names()) {
        std::error_code failure;
        if (fs::file_size(path(name), failure) == content.size() && read(name) == content) {
            return name;
        }
    }
    return std::nullopt;
}

std::optional<std::string> readZoneFile(const std::string& path)
{
    // A hundred times as long as any.
    constexpr std::size_t mostBytes = std::size_t{1} << 19;
    auto content = readStart(path, mostBytes);
    return content && isZoneFile(*content) ? std::move(content) : std::nullopt;
}

} // namespace KestryCore
