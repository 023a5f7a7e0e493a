#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Environment.h"
#include "Uuid.h"

namespace Kestry {

/// What the command line asks for. It cannot stop the launch: unknown arguments are ignored, and
/// an option without its value at the end counts as not given.
struct LaunchOptions {
    bool demo = false;
    std::string dataDirectory;
    std::optional<KestryCore::Uuid> updateToken; ///< nullopt also for a text that is not a UUID.
    std::vector<std::string> urls;               ///< To open: the arguments with our scheme.
};

/// Reads the whole argument vector, with the program's name as its first element. The first
/// occurrence of an option wins. When neither an option nor the environment names the data
/// directory, it is a folder in `applicationSupportDirectory`, which is called only then.
[[nodiscard]] LaunchOptions parseLaunchOptions(const std::vector<std::string>& arguments,
    const KestryCore::EnvironmentLookup& environment,
    const std::function<std::string()>& applicationSupportDirectory);

} // namespace Kestry
