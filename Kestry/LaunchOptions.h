#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "FileSystem.h"
#include "Uuid.h"

namespace Kestry {

/// Looks a variable up in the environment; none when it does not exist.
using EnvironmentLookup = std::function<std::optional<std::string>(const std::string&)>;

/// What the command line asks for. Nothing on it can stop the launch: unknown arguments are
/// ignored, and an option that stands last without its value counts as not given.
struct LaunchOptions {
    bool demo = false;
    /// As it was written, a relative path included; none leaves the place to the store.
    std::optional<std::string> dataDirectory;
    std::optional<KestryCore::Uuid> updateToken; ///< None also for text that is no identifier.
};

/// Reads the whole argument vector, the program's own name included. The first occurrence of an
/// option wins.
[[nodiscard]] LaunchOptions parseLaunchOptions(
    const std::vector<std::string>& arguments, const EnvironmentLookup& environment);

/// The data directory that the user asks for: by option, else by `KESTRY_DATA_DIR`, whose value
/// is taken as it is, an empty one included.
[[nodiscard]] std::optional<std::string> dataDirectoryOverride(
    const std::vector<std::string>& arguments, const EnvironmentLookup& environment);

/// The data directory as the store will use it.
[[nodiscard]] std::string resolvedDataDirectory(
    const LaunchOptions& options, const KestryCore::FileSystem& files);

/// The environment of this process.
[[nodiscard]] std::optional<std::string> processEnvironment(const std::string& name);

} // namespace Kestry
