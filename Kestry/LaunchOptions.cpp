#include "LaunchOptions.h"

#include <algorithm>
#include <iterator>

#include "DataDirectory.h"

namespace Kestry {

LaunchOptions parseLaunchOptions(const std::vector<std::string>& arguments,
    const KestryCore::EnvironmentLookup& environment,
    const std::function<std::string()>& applicationSupportDirectory)
{
    LaunchOptions options;
    options.demo = std::ranges::find(arguments, "--demo") != arguments.end();
    options.dataDirectory = KestryCore::resolveDataDirectory(
        KestryCore::optionValue(arguments, KestryCore::dataDirectoryOption), environment,
        applicationSupportDirectory);
    if (const auto token = KestryCore::optionValue(arguments, "--update-token")) {
        options.updateToken = KestryCore::Uuid::parse(*token);
    }
    std::ranges::copy_if(arguments, std::back_inserter(options.urls),
        [](const std::string& argument) { return argument.starts_with("kestry:"); });
    return options;
}

} // namespace Kestry
