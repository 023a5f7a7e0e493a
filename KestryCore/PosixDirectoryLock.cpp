#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "PosixFileSystem.h"

namespace KestryCore {

namespace {

/// An open file, or directory, whose kernel lock falls with it.
class LockedFile final : public DirectoryLock {
public:
    explicit LockedFile(int handle) : handle_(handle) { }
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;
    ~LockedFile() override { ::close(handle_); }

private:
    int handle_;
};

/// The command of a process, as in "kestry".
std::string commandName(const std::string& process)
{
    std::ifstream file("/proc/" + process + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

/// Who holds an flock on an inode, looked up in the kernel's table of locks. Only the inode is
/// compared: the device numbers of that table are not those of stat on every file system.
std::string lockHolder(ino_t inode)
{
    std::ifstream table("/proc/locks");
    std::string line;
    while (std::getline(table, line)) {
        std::istringstream words(line);
        std::string number;
        std::string type;
        std::string mode;
        std::string access;
        std::string process;
        std::string place;
        words >> number >> type >> mode >> access >> process >> place;
        const std::string name = commandName(process);
        if (type == "FLOCK" && place.ends_with(':' + std::to_string(inode)) && !name.empty()) {
            return name + " (process " + process + ")";
        }
    }
    return {};
}

/// Whether a lock was refused because there are none here: network file systems may know none, or
/// none on directories. Any other failure may pass, and a stand-in taken meanwhile would let a
/// second writer in beside one that holds the real lock.
bool meansNoLocks(int code)
{
    constexpr std::array codes{EOPNOTSUPP, ENOSYS, ENOLCK, EINVAL, EBADF};
    return std::ranges::find(codes, code) != codes.end();
}

/// Tells one file from others; closes it when it cannot be looked at.
struct stat lockedStatus(const std::string& path, int handle)
{
    struct stat found { };
    if (fstat(handle, &found) != 0) {
        const int code = errno;
        ::close(handle);
        throw fileError(path, "locked", code);
    }
    return found;
}

LockAttempt lockOpenFile(const std::string& path, int handle)
{
    auto file = std::make_unique<LockedFile>(handle);
    if (flock(handle, LOCK_EX | LOCK_NB) == 0) {
        return {std::move(file), {}};
    }
    if (errno != EWOULDBLOCK) {
        throw fileError(path, "locked", errno);
    }
    struct stat found { };
    fstat(handle, &found);
    return {nullptr, lockHolder(found.st_ino)};
}

/// Whether a folder is there that belongs to this user alone.
bool isPrivateDirectory(const std::string& path)
{
    struct stat found { };
    return lstat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == getuid()
        && (found.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

/// A folder of this user's own, at the same place for every process of theirs.
std::string ownTemporaryDirectory()
{
    std::string own = "/tmp/kestry-" + std::to_string(getuid());
    if (mkdir(own.c_str(), 0700) != 0 && errno != EEXIST) {
        throw fileError(own, "created", errno);
    }
    if (!isPrivateDirectory(own)) {
        throw LedgerError(own + " doesn't belong to you alone, so it can't be used.");
    }
    return own;
}

/// The lock on a file that stands in for a directory. The folder around it is locked too, for
/// everybody together: that is how whatever clears old files out of /tmp knows what to leave.
class StandInLock final : public DirectoryLock {
public:
    StandInLock(std::unique_ptr<DirectoryLock> file, const std::string& folder)
        : folder_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
          file_(std::move(file))
    {
        if (folder_ >= 0) {
            flock(folder_, LOCK_SH | LOCK_NB);
        }
    }
    StandInLock(const StandInLock&) = delete;
    StandInLock& operator=(const StandInLock&) = delete;
    ~StandInLock() override
    {
        if (folder_ >= 0) {
            ::close(folder_);
        }
    }

private:
    int folder_; // Negative where it could not be opened.
    std::unique_ptr<DirectoryLock> file_;
};

bool isStillAt(const std::string& path, const struct stat& file)
{
    struct stat found { };
    return lstat(path.c_str(), &found) == 0 && found.st_ino == file.st_ino
        && found.st_dev == file.st_dev;
}

/// The runtime directory would not do: it comes and goes with a log-in and follows the
/// environment, so that a program started by cron could use another than the one on the desktop,
/// and both would write.
LockAttempt lockStandIn(const std::string& path, const struct stat& directory)
{
    const std::string folder = ownTemporaryDirectory();
    const std::string name = "kestry-" + std::to_string(major(directory.st_dev)) + "-"
        + std::to_string(minor(directory.st_dev)) + "-" + std::to_string(directory.st_ino)
        + ".lock";
    const std::string file = joinPath(folder, name);
    while (true) {
        const int handle = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (handle < 0) {
            throw fileError(path, "locked", errno);
        }
        const struct stat opened = lockedStatus(path, handle);
        LockAttempt attempt = lockOpenFile(path, handle);
        // A file that was removed before it was locked would keep nobody out.
        if (isStillAt(file, opened)) {
            if (attempt.lock) {
                attempt.lock = std::make_unique<StandInLock>(std::move(attempt.lock), folder);
            }
            return attempt;
        }
    }
}

} // namespace

std::string userRuntimeDirectory()
{
    const std::string user = std::to_string(getuid());
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR");
        runtime != nullptr && *runtime == '/' && isPrivateDirectory(runtime)) {
        return runtime;
    }
    if (std::string runtime = "/run/user/" + user; isPrivateDirectory(runtime)) {
        return runtime;
    }
    return ownTemporaryDirectory();
}

LockAttempt PosixFileSystem::lockDirectory(const std::string& path)
{
    const int handle = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) {
        throw fileError(path, "locked", errno);
    }
    const struct stat directory = lockedStatus(path, handle);
    try {
        return lockOpenFile(path, handle);
    } catch (const FileError& failure) {
        if (!meansNoLocks(failure.code())) {
            throw;
        }
        return lockStandIn(path, directory);
    }
}

} // namespace KestryCore
