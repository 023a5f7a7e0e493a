#include "FileSystem.h"

#include <cstring>

namespace KestryCore {

FileError fileError(const std::string& path, std::string_view action, int code)
{
    const std::string name = path.substr(path.find_last_of('/') + 1);
    return {(name.empty() ? path : name) + " could not be " + std::string(action) + ": "
            + std::strerror(code) + ".",
        code};
}

bool exists(FileSystem& files, const std::string& path)
{
    try {
        return files.status(path).has_value();
    } catch (const FileError&) {
        return true;
    }
}

void closeQuietly(FileSystem& files, FileSystem::Handle handle)
{
    try {
        files.close(handle);
    } catch (const FileError&) {
        return;
    }
}

namespace {

void requireReadableSize(std::uint64_t bytes)
{
    if (bytes > maximumFileBytes) {
        throw LedgerError("The file is larger than 1 GB and was not read.");
    }
}

std::string readToEnd(FileSystem& files, FileSystem::Handle handle)
{
    const std::uint64_t expected = files.size(handle);
    requireReadableSize(expected);
    std::string bytes(static_cast<std::size_t>(expected), '\0');
    std::size_t length = 0;
    // One read beyond the expected size finds the end, or that the file has grown meanwhile.
    constexpr std::size_t growth = 64 * 1024;
    while (true) {
        if (length == bytes.size()) {
            bytes.resize(length + growth);
        }
        const std::size_t count = files.read(handle, bytes.data() + length, bytes.size() - length);
        if (count == 0) {
            break;
        }
        length += count;
        requireReadableSize(length);
    }
    bytes.resize(length);
    return bytes;
}

} // namespace

std::string readFile(FileSystem& files, const std::string& path)
{
    const FileSystem::Handle handle = files.open(path, FileUse::read);
    std::string bytes;
    try {
        bytes = readToEnd(files, handle);
    } catch (...) {
        closeQuietly(files, handle);
        throw;
    }
    closeQuietly(files, handle);
    return bytes;
}

std::string joinPath(const std::string& directory, std::string_view name)
{
    const bool separated = directory.empty() || directory.ends_with('/');
    return directory + (separated ? "" : "/") + std::string(name);
}

std::string parentPath(const std::string& path)
{
    const std::size_t end = path.find_last_not_of('/');
    const std::size_t slash =
        end == std::string::npos ? std::string::npos : path.find_last_of('/', end);
    if (slash == std::string::npos) {
        return path.starts_with('/') ? "/" : ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace KestryCore
