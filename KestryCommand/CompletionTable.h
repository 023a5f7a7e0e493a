#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace Kestry {

/// What a shell has to know to complete commands: a line "at|kind|word|value|about" for each word
/// that may be typed somewhere, each ended by a line feed.
///
/// - `at`: the names of the command and those above it, "client add"; empty for the program.
/// - `kind`: "command"; "option", which takes a value; "flag", which takes none; "place", for a
///   positional argument, whose number from 1 is in `word`.
/// - `value`: what to offer as a value: "client", "project", "file", "directory", or the choices
///   as in "=bash,zsh,fish"; empty when nothing can be offered.
/// - `about`: a few words of explanation, without line ends.
///
/// Options with an empty `at` are accepted by every command.
[[nodiscard]] std::string completionTable(const CLI::App& root);

} // namespace Kestry
