#pragma once

#include <string>
#include <vector>

#include "CommandAnswers.h"
#include "ProgramPlatform.h"

namespace Kestry {

/// Carries out one command line, without the program's own name, and shows its answer.
[[nodiscard]] ExitStatus runProgram(
    const std::vector<std::string>& words, const ProgramPlatform& platform);

} // namespace Kestry
