#include "PosixFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <utility>

namespace KestryCore {

namespace {

/// Repeats a call for as long as a signal interrupts it.
template <class Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Repeats a call for as long as a signal interrupts it. The first try may have happened all the
/// same, on a network file system for one: then the error `done` means that it did.
template <class Call>
int uninterruptedOnce(int done, Call call)
{
    int result = call();
    bool wasInterrupted = false;
    while (result < 0 && errno == EINTR) {
        wasInterrupted = true;
        result = call();
    }
    return result < 0 && wasInterrupted && errno == done ? 0 : result;
}

/// Opens a file without blocking, so that a pipe under its name cannot hold up the program. Whoever
/// has a lease on it is asked by the kernel to give it up and gets a moment to do so.
int openUnblocked(const char* path, int flags)
{
    constexpr timespec pause{0, 10'000'000};
    constexpr int mostTries = 100;
    int handle = -1;
    for (int tries = 0; tries < mostTries; ++tries) {
        handle = uninterrupted([&] { return ::open(path, flags); });
        if (handle >= 0 || errno != EWOULDBLOCK) {
            break;
        }
        nanosleep(&pause, nullptr);
        errno = EWOULDBLOCK;
    }
    return handle;
}

int openFlags(FileUse use)
{
    switch (use) {
    case FileUse::read:
        return O_RDONLY | O_CLOEXEC | O_NONBLOCK;
    case FileUse::create:
    case FileUse::createOrdinary:
        return O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    case FileUse::directory:
        return O_RDONLY | O_CLOEXEC | O_DIRECTORY;
    }
    return O_RDONLY;
}

/// The failure of a call on an open file, in words. The kernel is asked for the name only now, so
/// that calls that succeed need not know it; without an answer it is "The file".
FileError handleError(FileSystem::Handle handle, std::string_view action, int code)
{
    std::array<char, PATH_MAX> buffer{};
    const std::string entry = "/proc/self/fd/" + std::to_string(handle);
    const ssize_t length = readlink(entry.c_str(), buffer.data(), buffer.size());
    std::string_view path(buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    // What follows the name of a file that was replaced or removed since it was opened.
    constexpr std::string_view deleted = " (deleted)";
    if (path.ends_with(deleted)) {
        path.remove_suffix(deleted.size());
    }
    return fileError(path.starts_with('/') ? std::string(path) : "The file", action, code);
}

/// Closes the file when it is another kind, or cannot be looked at.
void requireRegular(const std::string& path, FileSystem::Handle handle)
{
    struct stat found { };
    const int code = uninterrupted([&] { return fstat(handle, &found); }) == 0 ? 0 : errno;
    if (code == 0 && S_ISREG(found.st_mode)) {
        return;
    }
    ::close(handle);
    if (code != 0) {
        throw fileError(path, "read", code);
    }
    const std::string name = path.substr(path.find_last_of('/') + 1);
    throw FileError(name + " could not be read: it isn't a regular file.", EINVAL);
}

std::string homeDirectory()
{
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return home;
    }
    const passwd* user = getpwuid(getuid());
    if (user == nullptr || user->pw_dir == nullptr) {
        throw LedgerError("The user has no home directory.");
    }
    return user->pw_dir;
}

} // namespace

std::string PosixFileSystem::applicationSupportDirectory() const
{
    const char* data = std::getenv("XDG_DATA_HOME");
    if (data != nullptr && *data == '/') {
        return data;
    }
    return joinPath(homeDirectory(), ".local/share");
}

std::optional<FileStatus> PosixFileSystem::status(const std::string& path)
{
    struct stat found { };
    if (uninterrupted([&] { return lstat(path.c_str(), &found); }) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) {
            return std::nullopt;
        }
        throw fileError(path, "looked at", errno);
    }
    return FileStatus{S_ISREG(found.st_mode), S_ISDIR(found.st_mode), S_ISLNK(found.st_mode),
        static_cast<std::uint64_t>(found.st_size), found.st_nlink};
}

std::vector<std::string> PosixFileSystem::list(const std::string& directory)
{
    DIR* stream = opendir(directory.c_str());
    while (stream == nullptr && errno == EINTR) {
        stream = opendir(directory.c_str());
    }
    if (stream == nullptr) {
        throw fileError(directory, "listed", errno);
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* entry = readdir(stream)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
    }
    const int code = errno;
    closedir(stream);
    if (code != 0) {
        throw fileError(directory, "listed", code);
    }
    std::ranges::sort(names);
    return names;
}

