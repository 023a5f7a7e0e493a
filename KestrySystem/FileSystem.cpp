#include "FileSystem.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <new>

namespace KestryCore {

FileError fileError(const std::string& path, std::string_view action, int code)
{
    const std::string name = path.substr(path.find_last_of('/') + 1);
    // In the words of this program's own language, whatever that of its user is.
    const char* description = strerrordesc_np(code);
    return {(name.empty() ? path : name) + " could not be " + std::string(action) + ": "
            + (description != nullptr ? description : "Unknown error " + std::to_string(code))
            + ".",
        code};
}

bool isPassing(const std::exception& failure)
{
    constexpr std::array codes{EMFILE, ENFILE, ENOMEM, EINTR, EAGAIN, ESTALE, ETIMEDOUT, ENOBUFS};
    if (const auto* refused = dynamic_cast<const FileError*>(&failure)) {
        return std::ranges::find(codes, refused->code()) != codes.end();
    }
    return dynamic_cast<const OutOfMemory*>(&failure) != nullptr
        || dynamic_cast<const std::bad_alloc*>(&failure) != nullptr;
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

} // namespace

std::string readToEnd(FileSystem& files, FileSystem::Handle handle)
{
    const std::uint64_t expected = files.size(handle);
    requireReadableSize(expected);
    constexpr std::size_t growth = std::size_t{64} * 1024;
    // With the reserved room a parser that needs padding behind the text needs no copy of it. The
    // one byte beyond the expected size finds the end, or that the file has grown.
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(expected) + growth);
    bytes.resize(static_cast<std::size_t>(expected) + 1);
    std::size_t length = 0;
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

OpenFile::~OpenFile()
{
    try {
        files_.close(handle_);
    } catch (...) {
        // Nothing was written through it, so nothing can have been lost.
        return;
    }
}

std::string readFile(FileSystem& files, const std::string& path)
{
    const OpenFile file(files, path);
    return withinMemory([&] { return readToEnd(files, file.handle()); });
}

bool holdsExactly(
    FileSystem& files, FileSystem::Handle handle, std::span<const std::string_view> pieces)
{
    constexpr std::size_t bufferSize = std::size_t{256} * 1024;
    std::vector<char> buffer(bufferSize);
    std::string_view unread;
    for (std::string_view piece : pieces) {
        while (!piece.empty()) {
            if (unread.empty()) {
                unread = {buffer.data(), files.read(handle, buffer.data(), buffer.size())};
            }
            const std::size_t count = std::min(unread.size(), piece.size());
            if (count == 0 || unread.substr(0, count) != piece.substr(0, count)) {
                return false;
            }
            unread.remove_prefix(count);
            piece.remove_prefix(count);
        }
    }
    return unread.empty() && files.read(handle, buffer.data(), buffer.size()) == 0;
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
