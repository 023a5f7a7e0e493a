#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Environment.h"
#include "Uuid.h"

namespace Kestry {

/// What the command line asks for. Nothing on it can stop the launch: unknown arguments are
/// ignored, and an option that stands last without its value counts as not given.
struct LaunchOptions {
    bool demo = false;
    std::string dataDirectory;
    std::optional<KestryCore::Uuid> updateToken; ///< None also for text that is no identifier.
    std::vector<std::string> urls; ///< What the desktop wants opened: arguments with our scheme.
};

/// Reads the whole argument vector, the program's own name included. The first occurrence of an
/// option wins; without any wish the data directory is a folder in `applicationSupportDirectory`,
/// which is asked for only then.
[[nodiscard]] LaunchOptions parseLaunchOptions(const std::vector<std::string>& arguments,
    const KestryCore::EnvironmentLookup& environment,
    const std::function<std::string()>& applicationSupportDirectory);

} // namespace Kestry
