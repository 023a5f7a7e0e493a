#include "LaunchOptions.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace Kestry {
namespace {

std::optional<std::string> valueAfter(
    const std::vector<std::string>& arguments, const std::string& option)
{
    const auto found = std::ranges::find(arguments, option);
    if (found == arguments.end() || std::next(found) == arguments.end()) {
        return std::nullopt;
    }
    return *std::next(found);
}

} // namespace

LaunchOptions parseLaunchOptions(
    const std::vector<std::string>& arguments, const EnvironmentLookup& environment)
{
    LaunchOptions options;
    options.demo = std::ranges::find(arguments, "--demo") != arguments.end();
    options.dataDirectory = dataDirectoryOverride(arguments, environment);
    if (const auto token = valueAfter(arguments, "--update-token")) {
        options.updateToken = KestryCore::Uuid::parse(*token);
    }
    return options;
}

std::optional<std::string> dataDirectoryOverride(
    const std::vector<std::string>& arguments, const EnvironmentLookup& environment)
{
    if (auto path = valueAfter(arguments, "--data-directory")) {
        return path;
    }
    return environment("KESTRY_DATA_DIR");
}

std::string resolvedDataDirectory(const LaunchOptions& options, const KestryCore::FileSystem& files)
{
    return options.dataDirectory
        ? *options.dataDirectory
        : KestryCore::joinPath(files.applicationSupportDirectory(), "Kestry");
}

std::optional<std::string> processEnvironment(const std::string& name)
{
    const char* value = std::getenv(name.c_str());
    return value ? std::optional<std::string>(value) : std::nullopt;
}

} // namespace Kestry
