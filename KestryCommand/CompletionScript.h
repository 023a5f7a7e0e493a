#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "Shell.h"

namespace Kestry {

/// A script that teaches a shell to complete the program's commands, options and those values that
/// can be told: everything comes from the commands as they are declared. Names of clients and
/// projects are asked each time of the program in the user's path, whatever was typed to call it.
[[nodiscard]] std::string completionScript(const CLI::App& root, Shell shell);

} // namespace Kestry
