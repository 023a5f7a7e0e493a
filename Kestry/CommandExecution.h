#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "CommandProgram.h"
#include "TimeStore.h"

namespace Kestry {

/// Does what a command says on a store that is open: what can be done by any program that holds
/// the store. Fails with the message to show.
[[nodiscard]] CommandAnswer runOnStore(
    const Command& command, KestryCore::TimeStore& store, const CommandContext& context);

/// Carries out a request from the command line: finds the data directory, asks where a person has
/// to agree, claims the directory where the ledger is to change, and opens it without touching a
/// running session. Commands that only read claim nothing and write nothing. Fails with a
/// `UsageError` for words that are no moment, zone or locale, and with the message to show for a
/// refusal, after which nothing has changed.
[[nodiscard]] CommandAnswer executeCommand(
    const CommandRequest& request, const ProgramPlatform& platform);

} // namespace Kestry
