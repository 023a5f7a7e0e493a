#pragma once

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
/// that cannot be synced after it is remembered and synced by the next operation, and is no
/// failure of this one, or a caller who tries again would do the same thing twice.
///
/// The temporary name is the target's with ".new" after it; what a crash left under it is removed
/// by the next write to the same target. Two writers of one target are not provided for.
class DurableFiles {
public:
    explicit DurableFiles(FileSystem& files) : files_(files) { }

    using Pieces = std::span<const std::string_view>;

    /// Replaces the file at `path`, or creates it; returns what identifies the new file. On
    /// failure the old file stands unchanged.
    FileIdentity write(const std::string& path, Pieces pieces);
    FileIdentity write(const std::string& path, std::string_view bytes)
    {
        return write(path, Pieces(&bytes, 1));
    }

    /// The same where others keep files, any of which may have the usual temporary name:
    /// `temporary` is a name in the directory of `path` that nobody else uses.
    FileIdentity write(
        const std::string& path, std::string_view bytes, const std::string& temporary);

    /// A file that is to become the backup of the one that replaces it.
    struct Previous {
        FileSystem::Handle handle; ///< Open, at any position, and known to be synced.
        Pieces pieces;             ///< What it holds.
        std::string backup;        ///< The path that it gets.
    };

    /// Replaces the file at `path`, and lets `previous`, the file that stood there, take the place
    /// of its backup: the same inode under a new name, or a copy where files cannot have two
    /// names. On failure the file at `path` stands unchanged, and the backup is the old one or
    /// already the new one.
    FileIdentity writeKeepingPrevious(
        const std::string& path, Pieces pieces, const Previous& previous);

    /// Copies a file of any size to a new name in the same directory; fails when the name is
    /// taken.
    void copy(const std::string& from, const std::string& to);

    /// Removes a file, durably; it must be there.
    void remove(const std::string& path);

    /// Removes what a crash left of a write to `path`, where no next write may come for long.
    /// Nothing depends on it: what cannot be removed stays.
    void clear(const std::string& path);

    /// Makes a directory and its missing parents, durably. Succeeds when it is there already.
    void createDirectories(const std::string& path);

private:
    FileIdentity writeThrough(const std::string& temporary, const std::string& path, Pieces pieces);
    template <class Fill>
    FileIdentity writeTemporary(const std::string& path, Fill fill);
    void takeBackup(const Previous& previous);
    void removeLeftOver(const std::string& path);
    void publish(const std::string& temporary, const std::string& path);
    void syncDirectory(const std::string& path);
    void syncPendingDirectories();

    FileSystem& files_;
    std::set<std::string> pendingDirectories_; // renamed in, but not synced yet
};

} // namespace KestryCore
