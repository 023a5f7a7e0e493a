#include "DurableFiles.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <iterator>
#include <vector>

namespace KestryCore {

namespace {

/// The endings of temporary names. Each is used only when a directory has the names before it.
constexpr std::array temporaryEndings{".new", ".new-2", ".new-3"};

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

/// Whether a directory was refused because directories are not synced here, or not by this
/// process, or because it is gone and there is nothing to sync.
bool meansNoDirectorySync(int code)
{
    constexpr std::array codes{EINVAL, EOPNOTSUPP, ENOSYS, EACCES, EPERM, ENOENT, ENOTDIR};
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

FileIdentity DurableFiles::writeLike(
    const std::string& like, const std::string& path, Pieces pieces)
{
    return replace(path, {takeTemporaryName(path), like}, pieces);
}

FileIdentity DurableFiles::writePrivate(const std::string& path, std::string_view bytes)
{
    return replace(path, {takeTemporaryName(path)}, Pieces(&bytes, 1));
}

FileIdentity DurableFiles::write(
    const std::string& path, std::string_view bytes, const std::string& temporary)
{
    const bool replaces = files_.status(path).has_value();
    removeLeftOver(temporary);
    return replace(path,
        replaces ? NewFile{temporary, path} : NewFile{temporary, {}, FileUse::createOrdinary},
        Pieces(&bytes, 1));
}

FileIdentity DurableFiles::replace(const std::string& path, const NewFile& file, Pieces pieces)
{
    const FileIdentity identity =
        writeTemporary(file, [&](FileSystem::Handle handle) { writeAll(files_, handle, pieces); });
    publish(file.path, path);
    return identity;
}

FileIdentity DurableFiles::writeKeepingPrevious(
    const std::string& path, Pieces pieces, const Previous& previous)
{
    const NewFile file{takeTemporaryName(path), path};
    const std::optional<std::string> link = linkPrevious(previous);
    if (!link) {
        writeLike(path, previous.backup, previous.pieces);
    }
    FileIdentity identity;
    try {
        identity = writeTemporary(file, [&](FileSystem::Handle handle) {
            writeAll(files_, handle, pieces);
            if (link) {
                // A full disk is known by now, and the backup has its name before the file is
                // synced: most file systems sync the name too then, which `publish` waits for.
                rename(*link, previous.backup);
                // Renaming one name of a file over another name of it does nothing.
                removeLeftOver(*link);
            }
        });
    } catch (...) {
        if (link) {
            removeQuietly(files_, *link);
        }
        throw;
    }
    publish(file.path, path);
    return identity;
}

std::optional<std::string> DurableFiles::linkPrevious(const Previous& previous)
{
    if (!previous.handle) {
        return std::nullopt;
    }
    std::string temporary = takeTemporaryName(previous.backup);
    try {
        files_.link(*previous.handle, temporary);
        return temporary;
    } catch (const FileError& failure) {
        if (!meansNoLinks(failure.code())) {
            throw;
        }
        return std::nullopt;
    }
}

std::string DurableFiles::takeTemporaryName(const std::string& path)
{
    std::optional<std::string> free;
    for (const char* ending : temporaryEndings) {
        const std::string name = path + ending;
        const std::optional<FileStatus> status = files_.status(name);
        if (status && status->isDirectory) {
            continue; // Not ours: we create no directory of this name.
        }
        if (status) {
            files_.remove(name);
        }
        free = free.value_or(name);
    }
    if (!free) {
        throw fileError(path + temporaryEndings.front(), "written", EISDIR);
    }
    return *free;
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
    const NewFile file{takeTemporaryName(from), from};
    const OpenFile source(files_, from);
    writeTemporary(file, [&](FileSystem::Handle handle) {
        std::vector<char> buffer(std::size_t{1} << 20);
        while (
            const std::size_t count = files_.read(source.handle(), buffer.data(), buffer.size())) {
            const std::string_view bytes(buffer.data(), count);
            writeAll(files_, handle, Pieces(&bytes, 1));
        }
    });
    publish(file.path, to);
}

void DurableFiles::remove(const std::string& path)
{
    files_.remove(path);
    pendingDirectories_.insert(parentPath(path));
    trySyncingDirectories();
}

void DurableFiles::clear(const std::string& path)
{
    try {
        (void)takeTemporaryName(path);
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
        // A directory, or a link that may lead to one: writing the first file there finds out.
        return;
    }
    const std::string parent = parentPath(path);
    if (parent != path) {
        createDirectories(parent);
    }
    if (files_.createDirectory(path)) {
        pendingDirectories_.insert(parent);
        trySyncingDirectories();
    }
}

template <class Fill>
FileIdentity DurableFiles::writeTemporary(const NewFile& file, Fill fill)
{
    const FileSystem::Handle handle = files_.open(file.path, file.use);
    FileIdentity identity;
    try {
        if (file.use == FileUse::create) {
            files_.setAccess(handle, file.like);
        }
        fill(handle);
        files_.sync(handle);
        identity = files_.identity(handle);
    } catch (...) {
        closeQuietly(files_, handle);
        removeQuietly(files_, file.path);
        throw;
    }
    try {
        // Some file systems report a failed write only now.
        files_.close(handle);
    } catch (const FileError& failure) {
        removeQuietly(files_, file.path);
        throw fileError(file.path, "closed", failure.code());
    }
    return identity;
}

void DurableFiles::publish(const std::string& temporary, const std::string& path)
{
    try {
        syncPendingDirectories();
    } catch (...) {
        removeQuietly(files_, temporary);
        throw;
    }
    rename(temporary, path);
    trySyncingDirectories();
}

void DurableFiles::rename(const std::string& temporary, const std::string& path)
{
    // Only then is it one step, and is one directory enough to sync.
    assert(parentPath(temporary) == parentPath(path));
    try {
        files_.rename(temporary, path);
    } catch (...) {
        removeQuietly(files_, temporary);
        throw;
    }
    pendingDirectories_.insert(parentPath(path));
}

void DurableFiles::syncPendingDirectories()
{
    for (auto directory = pendingDirectories_.begin(); directory != pendingDirectories_.end();) {
        try {
            syncDirectory(*directory);
            directory = pendingDirectories_.erase(directory);
        } catch (const FileError& failure) {
            if (!meansNoDirectorySync(failure.code())) {
                throw;
            }
            ++directory; // Does not delay a rename, and may be possible another time.
        }
    }
}

void DurableFiles::trySyncingDirectories()
{
    try {
        syncPendingDirectories();
    } catch (const FileError&) {
        return; // The next rename waits for it.
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
