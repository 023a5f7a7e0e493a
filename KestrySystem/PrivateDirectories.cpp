#include "PrivateDirectories.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <optional>

#include "FileSystem.h"

namespace KestryCore {

namespace {

std::optional<std::string> ofEnvironment()
{
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    return runtime != nullptr && *runtime == '/' ? std::optional<std::string>(runtime)
                                                 : std::nullopt;
}

std::string ofLogIn()
{
    return "/run/user/" + std::to_string(getuid());
}

std::string belowTmp()
{
    return "/tmp/kestry-" + std::to_string(getuid());
}

/// The user's cache directory; none for a user without a home. `$XDG_CACHE_HOME` would lead the
/// processes of one user to different places.
std::optional<std::string> cacheDirectory()
{
    const passwd* user = getpwuid(getuid());
    const char* home = user != nullptr ? user->pw_dir : std::getenv("HOME");
    return home != nullptr && *home == '/' ? std::optional(joinPath(home, ".cache")) : std::nullopt;
}

std::optional<std::string> belowCache()
{
    const auto cache = cacheDirectory();
    return cache ? std::optional(joinPath(*cache, "kestry")) : std::nullopt;
}

/// Whether a folder cannot be made here now nor later. Any other failure may pass, and a place
/// left out meanwhile would be one that another process has.
bool isSettled(int code)
{
    constexpr std::array codes{EACCES, EPERM, EROFS, ENOENT, ENOTDIR, ELOOP, EEXIST};
    return std::ranges::find(codes, code) != codes.end();
}

/// Makes a folder where there is none. Whether there is one then that is private.
bool isPrivateOnceMade(const std::string& path)
{
    if (mkdir(path.c_str(), S_IRWXU) != 0 && !isSettled(errno)) {
        throw fileError(path, "created", errno);
    }
    return isPrivateDirectory(path);
}

std::optional<std::string> madeBelowTmp()
{
    return isPrivateOnceMade(belowTmp()) ? std::optional(belowTmp()) : std::nullopt;
}

std::optional<std::string> madeBelowCache()
{
    const auto cache = cacheDirectory();
    if (!cache) {
        return std::nullopt;
    }
    (void)isPrivateOnceMade(*cache); // it need not be, what is made in it must
    const auto path = belowCache();
    return isPrivateOnceMade(*path) ? path : std::nullopt;
}

void addPrivate(std::vector<std::string>& places, const std::optional<std::string>& path)
{
    if (path && std::ranges::find(places, *path) == places.end() && isPrivateDirectory(*path)) {
        places.push_back(*path);
    }
}

bool isThere(const std::string& path)
{
    struct stat found { };
    return lstat(path.c_str(), &found) == 0;
}

} // namespace

bool isPrivateDirectory(const std::string& path)
{
    struct stat found { };
    return lstat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == getuid()
        && (found.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool closeToOthers(const std::string& path)
{
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    const int handle = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (handle < 0) {
        return false;
    }
    struct stat found { };
    const bool isOpen =
        fstat(handle, &found) == 0 && found.st_uid == getuid() && (found.st_mode & others) != 0;
    // Some file systems know no modes of their own, and take any without a word.
    const bool isClosed = isOpen && fchmod(handle, found.st_mode & S_IRWXU) == 0
        && fstat(handle, &found) == 0 && (found.st_mode & others) == 0;
    close(handle);
    return isClosed;
}

std::string closedText(const std::string& directory)
{
    return "Other users of this computer had access to the data directory " + directory
        + ". It has been closed to them.";
}

std::vector<std::string> meetingPlaces()
{
    std::vector<std::string> places;
    addPrivate(places, ofEnvironment());
    addPrivate(places, ofLogIn());
    addPrivate(places, belowTmp());
    if (!isPrivateDirectory(belowTmp()) && (places.empty() || isThere(belowTmp()))) {
        addPrivate(places, belowCache());
    }
    return places;
}

ListeningPlace listeningPlace()
{
    std::vector<std::string> places;
    addPrivate(places, ofEnvironment());
    addPrivate(places, ofLogIn());
    if (!places.empty()) {
        return {places.front(), {}};
    }
    if (const auto made = madeBelowTmp()) {
        return {*made, {}};
    }
    if (const auto made = madeBelowCache()) {
        return {*made,
            belowTmp() + " can't be had for you alone, so " + *made + " is used in its place."};
    }
    throw LedgerError(belowTmp() + " doesn't belong to you alone, so it can't be used.");
}

std::vector<std::string> lastingPlaces()
{
    std::vector<std::string> places;
    addPrivate(places, ofLogIn());
    for (const auto& made : {madeBelowTmp(), madeBelowCache()}) {
        if (made) {
            places.push_back(*made);
        }
    }
    return places;
}

} // namespace KestryCore
