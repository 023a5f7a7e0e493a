#include "DurableFiles.h"

#include <cerrno>
#include <vector>

namespace KestryCore {

namespace {

std::string temporaryName(const std::string& path)
{
    return path + ".new";
}

void writeAll(FileSystem& files, FileSystem::Handle handle, std::string_view bytes)
{
    while (!bytes.empty()) {
        bytes.remove_prefix(files.write(handle, bytes));
    }
}

void removeQuietly(FileSystem& files, const std::string& path)
{
    try {
        files.remove(path);
    } catch (const FileError&) {
        return;
    }
}

} // namespace

void DurableFiles::write(const std::string& path, std::string_view bytes)
{
    const std::string temporary = temporaryName(path);
    writeTemporary(temporary, [&](FileSystem::Handle handle) { writeAll(files_, handle, bytes); });
    publish(temporary, path);
}

void DurableFiles::copy(const std::string& from, const std::string& to)
{
    if (exists(files_, to)) {
        throw LedgerError("A file with the name " + to + " exists already.");
    }
    // The copy's name may never be used again, the original's will: so what a crash leaves behind
    // is found and removed by the next write.
    const std::string temporary = temporaryName(from);
    const FileSystem::Handle source = files_.open(from, FileUse::read);
    try {
        writeTemporary(temporary, [&](FileSystem::Handle handle) {
            std::vector<char> buffer(std::size_t{1} << 20);
            while (const std::size_t count = files_.read(source, buffer.data(), buffer.size())) {
                writeAll(files_, handle, std::string_view(buffer.data(), count));
            }
        });
    } catch (...) {
        closeQuietly(files_, source);
        throw;
    }
    closeQuietly(files_, source);
    publish(temporary, to);
}

void DurableFiles::remove(const std::string& path)
{
    files_.remove(path);
    pendingDirectories_.insert(parentPath(path));
    syncPendingDirectories();
}

void DurableFiles::createDirectories(const std::string& path)
{
    const std::optional<FileStatus> status = files_.status(path);
    if (status && status->isRegular) {
        throw fileError(path, "created", ENOTDIR);
    }
    if (status) {
        // A directory, or a link that may lead to one: the first file written there tells.
        return;
    }
    const std::string parent = parentPath(path);
    if (parent != path) {
        createDirectories(parent);
    }
    if (files_.createDirectory(path)) {
        pendingDirectories_.insert(parent);
        syncPendingDirectories();
    }
}

template <class Fill>
void DurableFiles::writeTemporary(const std::string& path, Fill fill)
{
    syncPendingDirectories();
    if (files_.status(path)) {
        files_.remove(path);
    }
    const FileSystem::Handle handle = files_.open(path, FileUse::create);
    try {
        fill(handle);
        files_.sync(handle);
    } catch (...) {
        closeQuietly(files_, handle);
        removeQuietly(files_, path);
        throw;
    }
    try {
        // Some file systems report a failed write only now.
        files_.close(handle);
    } catch (...) {
        removeQuietly(files_, path);
        throw;
    }
}

void DurableFiles::publish(const std::string& temporary, const std::string& path)
{
    try {
        files_.rename(temporary, path);
    } catch (...) {
        removeQuietly(files_, temporary);
        throw;
    }
    pendingDirectories_.insert(parentPath(path));
    syncPendingDirectories();
}

void DurableFiles::syncPendingDirectories()
{
    for (auto directory = pendingDirectories_.begin(); directory != pendingDirectories_.end();) {
        try {
            syncDirectory(*directory);
            directory = pendingDirectories_.erase(directory);
        } catch (const FileError&) {
            ++directory;
        }
    }
}

void DurableFiles::syncDirectory(const std::string& path)
{
    const FileSystem::Handle handle = files_.open(path, FileUse::directory);
    try {
        files_.sync(handle);
    } catch (...) {
        closeQuietly(files_, handle);
        throw;
    }
    closeQuietly(files_, handle);
}

} // namespace KestryCore
