#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "Choices.h"

namespace KestryCore {

/// A disk behind a write cache: what running programs see, and what of it is there for good. A
/// value: a copy is another disk in the same state.
///
/// - A file's bytes are there for good once the file is synced; files only ever grow.
/// - A name is there for good once its directory is synced. Until then each change of a name is
///   on its own: it may reach the disk without those before it.
/// - `cutPower` says what is left of the rest.
class Disk {
public:
    using FileID = std::uint64_t;
    using Bytes = std::shared_ptr<const std::string>;

    /// The pieces in which bytes reach the disk: single ones, sectors, pages.
    static constexpr std::array<std::size_t, 3> units{1, 512, 4096};

    struct File {
        bool isDirectory = false;
        Bytes content{};
        Bytes durable{};
        std::int64_t writes = 0; ///< Stands for the time of the last one.
        bool isLink = false;     ///< A symbolic one, whose content is its target.
    };

    /// The file behind a name; 0 for none.
    [[nodiscard]] FileID find(const std::string& path) const;
    [[nodiscard]] const File& file(FileID id) const { return files_.at(id); }
    [[nodiscard]] bool isDirectory(const std::string& path) const;
    /// The first name of a file; none when it has none any more.
    [[nodiscard]] std::optional<std::string> nameOf(FileID id) const;
    [[nodiscard]] const std::map<std::string, FileID>& names() const { return names_; }
    /// All files with their contents.
    [[nodiscard]] std::map<std::string, std::string> contents() const;
    /// Equal for disks that hold the same files under the same names.
    [[nodiscard]] std::size_t digest() const;

    // What programs do, of which nothing is synced.

    FileID create(const std::string& path, bool isDirectory);
    /// A symbolic link reaches the disk together with its name.
    void createLink(const std::string& path, const std::string& target);
    void append(FileID id, const std::string& bytes);
    void link(FileID id, const std::string& path);
    void rename(const std::string& from, const std::string& to);
    void remove(const std::string& path);

    void sync(FileID id);
    /// Syncs as much of a file as whole units make up at most half of it.
    void syncPart(FileID id, std::size_t unit);
    void syncDirectory(const std::string& path);

    // What was always there.

    void put(const std::string& path, const std::string& bytes);
    void putDirectory(const std::string& path);
    void putLink(const std::string& path, const std::string& target);
    void erase(const std::string& path);
    /// A directory with everything in it gets another name, which must be free. What of it is not
    /// synced stays so.
    void moveDirectory(const std::string& from, const std::string& to);
    /// Another content for the same file, of the same age.
    void overwrite(FileID id, const std::string& bytes);

    /// Takes the power away: every change of a name that was not synced is there or not, a rename
    /// also with the old name left; what is left is synced from then on.
    void cutPowerFromNames(Choices& choices);
    /// The bytes that were not synced are gone, there, zero, cut off at a unit, zero from there
    /// on, or there with units before them missing. Tells the units at which they were torn.
    std::set<std::size_t> cutPowerFromContents(Choices& choices);
    std::set<std::size_t> cutPower(Choices& choices)
    {
        cutPowerFromNames(choices);
        return cutPowerFromContents(choices);
    }

private:
    struct NameChange {
        std::string path;
        FileID file = 0;    ///< 0 where the name is removed.
        std::string from{}; ///< The old name, where the file had one and loses it.
    };

    void changeName(NameChange change);
    void makeDurable(const std::string& path, FileID id);

    std::map<FileID, File> files_;
    std::map<std::string, FileID> names_;
    std::map<std::string, FileID> durableNames_;
    std::vector<NameChange> unsyncedNames_; // in the order they were made
    FileID lastFile_ = 0;
};

} // namespace KestryCore
