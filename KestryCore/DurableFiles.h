#pragma once

#include <set>
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

    /// Replaces the file at `path`, or creates it. On failure the old file stands unchanged.
    void write(const std::string& path, std::string_view bytes);

    /// Copies a file of any size to a new name in the same directory; fails when the name is
    /// taken.
    void copy(const std::string& from, const std::string& to);

    /// Removes a file, durably; it must be there.
    void remove(const std::string& path);

    /// Makes a directory and its missing parents, durably. Succeeds when it is there already.
    void createDirectories(const std::string& path);

private:
    template <class Fill>
    void writeTemporary(const std::string& path, Fill fill);
    void publish(const std::string& temporary, const std::string& path);
    void syncDirectory(const std::string& path);
    void syncPendingDirectories();

    FileSystem& files_;
    std::set<std::string> pendingDirectories_; // renamed in, but not synced yet
};

} // namespace KestryCore
