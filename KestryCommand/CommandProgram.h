#pragma once

#include <string>
#include <vector>

#include "Command.h"
#include "ProgramPlatform.h"

namespace Kestry {

enum class ExitStatus {
    done = 0,
    refused = 1,  ///< By the ledger, a file or another program; nothing was changed.
    unusable = 2, ///< The words of the command line; nothing was looked at.
};

/// Carries out one command line, without the program's own name, and says what came of it.
[[nodiscard]] ExitStatus runProgram(
    const std::vector<std::string>& arguments, const ProgramPlatform& platform);

/// Carries out a request, to which nobody has to agree any more, and tells its answer or refusal.
[[nodiscard]] ExitStatus runRequest(const CommandRequest& request, const ProgramPlatform& platform);

} // namespace Kestry
