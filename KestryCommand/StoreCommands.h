#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "Console.h"
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

/// Fails with the store's words on the damaged ledger when it can't save, and with the reason after
/// them where there is no backup to restore.
void requireSaving(const KestryCore::TimeStore& store);

/// Fails with the reason when a command that only reads finds nothing that it could read, and
/// warns of a ledger that only its backup stands in for.
void requireReadable(const Command& command, const KestryCore::TimeStore& store, Console& console);

/// The completion script of a shell, which needs no store.
[[nodiscard]] CommandAnswer completionAnswer(const CompletionCommand& command);

} // namespace Kestry
