#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Environment.h"

namespace KestryCore {

/// The system's zone files: one for each time zone, named after it, in one folder. They are read
/// again on each call, so that an update of the system's data has effect at once.
class ZoneFiles {
public:
    explicit ZoneFiles(std::string folder) : folder_(std::move(folder)) { }

    /// The zone files that all programs of a user use: those in the folder that `TZDIR` names, else
    /// in the system's.
    [[nodiscard]] static ZoneFiles ofSystem(const EnvironmentLookup& environment);

    [[nodiscard]] const std::string& folder() const { return folder_; }
    /// The content of a zone's file; nullopt when there is no zone of this name. Never reads
    /// outside of the folder, whatever the name.
    [[nodiscard]] std::optional<std::string> read(const std::string& name) const;
    /// The path of a zone's file; nullopt when there is no such zone.
    [[nodiscard]] std::string path(const std::string& name) const;
    /// The names of all zones in ascending order; empty when there are no zone files.
    [[nodiscard]] std::vector<std::string> names() const;
    /// The zone to whose file a path leads, through links or directly; nullopt for any other file.
    [[nodiscard]] std::optional<std::string> nameOf(const std::string& path) const;
    /// A zone whose file has exactly this content.
    [[nodiscard]] std::optional<std::string> nameOfContent(std::string_view content) const;

private:
    std::string folder_;
};

/// The content of a zone file; nullopt when there is no file at the path, or it is not a zone file.
[[nodiscard]] std::optional<std::string> readZoneFile(const std::string& path);

} // namespace KestryCore
