#include "DurableFiles.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iterator>
#include <vector>

namespace KestryCore {

namespace {

std::string temporaryName(const std::string& path)
{
    return path + ".new";
}

void writeAll(FileSystem& files, FileSystem::Handle handle, DurableFiles::Pieces pieces)
{
    std::vector<std::string_view> rest;
    rest.reserve(pieces.size());
    std::ranges::copy_if(
        pieces, std::back_inserter(rest), [](std::string_view piece) { return !piece.empty(); });
    std::size_t first = 0;
    while (first < rest.size()) {
        std::size_t count = files.write(handle, std::span(rest).subspan(first));
        while (first < rest.size() && count >= rest[first].size()) {
            count -= rest[first++].size();
        }
        if (count > 0) {
            rest[first].remove_prefix(count);
        }
    }
}

/// Whether a link was refused because there are no links here, and a copy is to be made.
bool meansNoLinks(int code)
{
    constexpr std::array codes{EPERM, EOPNOTSUPP, EXDEV, EMLINK, ENOSYS, ENOENT};
    return std::ranges::find(codes, code) != codes.end();
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

FileIdentity DurableFiles::write(const std::string& path, Pieces pieces)
{
    return writeThrough(temporaryName(path), path, pieces);
}

FileIdentity DurableFiles::write(
    const std::string& path, std::string_view bytes, const std::string& temporary)
{
    return writeThrough(temporary, path, Pieces(&bytes, 1));
}

FileIdentity DurableFiles::writeThrough(
    const std::string& temporary, const std::string& path, Pieces pieces)
{
    const FileIdentity identity = writeTemporary(
        temporary, [&](FileSystem::Handle handle) { writeAll(files_, handle, pieces); });
    publish(temporary, path);
    return identity;
}

FileIdentity DurableFiles::writeKeepingPrevious(
    const std::string& path, Pieces pieces, const Previous& previous)
{
    // The new file is complete on the disk before the backup moves on, so that the two names mean
    // one file only for the moment between two renames.
    const std::string temporary = temporaryName(path);
    const FileIdentity identity = writeTemporary(
        temporary, [&](FileSystem::Handle handle) { writeAll(files_, handle, pieces); });
    try {
        takeBackup(previous);
    } catch (...) {
        removeQuietly(files_, temporary);
        throw;
    }
    publish(temporary, path);
    return identity;
}

void DurableFiles::takeBackup(const Previous& previous)
{
    const std::string temporary = temporaryName(previous.backup);
    removeLeftOver(temporary);
    try {
        files_.link(previous.handle, temporary);
    } catch (const FileError& failure) {
        if (!meansNoLinks(failure.code())) {
            throw;
        }
        write(previous.backup, previous.pieces);
        return;
    }
    try {
        files_.rename(temporary, previous.backup);
    } catch (...) {
        removeQuietly(files_, temporary);
        throw;
    }
    // Renaming one name of a file over another name of it does nothing.
    removeLeftOver(temporary);
}

void DurableFiles::removeLeftOver(const std::string& path)
{
    if (files_.status(path)) {
        files_.remove(path);
    }
}

void DurableFiles::copy(const std::string& from, const std::string& to)
{
    if (files_.status(to)) {
        throw LedgerError("A file with the name " + to + " exists already.");
    }
    // The copy's name may never be used again, the original's will: so what a crash leaves behind
    // is found and removed by the next write.
    const std::string temporary = temporaryName(from);
    const OpenFile source(files_, from);
    writeTemporary(temporary, [&](FileSystem::Handle handle) {
        std::vector<char> buffer(std::size_t{1} << 20);
        while (
            const std::size_t count = files_.read(source.handle(), buffer.data(), buffer.size())) {
            const std::string_view bytes(buffer.data(), count);
            writeAll(files_, handle, Pieces(&bytes, 1));
        }
    });
    publish(temporary, to);
}

void DurableFiles::remove(const std::string& path)
{
    files_.remove(path);
    pendingDirectories_.insert(parentPath(path));
    syncPendingDirectories();
}

void DurableFiles::clear(const std::string& path)
{
    try {
        removeLeftOver(temporaryName(path));
    } catch (const FileError&) {
        return;
    }
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
FileIdentity DurableFiles::writeTemporary(const std::string& path, Fill fill)
{
    syncPendingDirectories();
    removeLeftOver(path);
    const FileSystem::Handle handle = files_.open(path, FileUse::create);
    FileIdentity identity;
    try {
        fill(handle);
        files_.sync(handle);
        identity = files_.identity(handle);
    } catch (...) {
        closeQuietly(files_, handle);
        removeQuietly(files_, path);
        throw;
    }
    try {
        // Some file systems report a failed write only now.
        files_.close(handle);
    } catch (const FileError& failure) {
        removeQuietly(files_, path);
        throw fileError(path, "closed", failure.code());
    }
    return identity;
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
