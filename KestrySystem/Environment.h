#pragma once

#include <functional>
#include <optional>
#include <string>

namespace KestryCore {

/// Returns the value of an environment variable, which may be empty, or nullopt when it is not set.
/// Passed as an argument, so that tests can use an environment of their own.
using EnvironmentLookup = std::function<std::optional<std::string>(const std::string& name)>;

/// The environment of this process.
[[nodiscard]] std::optional<std::string> processEnvironment(const std::string& name);

} // namespace KestryCore
