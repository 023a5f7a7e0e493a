#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "TreeFiles.h"
#include "UpdateVersion.h"

namespace Kestry {

/// An installation that holds versions side by side:
///
///     bin/kestry          what people start; see `StartGuard`. No update changes it
///     current             a link to versions/1.3.0, switched in one step
///     versions/1.3.0/     a version, with its own bin/kestry
///     trial               the version that has not started yet, and the one before it
///     failed              the same two, when that one did not start
///     updates/            what is being downloaded, for the owner alone
///
/// - The link always leads to a version that is whole and on the disk: at every call, whether that
///   fails, or the program or the power ends there.
/// - The version before stays until the new one has started once.
/// - Nothing else is ever changed, and nothing outside of the installation.
///
/// What changes something is for one process at a time, which has the `lock`. Failures are thrown
/// as LedgerError, in words for people.
class UpdatePrefix {
public:
    /// A version on trial, and what to go back to.
    struct Trial {
        UpdateVersion version;
        UpdateVersion previous;
    };

    /// Where a new version comes to lie.
    struct Room {
        std::string directory; ///< Of its files; empty.
        std::string archive;   ///< The path for its archive, in a directory for the owner alone.
    };

    UpdatePrefix(KestryCore::TreeFiles& files, std::string path)
        : files_(&files), path_(std::move(path))
    {
    }
    /// The installation that a program belongs to, by the program's path; nullopt when it stands in
    /// none.
    [[nodiscard]] static std::optional<UpdatePrefix> ofProgram(
        KestryCore::TreeFiles& files, const std::string& program);

    [[nodiscard]] const std::string& path() const { return path_; }
    /// What people start.
    [[nodiscard]] std::string launcher() const { return in("bin/kestry"); }
    /// The program of a version.
    [[nodiscard]] std::string program(const UpdateVersion& version) const;

    /// The version that the link leads to; nullopt when it leads to none.
    [[nodiscard]] std::optional<UpdateVersion> current() const;
    /// What is on trial; nullopt unless it is the version that the link leads to.
    [[nodiscard]] std::optional<Trial> trial() const;

    /// Throws when another process has it.
    [[nodiscard]] std::unique_ptr<KestryCore::DirectoryLock> lock() const;

    /// Makes room for a version, which is not to be one of those that are in use. What is left of
    /// earlier attempts goes first.
    [[nodiscard]] Room makeRoom(const UpdateVersion& version);
    /// Lets the link lead to a version that is whole and on the disk, on trial. After a failure it
    /// leads where it did.
    void switchTo(const UpdateVersion& version);
    /// Lets the link lead to the version before again, and notes that the one on trial has failed.
    /// Returns false, with nothing changed, when nothing is on trial.
    bool goBack();
    /// Like `goBack`, for a trial that never was: the application has not quit.
    void takeBack();
    /// The version on trial has started. Removes the one before; does nothing when the link leads
    /// to another version.
    void confirm(const UpdateVersion& version);
    /// Removes what no version in use needs: downloads, versions that were never finished or are
    /// done with, and half-made links.
    void clear();
    /// What has failed to start, once; nullopt when nothing has.
    [[nodiscard]] std::optional<Trial> takeFailed();

private:
    [[nodiscard]] std::string in(std::string_view name) const
    {
        return KestryCore::joinPath(path_, name);
    }
    [[nodiscard]] std::string directoryOf(const UpdateVersion& version) const;
    [[nodiscard]] std::optional<Trial> readTrial(const std::string& path) const;
    [[nodiscard]] std::vector<UpdateVersion> versionsInUse() const;
    void writeLink(const UpdateVersion& version);
    bool linkBack();
    void removeQuietly(const std::string& path);

    KestryCore::TreeFiles* files_;
    std::string path_;
};

} // namespace Kestry
