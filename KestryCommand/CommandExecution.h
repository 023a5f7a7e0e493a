#pragma once

#include <optional>
#include <string>

#include "Command.h"
#include "CommandContext.h"
#include "CommandProgram.h"
#include "LedgerError.h"
#include "RecordLookup.h"
#include "TimeStore.h"

namespace Kestry {

/// Does what a command says on a store that is open: what can be done by any program that holds
/// the store. Fails with the message to show, which the store does not show as well.
[[nodiscard]] CommandAnswer runOnStore(
    const Command& command, KestryCore::TimeStore& store, const CommandContext& context);

/// A failed look-up in full: where a name finds nothing because the ledger could not be read, that
/// is the reason.
[[nodiscard]] KestryCore::LedgerError explained(
    const LookupError& failure, const KestryCore::TimeStore& store);

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
