#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Environment.h"

namespace KestryCore {

/// The system's zone files: one for each time zone, named after it, in one folder. They are read
/// anew each time, so that an update of the system's data counts at once.
class ZoneFiles {
public:
    explicit ZoneFiles(std::string folder) : folder_(std::move(folder)) { }

    /// Those that all programs of a user go by: in the folder that `TZDIR` names, else in the
    /// system's.
    [[nodiscard]] static ZoneFiles ofSystem(const EnvironmentLookup& environment);

    [[nodiscard]] const std::string& folder() const { return folder_; }
    /// The content of a zone's file; none when there is no zone of this name. Nothing outside of
    /// the folder is looked at, whatever the name.
    [[nodiscard]] std::optional<std::string> read(const std::string& name) const;
    /// Where the file of a zone stands, if there is one.
    [[nodiscard]] std::string path(const std::string& name) const;
    /// All zones in the order of their names; empty when there are no zone files.
    [[nodiscard]] std::vector<std::string> names() const;
    /// The zone whose file a path leads to, through links or not; none for any other file.
    [[nodiscard]] std::optional<std::string> nameOf(const std::string& path) const;
    /// A zone whose file holds just this.
    [[nodiscard]] std::optional<std::string> nameOfContent(std::string_view content) const;

private:
    std::string folder_;
};

/// The content of a zone file; none when there is no such file at the path or it is something else.
[[nodiscard]] std::optional<std::string> readZoneFile(const std::string& path);

} // namespace KestryCore
