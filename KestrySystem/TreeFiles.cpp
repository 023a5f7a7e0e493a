#include "TreeFiles.h"

namespace KestryCore {

void removeTree(TreeFiles& files, const std::string& path)
{
    const std::optional<FileStatus> status = files.status(path);
    if (!status) {
        return;
    }
    if (!status->isDirectory) {
        files.remove(path);
        return;
    }
    for (const std::string& name : files.list(path)) {
        removeTree(files, joinPath(path, name));
    }
    files.removeEmptyDirectory(path);
}

void syncDirectory(FileSystem& files, const std::string& path)
{
    const FileSystem::Handle handle = files.open(path, FileUse::directory);
    try {
        files.sync(handle);
    } catch (...) {
        closeQuietly(files, handle);
        throw;
    }
    closeQuietly(files, handle);
}

} // namespace KestryCore
