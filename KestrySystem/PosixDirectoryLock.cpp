#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <sstream>
#include <utility>
#include <vector>

#include "PosixFileSystem.h"
#include "PrivateDirectories.h"

namespace KestryCore {

namespace {

/// An open file or directory, whose kernel lock falls with it.
class OpenedFile {
public:
    /// Takes ownership of the handle; negative when there is none.
    explicit OpenedFile(int handle) : handle_(handle) { }
    OpenedFile(OpenedFile&& other) noexcept : handle_(std::exchange(other.handle_, -1)) { }
    OpenedFile& operator=(OpenedFile&&) = delete;
    OpenedFile(const OpenedFile&) = delete;
    OpenedFile& operator=(const OpenedFile&) = delete;
    ~OpenedFile()
    {
        if (handle_ >= 0) {
            ::close(handle_);
        }
    }

    [[nodiscard]] int handle() const { return handle_; }

private:
    int handle_;
};

bool isSame(const struct stat& left, const struct stat& right)
{
    return left.st_ino == right.st_ino && left.st_dev == right.st_dev;
}

/// A locked directory, and the files that are locked in its place where it cannot be locked itself.
class LockedDirectory final : public DirectoryLock {
public:
    LockedDirectory(const std::string& path, OpenedFile directory, std::vector<OpenedFile> standIns)
        : directory_(std::move(directory)), standIns_(std::move(standIns)),
          place_("/proc/self/fd/" + std::to_string(directory_.handle()))
    {
        // Without that way to an open directory, its path at the moment of each write has to do.
        if (!isAt(place_)) {
            place_ = path;
        }
    }

    [[nodiscard]] std::string place() const override { return place_; }

    [[nodiscard]] bool isAt(const std::string& path) const override
    {
        struct stat claimed { };
        struct stat found { };
        if (fstat(directory_.handle(), &claimed) != 0) {
            throw fileError(path, "looked at", errno);
        }
        if (stat(path.c_str(), &found) == 0) {
            return isSame(claimed, found);
        }
        if (errno == ENOENT || errno == ENOTDIR || errno == ELOOP) {
            return false;
        }
        throw fileError(path, "looked at", errno);
    }

private:
    OpenedFile directory_;
    std::vector<OpenedFile> standIns_;
    std::string place_;
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

struct stat statusOf(const std::string& path, const OpenedFile& file)
{
    struct stat found { };
    if (fstat(file.handle(), &found) != 0) {
        throw fileError(path, "locked", errno);
    }
    return found;
}

/// Locks an open file or directory for this process alone; false when another has it.
bool lockWhole(const std::string& path, const OpenedFile& file)
{
    int result = flock(file.handle(), LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR) {
        result = flock(file.handle(), LOCK_EX | LOCK_NB);
    }
    if (result != 0 && errno != EWOULDBLOCK) {
        throw fileError(path, "locked", errno);
    }
    return result == 0;
}

/// The files that are locked in place of a directory, or who has them.
struct StandIn {
    std::vector<OpenedFile> files;
    std::string holder{};
};

bool isStillAt(const std::string& path, const struct stat& file)
{
    struct stat found { };
    return lstat(path.c_str(), &found) == 0 && isSame(found, file);
}

/// The folder around a locked file is locked too, for everybody together: that is how whatever
/// clears old files out of /tmp knows what to leave. It is no loss where that cannot be had.
OpenedFile markedAsInUse(const std::string& folder)
{
    OpenedFile opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    flock(opened.handle(), LOCK_SH | LOCK_NB);
    return opened;
}

/// Locks a file in one folder. False when another process has it. A folder in which no file can be
/// made or locked is no place for anybody, and adds nothing.
bool lockStandIn(
    const std::string& path, const std::string& folder, const std::string& name, StandIn& standIn)
{
    const std::string place = joinPath(folder, name);
    while (true) {
        OpenedFile file(::open(place.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (file.handle() < 0 && (errno == EROFS || errno == EACCES)) {
            return true;
        }
        if (file.handle() < 0) {
            throw fileError(path, "locked", errno);
        }
        const struct stat opened = statusOf(path, file);
        bool isLocked = false;
        try {
            isLocked = lockWhole(path, file);
        } catch (const FileError& failure) {
            if (meansNoLocks(failure.code())) {
                return true;
            }
            throw;
        }
        // A file that was removed before it was locked would keep nobody out.
        if (!isStillAt(place, opened)) {
            continue;
        }
        if (!isLocked) {
            standIn.holder = lockHolder(opened.st_ino);
            return false;
        }
        standIn.files.push_back(markedAsInUse(folder));
        standIn.files.push_back(std::move(file));
        return true;
    }
}

/// Locks a file named after the directory in every place that all processes of this user find:
/// one place alone may be there for one of them and not yet, or no more, for another.
StandIn lockStandIns(const std::string& path, const struct stat& directory)
{
    const std::string name = "kestry-" + std::to_string(major(directory.st_dev)) + "-"
        + std::to_string(minor(directory.st_dev)) + "-" + std::to_string(directory.st_ino)
        + ".lock";
    StandIn standIn;
    for (const std::string& folder : lastingPlaces()) {
        if (!lockStandIn(path, folder, name, standIn)) {
            return {{}, std::move(standIn.holder)};
        }
    }
    if (standIn.files.empty()) {
        throw LedgerError("The data directory can't be locked: its file system has no locks, and "
                          "there is no folder of your own for one. Move it to another disk.");
    }
    return standIn;
}

} // namespace

LockAttempt PosixFileSystem::lockDirectory(const std::string& path)
{
    OpenedFile directory(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.handle() < 0) {
        throw fileError(path, "locked", errno);
    }
    const struct stat found = statusOf(path, directory);
    StandIn standIn;
    try {
        if (!lockWhole(path, directory)) {
            return {nullptr, lockHolder(found.st_ino)};
        }
    } catch (const FileError& failure) {
        if (!meansNoLocks(failure.code())) {
            throw;
        }
        standIn = lockStandIns(path, found);
        if (standIn.files.empty()) {
            return {nullptr, std::move(standIn.holder)};
        }
    }
    return {std::make_unique<LockedDirectory>(path, std::move(directory), std::move(standIn.files)),
        {}};
}

} // namespace KestryCore
