#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Environment.h"

namespace KestryCore {

/// The option that names the data directory on a command line.
inline constexpr std::string_view dataDirectoryOption = "--data-directory";
/// The environment variable that names it.
inline constexpr std::string_view dataDirectoryVariable = "KESTRY_DATA_DIR";

/// The argument after the first occurrence of an option. Nullopt when the option is missing, or is
/// the last argument and so has no value.
[[nodiscard]] std::optional<std::string> optionValue(
    const std::vector<std::string>& arguments, std::string_view option);

/// Whether the user has named a data directory, by the option or by the variable.
[[nodiscard]] bool isDataDirectoryGiven(
    const std::optional<std::string>& option, const EnvironmentLookup& environment);

/// The data directory: the path given as an option; else the value of `KESTRY_DATA_DIR`, even when
/// that is empty; else the folder "Kestry" in `applicationSupportDirectory`, which is called only
/// then, because it fails for a user without a home. Given paths are not changed: a relative one is
/// relative to the working directory, and an empty one is the working directory. Reads and creates
/// nothing.
[[nodiscard]] std::string resolveDataDirectory(const std::optional<std::string>& option,
    const EnvironmentLookup& environment,
    const std::function<std::string()>& applicationSupportDirectory);

} // namespace KestryCore
