#pragma once

#include <CLI/CLI.hpp>

#include <string>

#include "Shell.h"

namespace Kestry {

/// The script that makes a shell complete the program's commands, options and known values. It is
/// generated from the commands as they are declared. For names of clients and projects it runs the
/// `kestryctl` found in PATH each time, whatever path was typed.
[[nodiscard]] std::string completionScript(const CLI::App& root, Shell shell);

} // namespace Kestry
