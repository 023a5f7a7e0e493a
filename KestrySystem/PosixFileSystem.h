#pragma once

#include "TreeFiles.h"

namespace KestryCore {

/// The real files, through POSIX calls. Interrupted calls are repeated.
class PosixFileSystem final : public TreeFiles {
public:
    [[nodiscard]] std::string applicationSupportDirectory() const override;
    [[nodiscard]] std::optional<FileStatus> status(const std::string& path) override;
    [[nodiscard]] std::vector<std::string> list(const std::string& directory) override;
    [[nodiscard]] Handle open(const std::string& path, FileUse use) override;
    [[nodiscard]] std::uint64_t size(Handle handle) override;
    [[nodiscard]] std::size_t read(Handle handle, char* buffer, std::size_t capacity) override;
    [[nodiscard]] FileIdentity identity(Handle handle) override;
    void setAccess(Handle handle, const std::optional<std::string>& like) override;
    [[nodiscard]] std::size_t write(
        Handle handle, std::span<const std::string_view> pieces) override;
    void sync(Handle handle) override;
    void close(Handle handle) override;
    void rename(const std::string& from, const std::string& to) override;
    void link(Handle handle, const std::string& to) override;
    void remove(const std::string& path) override;
    bool createDirectory(const std::string& path) override;
    [[nodiscard]] Handle createProgram(const std::string& path) override;
    bool createOrdinaryDirectory(const std::string& path) override;
    void removeEmptyDirectory(const std::string& path) override;
    void createLink(const std::string& target, const std::string& path) override;
    [[nodiscard]] std::string linkTarget(const std::string& path) override;

    /// An advisory lock on the inode of the directory, which is the same through every path and
    /// ends with its process. On a file system that cannot lock a directory, files named after
    /// device and inode are locked instead, one in each of the `lastingPlaces` of the user.
    [[nodiscard]] LockAttempt lockDirectory(const std::string& path) override;
};

} // namespace KestryCore
