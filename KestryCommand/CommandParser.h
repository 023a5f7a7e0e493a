#pragma once

#include <string>
#include <variant>
#include <vector>

#include "Command.h"

namespace Kestry {

class CommandSyntax;

/// Text that was asked for instead of a command: help, or the version.
struct InformationText {
    std::string text;
};

/// Reads a command line, without the program's own name. Fails with a `UsageError` that tells
/// what is wrong and names the command or option that was probably meant. Nothing is looked up
/// or opened.
[[nodiscard]] std::variant<CommandRequest, InformationText> parseCommandLine(
    const std::vector<std::string>& arguments);

/// The same with a syntax that is there already and can be used again: making one takes longer
/// than reading a command line with it.
[[nodiscard]] std::variant<CommandRequest, InformationText> parseCommandLine(
    CommandSyntax& syntax, const std::vector<std::string>& arguments);

/// Whether a command line asks for JSON, even if nothing else in it can be understood.
[[nodiscard]] bool asksForJson(const std::vector<std::string>& arguments);

} // namespace Kestry
