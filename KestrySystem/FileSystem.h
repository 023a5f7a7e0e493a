#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "LedgerError.h"

namespace KestryCore {

/// A system call that failed. `what()` names the file and gives the system's description.
class FileError : public LedgerError {
public:
    FileError(const std::string& message, int code) : LedgerError(message), code_(code) { }

    /// The system's error number.
    [[nodiscard]] int code() const { return code_; }

private:
    int code_;
};

/// The failure of a call on a path, in words: "ledger.json could not be written: No space left
/// on device."
[[nodiscard]] FileError fileError(const std::string& path, std::string_view action, int code);

/// Whether a failure says nothing about what is on the disk and may be over in a moment: too few
/// descriptors, too little memory, a server that did not answer in time.
[[nodiscard]] bool isPassing(const std::exception& failure);

/// What stands at a path.
struct FileStatus {
    bool isRegular = false;
    bool isDirectory = false;
    bool isLink = false;     ///< A symbolic one.
    std::uint64_t size = 0;  ///< Bytes.
    std::uint64_t links = 1; ///< The names that the file has.
};

/// What tells one file, as it was last written, from every other and from itself later.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

enum class FileUse {
    /// An existing regular file. Anything else, a pipe say, is refused, not waited for. A file that
    /// another program holds a lease on is waited for, shortly.
    read,
    /// A new file for writing, for nobody but its owner; fails when the name is taken.
    create,
    /// The same with the access that the process gives to new files.
    createOrdinary,
    /// A directory, to be synced.
    directory,
};

/// A claim on a data directory, given up when it is destroyed or its process ends. It is a claim
/// on the directory itself, wherever that is moved and whatever takes its place.
class DirectoryLock {
public:
    DirectoryLock() = default;
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;
    virtual ~DirectoryLock() = default;

    /// A path that leads to the claimed directory and to no other, for as long as it is claimed.
    [[nodiscard]] virtual std::string place() const = 0;
    /// Whether a path leads to the claimed directory now, symbolic links and mounts followed.
    /// Fails when that cannot be found out.
    [[nodiscard]] virtual bool isAt(const std::string& path) const = 0;
};

/// The result of asking for a claim: the lock, or who has it.
struct LockAttempt {
    std::unique_ptr<DirectoryLock> lock; ///< Null when another process holds the directory.
    std::string holder; ///< That process, as in "kestry (process 4711)"; empty when not known.
};

/// The files of this system: each operation is one system call or a repetition of one, so that
/// tests can make any of them fail or be the last before a power cut. All failures are thrown as
/// `FileError`, after which nothing but the call's own partial effect remains.
class FileSystem {
public:
    using Handle = int;

    FileSystem() = default;
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;
    virtual ~FileSystem() = default;

    /// The folder that holds applications' data for this user: `$XDG_DATA_HOME` when it is an
    /// absolute path, else `~/.local/share`.
    [[nodiscard]] virtual std::string applicationSupportDirectory() const = 0;

    /// What stands at the path itself, a symbolic link not followed; none when nothing does.
    [[nodiscard]] virtual std::optional<FileStatus> status(const std::string& path) = 0;

    /// The names in a directory, sorted, without `.` and `..`.
    [[nodiscard]] virtual std::vector<std::string> list(const std::string& directory) = 0;

    [[nodiscard]] virtual Handle open(const std::string& path, FileUse use) = 0;
    /// The size of an open file in bytes.
    [[nodiscard]] virtual std::uint64_t size(Handle handle) = 0;
    /// Reads up to `capacity` bytes at the current position; 0 at the end of the file.
    [[nodiscard]] virtual std::size_t read(Handle handle, char* buffer, std::size_t capacity) = 0;
    [[nodiscard]] virtual FileIdentity identity(Handle handle) = 0;
    /// Gives a new file the access that the regular file at `like` has: owner, group, mode, access
    /// control list and the user's own attributes. What cannot be given is replaced by less, never
    /// by more. Without a file there, or without `like`, the owner alone may read and write it.
    virtual void setAccess(Handle handle, const std::optional<std::string>& like) = 0;
    /// Writes some bytes from the beginning of the pieces, at least one, and tells how many. The
    /// pieces hold at least one byte together, and none of them is empty.
    [[nodiscard]] virtual std::size_t write(
        Handle handle, std::span<const std::string_view> pieces) = 0;
    /// Waits until everything written, or for a directory every name in it, is on the disk.
    virtual void sync(Handle handle) = 0;
    /// The handle is closed even when this fails.
    virtual void close(Handle handle) = 0;

    /// Gives a file the name `to` in one step, replacing what stands there.
    virtual void rename(const std::string& from, const std::string& to) = 0;
    /// Gives an open file a further name, which must be free. File systems without links refuse.
    virtual void link(Handle handle, const std::string& to) = 0;
    virtual void remove(const std::string& path) = 0;
    /// Makes one directory, for nobody but its owner. False when something has that name already.
    virtual bool createDirectory(const std::string& path) = 0;

    /// Asks to be the one process that writes to an existing directory.
    [[nodiscard]] virtual LockAttempt lockDirectory(const std::string& path) = 0;
};

/// A file open for reading, closed with the object.
class OpenFile {
public:
    OpenFile(FileSystem& files, const std::string& path)
        : files_(files), handle_(files.open(path, FileUse::read))
    {
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    [[nodiscard]] FileSystem::Handle handle() const { return handle_; }

private:
    FileSystem& files_;
    FileSystem::Handle handle_;
};

/// The largest file that is read into memory, in bytes; beyond it, reading is refused in words.
inline constexpr std::uint64_t maximumFileBytes = std::uint64_t{1} << 30;

/// Whether anything stands at a path. A path that cannot be looked at counts as there, so that it
/// is never taken for free.
[[nodiscard]] bool exists(FileSystem& files, const std::string& path);

/// Closes a file after reading, or after a failure: what the call itself has to say is of no
/// interest any more.
void closeQuietly(FileSystem& files, FileSystem::Handle handle);

/// What an open file holds from its current position to its end.
[[nodiscard]] std::string readToEnd(FileSystem& files, FileSystem::Handle handle);

/// The whole content of a regular file.
[[nodiscard]] std::string readFile(FileSystem& files, const std::string& path);

/// Whether an open file, read from its beginning, holds exactly these bytes.
[[nodiscard]] bool holdsExactly(
    FileSystem& files, FileSystem::Handle handle, std::span<const std::string_view> pieces);

/// A name inside a directory.
[[nodiscard]] std::string joinPath(const std::string& directory, std::string_view name);

/// The directory that holds a path, "." for a bare name.
[[nodiscard]] std::string parentPath(const std::string& path);

} // namespace KestryCore
