#pragma once

#include <optional>
#include <string>

#include "Command.h"
#include "CommandContext.h"
#include "ProgramPlatform.h"

namespace Kestry {

/// The data directory that a command line means.
[[nodiscard]] std::string dataDirectoryOf(
    const CommonOptions& options, const ProgramPlatform& platform);

/// The request as it is once a person has agreed to it, where that is needed, and what it takes
/// from files of the user has been read. Fails as `executeCommand` does.
[[nodiscard]] CommandRequest preparedRequest(
    CommandRequest request, const ProgramPlatform& platform);

/// The identifier of the session that a request names by its words, as the files have it; none for
/// one that names none. Fails as `executeCommand` does.
[[nodiscard]] std::optional<std::string> sessionMeant(
    const CommandRequest& request, const ProgramPlatform& platform);

/// Carries out a prepared request, on the platform's open store or
/// else on the files. Fails with a `UsageError` for words that are no moment, zone or locale, and
/// with the message to show for a refusal, after which nothing has changed.
[[nodiscard]] CommandAnswer executeCommand(
    const CommandRequest& request, const ProgramPlatform& platform);

} // namespace Kestry
