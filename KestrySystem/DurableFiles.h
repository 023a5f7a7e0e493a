#pragma once

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

#include "FileSystem.h"

namespace KestryCore {

/// Writes that either happen whole and stay, or do not happen.
///
/// A file is written beside its target under a temporary name, synced, renamed over the target,
/// and the directory is synced. Once the rename has happened the change has happened: a directory
/// that cannot be synced after it is remembered and synced before the next rename, and is no
/// failure of this one, or a caller who tries again would do the same thing twice.
///
/// - Nothing takes its name before all names that were changed earlier are on the disk. So names
///   reach it in the order in which they were changed, whatever the file system does on its own.
/// - A file has the access of the one that it replaces, and before that is known and while it is
///   written it is open to nobody else. One that replaces none is for its owner alone.
/// - The temporary name is the target's with ".new" after it, or another where a directory has
///   that name; what a crash left under any of them is removed by the next write to the same
///   target. Two writers of one target are not provided for.
class DurableFiles {
public:
    explicit DurableFiles(FileSystem& files) : files_(files) { }

    using Pieces = std::span<const std::string_view>;

    /// Replaces the file at `path`, or creates it; returns what identifies the new file. On
    /// failure the old file stands unchanged.
    FileIdentity write(const std::string& path, Pieces pieces)
    {
        return writeLike(path, path, pieces);
    }
    FileIdentity write(const std::string& path, std::string_view bytes)
    {
        return write(path, Pieces(&bytes, 1));
    }

    /// The same with the access of the file at `like`.
    FileIdentity writeLike(const std::string& like, const std::string& path, Pieces pieces);

    /// The same for a file that is for its owner alone, whatever it replaces.
    FileIdentity writePrivate(const std::string& path, std::string_view bytes);

    /// The same where others keep files, any of which may have the usual temporary name:
    /// `temporary` is a name in the directory of `path` that nobody else uses. A file that
    /// replaces none gets the access that the process gives to new files.
    FileIdentity write(
        const std::string& path, std::string_view bytes, const std::string& temporary);

    /// What is to become the backup of the file that replaces it.
    struct Previous {
        /// The file itself, open at any position and known to be synced; none where the backup
        /// must be a file of its own.
        std::optional<FileSystem::Handle> handle;
        Pieces pieces;      ///< What it holds.
        std::string backup; ///< The path that it gets.
    };

    /// Replaces the file at `path`, and lets `previous`, the file that stood there, take the place
    /// of its backup: the same inode under a new name, or a copy where files cannot have two
    /// names. The new name of the backup is on the disk before the new file takes its own: at any
    /// moment, a power cut included, the backup is the old one while the file at `path` is still
    /// `previous`, and from then on `previous`. On failure the file at `path` stands unchanged.
    FileIdentity writeKeepingPrevious(
        const std::string& path, Pieces pieces, const Previous& previous);

    /// Copies a file of any size, with its access, to a new name in the same directory; fails when
    /// the name is taken.
    void copy(const std::string& from, const std::string& to);

    /// Removes a file, durably; it must be there.
    void remove(const std::string& path);

    /// Removes what a crash left of a write to `path`, where no next write may come for long.
    /// Nothing depends on it: what cannot be removed stays.
    void clear(const std::string& path);

    /// Makes a directory and its missing parents, durably, each for its owner alone. Succeeds when
    /// it is there already.
    void createDirectories(const std::string& path);

private:
    /// How a file is made: under which name, and whose access it gets.
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
    std::set<std::string> pendingDirectories_; // in which names changed that are not synced yet
};

} // namespace KestryCore
