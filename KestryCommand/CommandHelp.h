#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace Kestry {

/// The help of a command, generated from its declaration: what it does, its usage, its
/// arguments and options in aligned columns, and an example.
[[nodiscard]] std::string helpText(const CLI::App& command);

} // namespace Kestry
