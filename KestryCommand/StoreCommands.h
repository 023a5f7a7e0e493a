#pragma once

#include "Command.h"
#include "CommandContext.h"
#include "LedgerError.h"
#include "LocalMessage.h"
#include "RecordLookup.h"
#include "TimeStore.h"

namespace Kestry {

/// Carries out a command on an open store, in the application or on the files. A refusal is an
/// answer too: its status is not 0 and nothing has changed; the store's `errorMessage` stays as it
/// was, unless saving has become impossible. A command that only reads is refused when neither
/// ledger nor backup can be read, and warns in `errors` when the backup is shown instead.
[[nodiscard]] LocalAnswer carryOut(
    const StoreCommand& command, KestryCore::TimeStore& store, const CommandContext& context);

/// The failed look-up in full: when the ledger could not be read, that is why a name finds nothing.
[[nodiscard]] KestryCore::LedgerError explained(
    const LookupError& failure, const KestryCore::TimeStore& store);

/// Throws a `LedgerError` when the store can't save because the ledger is damaged; the message
/// includes the reason where there is no backup to restore.
void requireSaving(const KestryCore::TimeStore& store);

} // namespace Kestry
