#include "FileSystem.h"

#include <algorithm>
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

std::string readFile(FileSystem& files, const std::string& path)
{
    const FileSystem::Handle handle = files.open(path, FileUse::read);
    try {
        const std::uint64_t expected = files.size(handle);
        if (expected > maximumFileBytes) {
            throw LedgerError("The file is larger than 1 GB and was not read.");
        }
        std::string bytes(static_cast<std::size_t>(expected), '\0');
        std::size_t length = 0;
        // One read beyond the expected size finds the end, or that the file has grown meanwhile.
        constexpr std::size_t growth = 64 * 1024;
        while (true) {
            if (length == bytes.size()) {
                bytes.resize(length + growth);
            }
            const std::size_t count =
                files.read(handle, bytes.data() + length, bytes.size() - length);
            if (count == 0) {
                break;
            }
            length += count;
            if (length > maximumFileBytes) {
                throw LedgerError("The file is larger than 1 GB and was not read.");
            }
        }
        bytes.resize(length);
        files.close(handle);
        return bytes;
    } catch (...) {
        try {
            files.close(handle);
        } catch (const FileError&) {
            // The first failure is the one worth telling; nothing was written.
        }
        throw;
    }
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
