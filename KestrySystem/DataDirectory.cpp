#include "DataDirectory.h"

#include <algorithm>

#include "FileSystem.h"

namespace KestryCore {

namespace {

/// The empty path names nothing that could be opened; as the start of a relative path it stands
/// for the working directory.
std::string directoryPath(const std::string& path)
{
    return path.empty() ? "." : path;
}

} // namespace

std::optional<std::string> optionValue(
    const std::vector<std::string>& arguments, std::string_view option)
{
    const auto found = std::ranges::find(arguments, option);
    if (found == arguments.end() || std::next(found) == arguments.end()) {
        return std::nullopt;
    }
    return *std::next(found);
}

bool isDataDirectoryGiven(
    const std::optional<std::string>& option, const EnvironmentLookup& environment)
{
    return option || environment(std::string(dataDirectoryVariable));
}

std::string resolveDataDirectory(const std::optional<std::string>& option,
    const EnvironmentLookup& environment,
    const std::function<std::string()>& applicationSupportDirectory)
{
    if (option) {
        return directoryPath(*option);
    }
    if (const auto value = environment(std::string(dataDirectoryVariable))) {
        return directoryPath(*value);
    }
    return joinPath(applicationSupportDirectory(), "Kestry");
}

} // namespace KestryCore
