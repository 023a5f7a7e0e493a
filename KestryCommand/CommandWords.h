#pragma once

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <vector>

#include "Calendar.h"
#include "LedgerEditing.h"

namespace Kestry {

// Declaring the words of a command, and reading their values once a command line has been sorted
// into them. All checks are made in the reading, so that every refusal is in this program's own
// words. Reading fails with a `UsageError`.

/// A command with words of its own: its description, and an example to learn it from.
CLI::App* addCommand(
    CLI::App& parent, const std::string& name, const char* description, const char* example);

/// An option with a value, or a word told by its place when the name has no hyphens. `shape` is
/// what help calls the value; that of a word which may be left out is written in brackets.
CLI::Option* addValue(
    CLI::App* command, const std::string& name, const char* shape, const std::string& description);

/// An option or a word whose value is one of a few, which help shows in its place.
CLI::Option* addChoice(CLI::App* command, const std::string& name,
    const std::vector<std::string>& choices, const std::string& description);

/// What the value of an option or a word may be; empty when it is free.
[[nodiscard]] std::vector<std::string> choicesOf(const CLI::Option* option);

/// An option without a value.
CLI::Option* addFlag(CLI::App* command, const std::string& name, const std::string& description);

/// The value, exactly as typed; none when it is not there.
[[nodiscard]] std::optional<std::string> given(const CLI::Option* option);
[[nodiscard]] std::string required(const CLI::Option* option);

/// The place of the value among the choices there are.
[[nodiscard]] std::optional<std::size_t> givenChoice(const CLI::Option* option);

/// Which of two opposite options was given: true for the first, none for neither.
[[nodiscard]] std::optional<bool> choice(const CLI::Option* first, const CLI::Option* second);

/// A rate; a blank one is not known.
[[nodiscard]] std::optional<KestryCore::Rate> givenRate(const CLI::Option* rate);
/// The same, or not known by the second option, which leaves no cents behind.
[[nodiscard]] std::optional<KestryCore::Rate> givenRate(
    const CLI::Option* rate, const CLI::Option* noRate);

/// Six hexadecimal digits in upper case; they may be typed in any, after a number sign.
[[nodiscard]] std::optional<std::string> givenColor(const CLI::Option* option);

/// The first day of a month.
[[nodiscard]] std::optional<KestryCore::CalendarDay> givenMonth(const CLI::Option* option);

/// Seconds.
[[nodiscard]] std::optional<double> givenDuration(const CLI::Option* option);

/// The words as alternatives: "bash, zsh or fish".
[[nodiscard]] std::string alternatives(const std::vector<std::string>& words);

} // namespace Kestry
