#pragma once

#include <string>

#include "FileSystem.h"

namespace KestryCore {

/// The file system as those need it who install programs: with symbolic links, directories that go
/// again, and files that can be run. What `FileSystem` promises of its operations holds for these
/// too.
class TreeFiles : public FileSystem {
public:
    /// Opens a new file for writing that can be run, with the access that the process gives to new
    /// programs. Fails when the name is taken.
    [[nodiscard]] virtual Handle createProgram(const std::string& path) = 0;
    /// Creates one directory with the access that the process gives to new directories. Returns
    /// false when the name is taken.
    virtual bool createOrdinaryDirectory(const std::string& path) = 0;
    /// Removes a directory. Fails unless it is empty.
    virtual void removeEmptyDirectory(const std::string& path) = 0;
    /// Makes a symbolic link, whose name must be free. The target is kept as it is.
    virtual void createLink(const std::string& target, const std::string& path) = 0;
    /// Where a symbolic link leads, as it was made. Fails for anything else.
    [[nodiscard]] virtual std::string linkTarget(const std::string& path) = 0;
};

/// Removes what is at a path: a file, a link, or a directory with everything in it. Follows no
/// link. Does nothing when nothing is there. After a failure a part may be gone.
void removeTree(TreeFiles& files, const std::string& path);

/// Waits until every change of a name in the directory is on the disk.
void syncDirectory(FileSystem& files, const std::string& path);

} // namespace KestryCore
