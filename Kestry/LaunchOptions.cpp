#include "LaunchOptions.h"

#include <algorithm>

#include "DataDirectory.h"

namespace Kestry {

LaunchOptions parseLaunchOptions(const std::vector<std::string>& arguments,
    const KestryCore::EnvironmentLookup& environment,
    const std::string& applicationSupportDirectory)
{
    LaunchOptions options;
    options.demo = std::ranges::find(arguments, "--demo") != arguments.end();
    options.dataDirectory = KestryCore::resolveDataDirectory(
        KestryCore::optionValue(arguments, KestryCore::dataDirectoryOption), environment,
        applicationSupportDirectory);
    if (const auto token = KestryCore::optionValue(arguments, "--update-token")) {
        options.updateToken = KestryCore::Uuid::parse(*token);
    }
    return options;
}

} // namespace Kestry
