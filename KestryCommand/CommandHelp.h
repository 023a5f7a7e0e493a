#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace Kestry {

/// The explanation of a command, made from its own words: what it does, how it is written, its
/// arguments and options in aligned columns, and an example.
[[nodiscard]] std::string helpText(const CLI::App& command);

} // namespace Kestry