FileSystem::Handle PosixFileSystem::open(const std::string& path, FileUse use)
{
    const int flags = openFlags(use);
    if (use == FileUse::read) {
        const int handle = openUnblocked(path.c_str(), flags);
        if (handle < 0) {
            throw fileError(path, "read", errno);
        }
        requireRegular(path, handle);
        return handle;
    }
    const mode_t mode = use == FileUse::createOrdinary ? 0666 : 0600;
    const int handle = uninterrupted([&] { return ::open(path.c_str(), flags, mode); });
    if (handle < 0) {
        throw fileError(path, use == FileUse::directory ? "read" : "written", errno);
    }
    return handle;
}

std::uint64_t PosixFileSystem::size(Handle handle)
{
    struct stat found { };
    if (uninterrupted([&] { return fstat(handle, &found); }) != 0) {
        throw handleError(handle, "looked at", errno);
    }
    return static_cast<std::uint64_t>(found.st_size);
}

std::size_t PosixFileSystem::read(Handle handle, char* buffer, std::size_t capacity)
{
    const ssize_t count = uninterrupted([&] { return ::read(handle, buffer, capacity); });
    if (count < 0) {
        throw handleError(handle, "read", errno);
    }
    return static_cast<std::size_t>(count);
}

FileIdentity PosixFileSystem::identity(Handle handle)
{
    struct stat found { };
    if (uninterrupted([&] { return fstat(handle, &found); }) != 0) {
        throw handleError(handle, "looked at", errno);
    }
    return {found.st_dev, found.st_ino, found.st_mtim.tv_sec, found.st_mtim.tv_nsec};
}

std::size_t PosixFileSystem::write(Handle handle, std::span<const std::string_view> pieces)
{
    std::array<iovec, 256> vectors{};
    const std::size_t vectorCount = std::min(pieces.size(), vectors.size());
    for (std::size_t index = 0; index < vectorCount; ++index) {
        // The call does not write through the pointer; the type cannot say so.
        vectors[index] = {const_cast<char*>(pieces[index].data()), pieces[index].size()};
    }
    const ssize_t count = uninterrupted(
        [&] { return writev(handle, vectors.data(), static_cast<int>(vectorCount)); });
    if (count < 0) {
        throw handleError(handle, "written", errno);
    }
    return static_cast<std::size_t>(count);
}

void PosixFileSystem::sync(Handle handle)
{
    if (uninterrupted([&] { return fsync(handle); }) != 0) {
        throw handleError(handle, "written to the disk", errno);
    }
}

void PosixFileSystem::close(Handle handle)
{
    // Not repeated when interrupted: Linux has let go of the handle all the same. So the name
    // cannot be found any more, and finding it before would cost every call.
    if (::close(handle) != 0 && errno != EINTR) {
        throw fileError("The file", "closed", errno);
    }
}

void PosixFileSystem::rename(const std::string& from, const std::string& to)
{
    const auto call = [&] { return ::rename(from.c_str(), to.c_str()); };
    if (uninterruptedOnce(ENOENT, call) != 0) {
        throw fileError(to, "replaced", errno);
    }
}

void PosixFileSystem::link(Handle handle, const std::string& to)
{
    const std::string file = "/proc/self/fd/" + std::to_string(handle);
    const auto call = [&] {
        return linkat(AT_FDCWD, file.c_str(), AT_FDCWD, to.c_str(), AT_SYMLINK_FOLLOW);
    };
    if (uninterruptedOnce(EEXIST, call) != 0) {
        throw fileError(to, "linked", errno);
    }
}

void PosixFileSystem::remove(const std::string& path)
{
    if (uninterruptedOnce(ENOENT, [&] { return unlink(path.c_str()); }) != 0) {
        throw fileError(path, "removed", errno);
    }
}

bool PosixFileSystem::createDirectory(const std::string& path)
{
    constexpr mode_t ownersAlone = 0700;
    if (uninterruptedOnce(EEXIST, [&] { return mkdir(path.c_str(), ownersAlone); }) != 0) {
        if (errno == EEXIST) {
            return false;
        }
        throw fileError(path, "created", errno);
    }
    struct stat made { };
    const bool isUsable =
        lstat(path.c_str(), &made) == 0 && (made.st_mode & ownersAlone) == ownersAlone;
    // A mask of the process that takes rights from the owner would make it a directory for nobody.
    if (!isUsable && chmod(path.c_str(), ownersAlone) != 0) {
        throw fileError(path, "given its access", errno);
    }
    return true;
}

} // namespace KestryCore
