#pragma once

#include <optional>
#include <string>

#include "Command.h"
#include "CommandContext.h"
#include "FileSystem.h"
#include "ProgramPlatform.h"

namespace Kestry {

/// Carries out a command on the files of the context's data directory: claims the directory where
/// the ledger is to change, and opens it without touching a running session. Commands that only
/// read claim nothing and write nothing. Fails with a `DirectoryInUse` when the application has the
/// directory, and with the message to show for a refusal; nothing has changed then.
[[nodiscard]] CommandAnswer runOnFiles(
    const Command& command, const CommandContext& context, const ProgramPlatform& platform);

/// Whether a person has to be asked before the command is carried out.
[[nodiscard]] bool needsAgreement(const Command& command);

/// The command as it is to be carried out once a person has agreed to it where that is needed.
/// Fails with the message to show when there is nobody to ask or the answer is no.
[[nodiscard]] Command agreed(
    Command command, const std::string& directory, const ProgramPlatform& platform);

/// Whether the command takes a logo from a file that has not been read yet.
[[nodiscard]] bool namesLogo(const Command& command);

/// Reads the logo that the command names, if it does. Fails as reading the file does.
void readLogo(Command& command, KestryCore::FileSystem& files);

/// The logo of a command for which it has been read.
[[nodiscard]] std::optional<std::string> readLogo(const Command& command);

/// The identifier of the session that the words of a command mean in the files of a directory;
/// none for a command that names none. Fails with the message to show when they mean no session.
[[nodiscard]] std::optional<std::string> sessionOnFiles(
    const Command& command, const std::string& directory, const ProgramPlatform& platform);

} // namespace Kestry
