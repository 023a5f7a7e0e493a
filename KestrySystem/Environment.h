#pragma once

#include <functional>
#include <optional>
#include <string>

namespace KestryCore {

/// Looks up an environment variable: its value, empty or not, or none when it is not set. Handed
/// in, so that tests can make up an environment.
using EnvironmentLookup = std::function<std::optional<std::string>(const std::string& name)>;

/// The environment of this process.
[[nodiscard]] std::optional<std::string> processEnvironment(const std::string& name);

} // namespace KestryCore
