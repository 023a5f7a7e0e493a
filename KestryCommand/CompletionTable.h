#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace Kestry {

/// What a shell has to know of the commands in order to complete them: a line for each word that
/// may stand somewhere, "at|kind|word|value|about", each line ended by a line feed.
///
/// - `at`: the names of the command and those above it, "client add"; empty for the program.
/// - `kind`: "command"; "option", which takes a value; "flag", which takes none; "place", for a
///   word told by its place, which `word` counts from 1.
/// - `value`: what to offer as a value: "client", "project", "file", "directory", or the choices
///   as in "=bash,zsh,fish"; empty when nothing can be offered.
/// - `about`: a few words of explanation, without line ends.
///
/// Options at "" may stand at any command.
[[nodiscard]] std::string completionTable(const CLI::App& root);

} // namespace Kestry
