#pragma once

#include <string>
#include <variant>
#include <vector>

#include "Command.h"

namespace Kestry {

class CommandSyntax;

/// Help or the version, asked for instead of a command.
struct InformationText {
    std::string text;
};

/// Reads a command line, without the program's own name. Throws a `UsageError` that says
/// what is wrong and names the command or option that was probably meant. Opens nothing.
[[nodiscard]] std::variant<CommandRequest, InformationText> parseCommandLine(
    const std::vector<std::string>& arguments);

/// The same with a syntax that can be used again: making one takes longer than parsing a command
/// line with it.
[[nodiscard]] std::variant<CommandRequest, InformationText> parseCommandLine(
    CommandSyntax& syntax, const std::vector<std::string>& arguments);

/// Whether a command line asks for JSON, even if the rest can't be understood.
[[nodiscard]] bool asksForJson(const std::vector<std::string>& arguments);

} // namespace Kestry
