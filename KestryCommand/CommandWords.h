#pragma once

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

#include "Calendar.h"
#include "LedgerEditing.h"

namespace Kestry {

// Declares the options and arguments of a command, and reads their values from a parsed command
// line. All checks are made while reading, so that every refusal is in this program's own words.
// Reading throws a `UsageError`.

/// Adds a command with its description and an example.
CLI::App* addCommand(
    CLI::App& parent, const std::string& name, const char* description, const char* example);

/// Adds an option with a value, or a positional argument when the name has no hyphens. `shape` is
/// the value's name in the help; in brackets for an argument that may be omitted.
CLI::Option* addValue(
    CLI::App* command, const std::string& name, const char* shape, const std::string& description);

/// Adds an option or an argument with a fixed set of values, which the help lists.
CLI::Option* addChoice(CLI::App* command, const std::string& name,
    const std::vector<std::string>& choices, const std::string& description);

/// The values that an option or an argument accepts; empty when any text may be given.
[[nodiscard]] std::vector<std::string> choicesOf(const CLI::Option* option);

/// Adds an option without a value.
CLI::Option* addFlag(CLI::App* command, const std::string& name, const std::string& description);

/// The value, exactly as typed; nullopt when the option is absent.
[[nodiscard]] std::optional<std::string> given(const CLI::Option* option);
[[nodiscard]] std::string required(const CLI::Option* option);

/// The index of the value among the choices; nullopt when the option is absent.
[[nodiscard]] std::optional<std::size_t> givenChoice(const CLI::Option* option);

/// Which of two opposite options was given: true for the first, nullopt for neither.
[[nodiscard]] std::optional<bool> choice(const CLI::Option* first, const CLI::Option* second);

/// A rate; a blank value means that it is not known.
[[nodiscard]] std::optional<KestryCore::Rate> givenRate(const CLI::Option* rate);
/// The same; with the second option the rate is not known, and is 0 cents.
[[nodiscard]] std::optional<KestryCore::Rate> givenRate(
    const CLI::Option* rate, const CLI::Option* noRate);

/// Six hexadecimal digits, in upper case. They may be typed in any case and after a number sign.
[[nodiscard]] std::optional<std::string> givenColor(const CLI::Option* option);

/// The first day of a month.
[[nodiscard]] std::optional<KestryCore::CalendarDay> givenMonth(const CLI::Option* option);

/// Seconds.
[[nodiscard]] std::optional<double> givenDuration(const CLI::Option* option);

/// A list of alternatives in words: "bash, zsh or fish".
[[nodiscard]] std::string alternatives(const std::vector<std::string>& words);

} // namespace Kestry
