#pragma once

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "FileSystem.h"

namespace KestryCore {

/// Writes that either happen completely and are on the disk afterwards, or do not happen.
///
/// A file is written beside its target under a temporary name and synced, then renamed over the
/// target, and the directory is synced. Once the rename has happened the change has happened. When
/// the directory cannot be synced after it, that is not a failure of the write, because a caller
/// who tries again would make the change twice; the directory is synced before the next rename.
///
/// - No file gets its name before all earlier changes of names are on the disk. So they reach the
///   disk in order, whatever the file system does.
/// - A file gets the access of the file that it replaces. Until then, and while it is written, only
///   its owner has access. A file that replaces none stays so.
/// - The temporary name is the target's with ".new" appended, or a similar one where that is a
///   directory. What a crash left under any of these names is removed by the next write to the same
///   target.
///
/// Not safe for two writers of one target. Failures are thrown as `LedgerError`, those of
/// system calls as its `FileError`.
class DurableFiles {
public:
    explicit DurableFiles(FileSystem& files) : files_(files) { }

    using Pieces = std::span<const std::string_view>;

    /// Replaces or creates the file at `path`. Returns the identity of the new file. On failure the
    /// old file is unchanged.
    FileIdentity write(const std::string& path, Pieces pieces)
    {
        return writeLike(path, path, pieces);
    }
    FileIdentity write(const std::string& path, std::string_view bytes)
    {
        return write(path, Pieces(&bytes, 1));
    }

    /// Like `write`, with the access of the file at `like`.
    FileIdentity writeLike(const std::string& like, const std::string& path, Pieces pieces);

    /// Like `write`, with access for the owner alone, whatever the file replaces.
    FileIdentity writePrivate(const std::string& path, std::string_view bytes);

    /// Like `write`, for a directory in which other programs have files, so that the usual
    /// temporary name may be taken. `temporary` is a name in the directory of `path` that nobody
    /// else uses. A file that replaces none gets the access that the process gives to new files.
    FileIdentity write(
        const std::string& path, std::string_view bytes, const std::string& temporary);

    /// The file that becomes the backup when it is replaced.
    struct Previous {
        /// The file itself, open at any position and known to be synced. Nullopt when the backup
        /// must be another file with the same content.
        std::optional<FileSystem::Handle> handle;
        Pieces pieces;      ///< Its content.
        std::string backup; ///< The path of the backup.
    };

    /// Replaces the file at `path`, and makes `previous`, which is that file, its backup: the same
    /// inode under a new name, or a copy where files cannot have two names. The backup is on the
    /// disk before the new file gets its name. So at any moment, even in a power cut, the backup is
    /// the old one while the file at `path` is still `previous`, and `previous` from then on. On
    /// failure the file at `path` is unchanged.
    FileIdentity writeKeepingPrevious(
        const std::string& path, Pieces pieces, const Previous& previous);

    /// Copies a file of any size, with its access, to a new name in the same directory. Fails when
    /// the name is taken.
    void copy(const std::string& from, const std::string& to);

    /// Removes a file durably. Fails when it does not exist.
    void remove(const std::string& path);

    /// Removes what a crash left of a write to `path`, for a target that may not be written to for
    /// a long time. Ignores failures: nothing depends on it.
    void clear(const std::string& path);

    /// Creates a directory and its missing parents durably, each with access for its owner alone.
    /// Does nothing when the directory exists.
    void createDirectories(const std::string& path);

private:
    /// How a file is created: its name, and whose access it gets.
    struct NewFile {
        std::string path;
        std::optional<std::string> like{};
        FileUse use = FileUse::create;
    };

    template <class Fill>
    FileIdentity writeTemporary(const NewFile& file, Fill fill);
    FileIdentity replace(const std::string& path, const NewFile& file, Pieces pieces);
    std::optional<std::string> linkPrevious(const Previous& previous);
    std::string takeTemporaryName(const std::string& path);
    void removeLeftOver(const std::string& path);
    void publish(const std::string& temporary, const std::string& path);
    void rename(const std::string& temporary, const std::string& path);
    void syncDirectory(const std::string& path);
    void syncPendingDirectories();
    void trySyncingDirectories();

    FileSystem& files_;
    std::set<std::string> pendingDirectories_; // with changes of names that are not synced yet
};

} // namespace KestryCore
