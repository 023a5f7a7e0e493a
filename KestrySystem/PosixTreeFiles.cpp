#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <string>

#include "PosixFileSystem.h"

namespace KestryCore {

FileSystem::Handle PosixFileSystem::createProgram(const std::string& path)
{
    int handle = -1;
    do {
        handle = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0777);
    } while (handle < 0 && errno == EINTR);
    if (handle < 0) {
        throw fileError(path, "written", errno);
    }
    return handle;
}

bool PosixFileSystem::createOrdinaryDirectory(const std::string& path)
{
    if (mkdir(path.c_str(), 0777) == 0) {
        return true;
    }
    if (errno == EEXIST) {
        return false;
    }
    throw fileError(path, "created", errno);
}

void PosixFileSystem::removeEmptyDirectory(const std::string& path)
{
    if (rmdir(path.c_str()) != 0) {
        throw fileError(path, "removed", errno);
    }
}

void PosixFileSystem::createLink(const std::string& target, const std::string& path)
{
    if (symlink(target.c_str(), path.c_str()) != 0) {
        throw fileError(path, "linked", errno);
    }
}

std::string PosixFileSystem::linkTarget(const std::string& path)
{
    std::array<char, PATH_MAX> target{};
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    if (length < 0) {
        throw fileError(path, "read", errno);
    }
    return {target.data(), static_cast<std::size_t>(length)};
}

} // namespace KestryCore
