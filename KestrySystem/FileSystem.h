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

/// What `status` finds at a path.
struct FileStatus {
    bool isRegular = false;
    bool isDirectory = false;
    bool isLink = false;     ///< A symbolic link.
    std::uint64_t size = 0;  ///< Bytes.
    std::uint64_t links = 1; ///< How many names the file has.
};

/// Identifies a file and its last modification: equal only for the same inode that has not been
/// written to in between.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t modifiedSeconds = 0;
    std::int64_t modifiedNanoseconds = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

enum class FileUse {
    /// For reading an existing regular file. Anything else, such as a pipe, is refused and never
    /// waited for. While another program holds a lease on the file, opening waits for a short time.
    read,
    /// A new file for writing, with access for its owner alone. Fails when the name is taken.
    create,
    /// Like `create`, with the access that the process gives to new files.
    createOrdinary,
    /// A directory, to be synced.
    directory,
};

/// A claim on a data directory. It ends with this object, or with its process. The claim is on the
/// directory itself: it stays when the directory is moved and another takes its name.
class DirectoryLock {
public:
    DirectoryLock() = default;
    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;
    virtual ~DirectoryLock() = default;

    /// Returns a path that leads to the claimed directory, and to no other, while it is claimed.
    [[nodiscard]] virtual std::string place() const = 0;
    /// Whether a path leads to the claimed directory now. Symbolic links and mounts are followed.
    /// Throws FileError when that cannot be found out.
    [[nodiscard]] virtual bool isAt(const std::string& path) const = 0;
};

/// The result of `lockDirectory`: the lock, or the process that has it.
struct LockAttempt {
    std::unique_ptr<DirectoryLock> lock; ///< Null when another process has the claim.
    std::string holder; ///< That process, as in "kestry (process 4711)"; empty when not known.
};

/// The file system. Each operation is one system call or a repetition of one, so that tests can
/// make any of them fail, or cut the power before it. Failures are thrown as `FileError`, and as a
/// plain `LedgerError` for a user without a home directory and for a file system without locks.
/// Then nothing but the partial effect of that call remains.
class FileSystem {
public:
    using Handle = int;

    FileSystem() = default;
    FileSystem(const FileSystem&) = delete;
    FileSystem& operator=(const FileSystem&) = delete;
    virtual ~FileSystem() = default;

    /// The folder for the application data of this user: `$XDG_DATA_HOME` when it is an absolute
    /// path, else `~/.local/share`. Throws LedgerError when the user has no home.
    [[nodiscard]] virtual std::string applicationSupportDirectory() const = 0;

    /// What is at the path itself; a symbolic link is not followed. Returns nullopt when nothing is
    /// there.
    [[nodiscard]] virtual std::optional<FileStatus> status(const std::string& path) = 0;

    /// The names in a directory, in ascending order, without `.` and `..`.
    [[nodiscard]] virtual std::vector<std::string> list(const std::string& directory) = 0;

    [[nodiscard]] virtual Handle open(const std::string& path, FileUse use) = 0;
    /// The size of an open file in bytes.
    [[nodiscard]] virtual std::uint64_t size(Handle handle) = 0;
    /// Reads up to `capacity` bytes at the current position; 0 at the end of the file.
    [[nodiscard]] virtual std::size_t read(Handle handle, char* buffer, std::size_t capacity) = 0;
    [[nodiscard]] virtual FileIdentity identity(Handle handle) = 0;
    /// Gives a new file the access of the regular file at `like`: owner, group, mode, access
    /// control list and user attributes. What cannot be given is replaced by less access, never by
    /// more. When `like` is nullopt, or no file is there, the owner alone may read and write the
    /// new file.
    virtual void setAccess(Handle handle, const std::optional<std::string>& like) = 0;
    /// Writes bytes from the beginning of the pieces, and returns how many: at least one, maybe
    /// fewer than all. There must be a piece, and no piece may be empty.
    [[nodiscard]] virtual std::size_t write(
        Handle handle, std::span<const std::string_view> pieces) = 0;
    /// Waits until everything written to the file, or every change of a name in the directory, is
    /// on the disk.
    virtual void sync(Handle handle) = 0;
    /// Closes the handle, even when it fails.
    virtual void close(Handle handle) = 0;

    /// Renames a file in one step. What was at `to` is replaced.
    virtual void rename(const std::string& from, const std::string& to) = 0;
    /// Gives an open file another name, which must be free. Fails on file systems without hard
    /// links.
    virtual void link(Handle handle, const std::string& to) = 0;
    virtual void remove(const std::string& path) = 0;
    /// Creates one directory with access for its owner alone. Returns false when the name is taken.
    virtual bool createDirectory(const std::string& path) = 0;

    /// Claims an existing directory for writing, without waiting.
    [[nodiscard]] virtual LockAttempt lockDirectory(const std::string& path) = 0;
};

/// A file that is open for reading until the object is destroyed.
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

/// The largest file, in bytes, that is read into memory. Reading a larger one throws LedgerError.
inline constexpr std::uint64_t maximumFileBytes = std::uint64_t{1} << 30;

/// Whether anything is at a path. True also when that cannot be found out, so that a name is never
/// taken to be free by mistake.
[[nodiscard]] bool exists(FileSystem& files, const std::string& path);

/// Closes a file after reading or after a failure. A failure to close is ignored.
void closeQuietly(FileSystem& files, FileSystem::Handle handle);

/// Returns the content of an open file from its current position to its end.
[[nodiscard]] std::string readToEnd(FileSystem& files, FileSystem::Handle handle);

/// Returns the whole content of a regular file. Symbolic links are followed.
[[nodiscard]] std::string readFile(FileSystem& files, const std::string& path);

/// Whether an open file, which is at its beginning, contains exactly these bytes. Stops at the
/// first difference.
[[nodiscard]] bool holdsExactly(
    FileSystem& files, FileSystem::Handle handle, std::span<const std::string_view> pieces);

/// The path of a name inside a directory.
[[nodiscard]] std::string joinPath(const std::string& directory, std::string_view name);

/// The directory of a path; "." for a bare name.
[[nodiscard]] std::string parentPath(const std::string& path);

} // namespace KestryCore
