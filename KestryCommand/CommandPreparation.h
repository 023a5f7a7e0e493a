#pragma once

#include "Command.h"
#include "FilesKeeper.h"
#include "LedgerKeeper.h"
#include "LocalMessage.h"
#include "ProgramPlatform.h"

namespace Kestry {

// What only the process where a command was typed can do: ask a person, read a file that is named
// there, and take in a password. It does so before the command is carried out anywhere, and tells
// the application.

/// Whether a person has to confirm the command.
[[nodiscard]] bool needsConfirmation(const StoreCommand& command);

/// Whether the command needs a person's confirmation, a logo file that has not been read, or a
/// password.
[[nodiscard]] bool needsPreparation(const StoreCommand& command);

/// Asks for the confirmation, reads the picture that the command needs for a logo, takes in the
/// password that it needs, and returns the command with them. A confirmed deletion names its
/// session by ID. `files` opens the ledger of the directory, to show what would be deleted. Throws
/// a `LedgerError` when the answer is no, when there is nobody to ask, and when the file can't be
/// read.
[[nodiscard]] StoreCommand preparedCommand(StoreCommand command, const std::string& directory,
    const FilesKeeper& files, const ProgramPlatform& platform);

/// Puts into the message what was found out while the command was prepared.
void describePreparation(LocalCommand& message, const ReadyCommand& command);

/// Puts into the command what its caller's message says about that.
void applyPreparation(StoreCommand& command, const LocalCommand& message);

} // namespace Kestry
